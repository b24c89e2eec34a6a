#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace tolvane {

// Convert between code page 1251 and the UTF-16 of the Win32 calls; a character that the code page
// lacks becomes '?'.
std::wstring Wide(std::string_view text);
std::string Narrow(std::wstring_view text);

// A window's text in code page 1251.
std::string WindowText(HWND window);
void SetWindowText(HWND window, std::string_view text);

// SystemErrorText of an error of Windows, with the full stop: "Access is denied. (5)".
std::string WindowsErrorText(DWORD error);

}  // namespace tolvane
