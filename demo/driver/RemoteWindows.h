#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tolvane {

// Windows of other processes on the same desktop, found by the names that their owner gave them.

// The component name that a window carries in its property "ComponentName", read from the process
// that owns it; empty when it has no name.
std::string ComponentNameOf(HWND window);
// The first visible window of the class, top-level or child; null when there is no such window.
HWND FindByClass(std::wstring_view className);
// The first window, top-level or child, with the component name, or for "#123" the first visible
// control with this number in its dialog; null when there is no such window.
HWND FindByComponentName(std::string_view name);
std::string Utf8(std::wstring_view text);
std::wstring Utf16(std::string_view utf8);
// A window's text as UTF-8.
std::string TextOf(HWND window);
// Whether the window and all its visible descendants are painted.
bool IsPainted(HWND window);
// Marks a row of a list view and keeps the other marks; returns false when that fails.
bool MarkRow(HWND list, int row);
// Waits until the condition holds; returns false when `seconds` have passed first.
bool WaitFor(int seconds, const std::function<bool()>& condition);

}  // namespace tolvane
