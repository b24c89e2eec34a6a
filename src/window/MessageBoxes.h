#pragma once

#include <windows.h>

#include <string_view>

namespace tolvane {

// Message boxes with texts in code page 1251. The owner may be null; the box is modal to it and
// returns when it is answered.

void ShowError(HWND owner, std::string_view text);
void ShowInformation(HWND owner, std::string_view text);
void ShowWarning(HWND owner, std::string_view text);
// A warning with Yes and No; true for Yes. Enter answers No, and a box that cannot be shown counts
// as No.
bool AskWarning(HWND owner, std::string_view text);

}  // namespace tolvane
