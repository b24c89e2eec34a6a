#include "window/WideText.h"

#include <array>

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

std::string SystemErrorText(DWORD error) {
    std::array<wchar_t, 512> buffer{};
    const DWORD length =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                       0, buffer.data(), static_cast<DWORD>(buffer.size()), nullptr);
    std::string text(Trim(Narrow({buffer.data(), length})));
    if (!text.empty()) text += ' ';
    return text + "(" + std::to_string(error) + ")";
}

}  // namespace tolvane
