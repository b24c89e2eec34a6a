#pragma once

#include <windows.h>

#include <string>

namespace tolvane::test {

// What a user does with keyboard and mouse.

// Presses a key in a window, with Ctrl or Shift held down, and runs the test's message loop until
// the window has handled it.
void PressKey(HWND window, int virtualKey, bool control = false, bool shift = false);
// Posts a key to the control that has the focus, for a window that runs a message loop of its own.
void PostKey(int virtualKey);
void PostText(const std::wstring& text);
// Holds Ctrl, Shift or Alt down while it lives.
class THeldKey {
public:
    explicit THeldKey(int virtualKey);
    THeldKey(const THeldKey&) = delete;
    THeldKey& operator=(const THeldKey&) = delete;
    ~THeldKey();

private:
    int virtualKey_;
    BYTE before_;
};
// Lets go of every key.
void ReleaseKeys();

void Press(HWND window, const std::string& name);  // a button, by its component name
void SetTextOf(HWND window, const std::string& name, const std::wstring& text);
void Choose(HWND combo, int index);  // tells the combo's parent, as a user's choice does
// Clicks a button without waiting for what the click causes.
void Click(HWND button);
// Clicks with the left mouse button at a point of the control. Call it from a step of a script: the
// button goes up after the step.
void ClickAt(HWND control, POINT at);

}  // namespace tolvane::test
