#include "system/SystemError.h"

#include <windows.h>

#include <iterator>
#include <string_view>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

// Asks for UTF-16, because the narrow call returns text in the system's code page.
std::string SystemMessage(int number, TFullStop fullStop) {
    wchar_t text[512];
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
        nullptr, static_cast<DWORD>(number), 0, text, static_cast<DWORD>(std::size(text)), nullptr);
    std::u16string_view message(reinterpret_cast<const char16_t*>(text), length);
    const auto isDropped = [&](char16_t c) {
        return c <= u' ' || (c == u'.' && fullStop == TFullStop::Dropped);
    };
    while (!message.empty() && isDropped(message.back()))
        message.remove_suffix(1);
    return message.empty() ? std::string("System error") : FromUtf16(message);
}

// The socket library's own category of system errors would return text in the system's code page.
bool IsOfTheSystem(const std::error_category& category) {
    return category == std::system_category() || std::string_view(category.name()) == "asio.system";
}

}  // namespace

std::string SystemErrorText(const std::error_code& error, TFullStop fullStop) {
    const std::string message =
        IsOfTheSystem(error.category()) ? SystemMessage(error.value(), fullStop) : error.message();
    return message + " (" + std::to_string(error.value()) + ")";
}

}  // namespace tolvane
