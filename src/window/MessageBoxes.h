#pragma once

#include <windows.h>

#include <string_view>

namespace tolvane {

// Message boxes with texts in code page 1251. The owner may be null. Each function returns when the
// user has closed the box. Interface thread.

// When memory is too short for the text, the box says so instead.
void ShowError(HWND owner, std::string_view text) noexcept;
void ShowInformation(HWND owner, std::string_view text);
void ShowWarning(HWND owner, std::string_view text);
// Shows a warning with Yes and No and returns whether the user chose Yes. No is the default button;
// a box that cannot be shown counts as No.
bool AskWarning(HWND owner, std::string_view text);
// The same in front of all windows, for any thread: nothing else waits for the answer.
bool AskInFront(std::string_view text);

}  // namespace tolvane
