#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace tolvane {

// Asks for one line of text, code page 1251; nothing when the user cancels or the owner goes.
std::optional<std::string> AskText(HWND owner, std::string_view title, std::string_view prompt,
                                   std::string_view initial = {});

inline constexpr const wchar_t* kInputBoxClass = L"TInputBoxForm";

}  // namespace tolvane
