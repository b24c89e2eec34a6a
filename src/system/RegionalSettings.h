#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "system/LocalTime.h"

namespace tolvane {

// How numbers, dates and times are written: the system's regional settings, or a test's. The
// patterns use the system's own letters (d, M, y, H, h, m, s, tt; quoted text is literal).
struct TRegionalSettings {
    char decimalSeparator = ',';
    std::string shortDatePattern = "dd.MM.yyyy";
    std::string longTimePattern = "HH:mm:ss";
    std::string morning;    // text of "tt" before noon, code page 1251
    std::string afternoon;  // text of "tt" from noon on
    // Names for patterns with MMM, MMMM, ddd, dddd, from January and Monday on; a month without a
    // name is shown by its number, a day of the week without a name is left out.
    std::array<std::string, 12> shortMonths = {};
    std::array<std::string, 12> longMonths = {};
    std::array<std::string, 7> shortDays = {};
    std::array<std::string, 7> longDays = {};
};

// The settings of the user who runs the program, read anew at each call (on Windows from the
// system, where a decimal separator that code page 1251 lacks or that is not usable becomes '.';
// elsewhere the defaults above).
TRegionalSettings SystemRegionalSettings();
// The separator itself, or '.' for one that would mean something else in a number or in an article
// line: a digit, a sign, 'E', '|', a control character. Some systems let a user enter any.
char UsableDecimalSeparator(char separator);

std::string FormatDate(TDate date, const TRegionalSettings& regional);
std::string FormatTime(TTimeOfDay time, const TRegionalSettings& regional);
// A text as FormatTime makes it, seconds and blanks optional, or, with any settings, hours, minutes
// and seconds with colons; nothing when the text is not a time of day.
std::optional<TTimeOfDay> ParseTime(std::string_view text, const TRegionalSettings& regional);

}  // namespace tolvane
