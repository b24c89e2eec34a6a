#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace tolvane {

// Asks the user for a line of text; texts are code page 1251. Returns nothing when the user cancels
// or the owner is destroyed. Throws TWindowError. Interface thread.
std::optional<std::string> AskText(HWND owner, std::string_view title, std::string_view prompt,
                                   std::string_view initial = {});

inline constexpr const wchar_t* kInputBoxClass = L"TInputBoxForm";

}  // namespace tolvane
