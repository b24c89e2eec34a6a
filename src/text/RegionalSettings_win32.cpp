#include <windows.h>

#include <array>

#include "text/Cp1251.h"
#include "text/RegionalSettings.h"

namespace tolvane {
namespace {

// What the user's settings say, in code page 1251; empty when the system has no answer.
std::string UserSetting(LCTYPE type) {
    std::array<wchar_t, 100> buffer{};
    const int size =
        GetLocaleInfoW(LOCALE_USER_DEFAULT, type, buffer.data(), static_cast<int>(buffer.size()));
    std::u16string text;
    for (int i = 0; i + 1 < size; ++i)
        text += static_cast<char16_t>(buffer[static_cast<std::size_t>(i)]);
    return FromUtf16(text);
}

void TakeUnlessEmpty(std::string& to, std::string&& from) {
    if (!from.empty()) to = std::move(from);
}

}  // namespace

TRegionalSettings SystemRegionalSettings() {
    TRegionalSettings settings;
    const std::string separator = UserSetting(LOCALE_SDECIMAL);
    settings.decimalSeparator = separator.empty() || separator[0] == '?' ? '.' : separator[0];
    TakeUnlessEmpty(settings.shortDatePattern, UserSetting(LOCALE_SSHORTDATE));
    TakeUnlessEmpty(settings.longTimePattern, UserSetting(LOCALE_STIMEFORMAT));
    settings.morning = UserSetting(LOCALE_S1159);
    settings.afternoon = UserSetting(LOCALE_S2359);
    return settings;
}

}  // namespace tolvane
