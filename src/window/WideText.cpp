#include "window/WideText.h"

#include <system_error>

#include "system/SystemError.h"
#include "text/Cp1251.h"

namespace tolvane {

std::wstring Wide(std::string_view text) {
    const std::u16string utf16 = ToUtf16(text);
    return {utf16.begin(), utf16.end()};
}

std::string Narrow(std::wstring_view text) {
    return FromUtf16(std::u16string(text.begin(), text.end()));
}

std::string WindowText(HWND window) {
    const auto length = static_cast<std::size_t>(GetWindowTextLengthW(window));
    std::wstring text(length + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return Narrow(text);
}

void SetWindowText(HWND window, std::string_view text) {
    SetWindowTextW(window, Wide(text).c_str());
}

std::string WindowsErrorText(DWORD error) {
    return SystemErrorText({static_cast<int>(error), std::system_category()}, TFullStop::Kept);
}

}  // namespace tolvane
