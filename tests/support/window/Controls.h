#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace tolvane::test {

// What a test sees of windows. Texts are UTF-8.

std::string Utf8(const std::wstring& text);
std::string Utf8TextOf(HWND window);
std::wstring ClassOf(HWND window);

// The class of message boxes, and the number of the label in one that has the text.
inline constexpr const wchar_t* kMessageBoxClass = L"#32770";
inline constexpr int kMessageBoxText = 0xFFFF;
// The first visible top-level window of a class on this thread; null when there is none.
HWND ThreadWindow(const std::wstring& className);

// The descendant that carries the component name; null when there is none.
HWND Component(HWND parent, const std::string& name);
std::string ComponentNameOf(HWND window);

// Of the control with that component name. A window without one fails the test.
HWND ControlOf(HWND window, const std::string& name);
std::string TextOf(HWND window, const std::string& name);
bool IsEnabledIn(HWND window, const std::string& name);
std::vector<std::string> ComboItems(HWND window, const std::string& name);
int ComboChoice(HWND window, const std::string& name);
bool IsRadioOn(HWND window, const std::string& name);

}  // namespace tolvane::test
