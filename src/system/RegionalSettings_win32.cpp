#include "system/RegionalSettings.h"

#include <windows.h>

#include <cstddef>

#include "text/Cp1251.h"

namespace tolvane {

namespace {

std::u16string Setting(LCTYPE what) {
    const int size = GetLocaleInfoW(LOCALE_USER_DEFAULT, what, nullptr, 0);
    if (size <= 1) return {};
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    const int written = GetLocaleInfoW(LOCALE_USER_DEFAULT, what, wide.data(), size);
    if (written <= 1) return {};
    return {wide.begin(), wide.begin() + (written - 1)};
}

std::string TextOf(LCTYPE what) {
    return FromUtf16(Setting(what));
}

std::string TextOf(LCTYPE what, const char* otherwise) {
    std::string text = TextOf(what);
    return text.empty() ? std::string(otherwise) : text;
}

char DecimalSeparator() {
    const std::u16string text = Setting(LOCALE_SDECIMAL);
    const int byte = text.empty() ? -1 : Cp1251Byte(text.front());
    if (byte < 0) return '.';
    return UsableDecimalSeparator(static_cast<char>(static_cast<unsigned char>(byte)));
}

template <std::size_t N>
void ReadNames(std::array<std::string, N>& names, LCTYPE first) {
    for (std::size_t i = 0; i < N; ++i)
        names[i] = TextOf(first + static_cast<LCTYPE>(i));
}

}  // namespace

TRegionalSettings SystemRegionalSettings() {
    TRegionalSettings settings;
    settings.decimalSeparator = DecimalSeparator();
    settings.shortDatePattern = TextOf(LOCALE_SSHORTDATE, "dd.MM.yyyy");
    settings.longTimePattern = TextOf(LOCALE_STIMEFORMAT, "HH:mm:ss");
    settings.morning = TextOf(LOCALE_S1159);
    settings.afternoon = TextOf(LOCALE_S2359);
    ReadNames(settings.shortMonths, LOCALE_SABBREVMONTHNAME1);
    ReadNames(settings.longMonths, LOCALE_SMONTHNAME1);
    ReadNames(settings.shortDays, LOCALE_SABBREVDAYNAME1);
    ReadNames(settings.longDays, LOCALE_SDAYNAME1);
    return settings;
}

}  // namespace tolvane
