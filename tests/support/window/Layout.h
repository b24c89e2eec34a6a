#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace tolvane::test {

// Expects that the window's title and the texts of visible labels, buttons, groups, tabs, lists and
// edit lines that cannot be edited fit into what shows them. What an edit line takes may be longer
// than its room, and a list with titles above its columns has widths of the user's.
void ExpectTextsFit(HWND window);
// Expects that visible controls lie inside the window, and none over another.
void ExpectControlsApart(HWND window);

// Expects that a list of lines of one height shows more than so many, and the last one whole.
void ExpectWholeLines(HWND list, int moreThan);
// Whether the window shows an icon in its caption; a tool window never does.
bool HasCaptionIcon(HWND window);

// Where a window's visible controls are, pixels of its client area, and how high their letters are.
struct TControlPlace {
    std::string name;
    RECT place{};
    int letters = 0;
};
std::vector<TControlPlace> ControlPlaces(HWND window);
// Tells a window, as Windows does, that a monitor of that resolution shows it now.
void TellDpi(HWND window, int dotsPerInch);
// Tells it of 120, 144 and 192 dots per inch, each of which must leave every text its room, and
// then of the system's own resolution, which must leave it as it was.
void ExpectFollowsMonitors(HWND window, bool controlsApart = true);

}  // namespace tolvane::test
