#include "system/RegionalSettings.h"

#include <gtest/gtest.h>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

constexpr TDate kDate{2024, 3, 5};  // a Tuesday

std::string DateBy(std::string_view pattern, TDate date = kDate) {
    TRegionalSettings regional;
    regional.shortDatePattern = pattern;
    return FormatDate(date, regional);
}

TRegionalSettings Times(std::string_view pattern) {
    TRegionalSettings regional;
    regional.longTimePattern = pattern;
    regional.morning = "AM";
    regional.afternoon = "PM";
    return regional;
}

TEST(FormatDate, UsesDayMonthAndYearByTheirCounts) {
    EXPECT_EQ(FormatDate(kDate, {}), "05.03.2024");
    EXPECT_EQ(DateBy("d.M.yyyy"), "5.3.2024");
    EXPECT_EQ(DateBy("M/d/yy"), "3/5/24");
    EXPECT_EQ(DateBy("yyyy-MM-dd"), "2024-03-05");
    EXPECT_EQ(DateBy("yy", {2007, 1, 1}), "07");
}

TEST(FormatDate, TakesQuotedTextAsItStands) {
    EXPECT_EQ(DateBy("d.M.yyyy 'г.'"_cp1251), "5.3.2024 г."_cp1251);
    EXPECT_EQ(DateBy("d 'de' M 'o''d'"), "5 de 3 o'd");
    EXPECT_EQ(DateBy("d 'open"), "5 open");
    EXPECT_EQ(DateBy("(d.M.)"), "(5.3.)");
}

TEST(FormatDate, UsesTheNamesOfTheSettings) {
    TRegionalSettings regional;
    regional.shortDatePattern = "ddd dd-MMM-yy, dddd MMMM";
    regional.shortMonths[2] = "мар"_cp1251;
    regional.longMonths[2] = "март"_cp1251;
    regional.shortDays[1] = "вт"_cp1251;
    regional.longDays[1] = "вторник"_cp1251;
    EXPECT_EQ(FormatDate(kDate, regional), "вт 05-мар-24, вторник март"_cp1251);
}

TEST(FormatDate, ShowsTheNumberOfAMonthWithoutAName) {
    EXPECT_EQ(DateBy("dd-MMM-yyyy"), "05-03-2024");
    EXPECT_EQ(DateBy("dd-MMM-yyyy", {2024, 13, 5}), "05-13-2024");
}

TEST(FormatDate, AllowsADateThatDoesNotExist) {
    EXPECT_EQ(DateBy("dd.MMM.yyyy", {0, 0, 0}), "00.00.0000");
}

TEST(FormatTime, UsesHoursMinutesAndSecondsByTheirCounts) {
    EXPECT_EQ(FormatTime({7, 5, 9, 0}, {}), "07:05:09");
    EXPECT_EQ(FormatTime({7, 5, 9, 0}, Times("H:mm:ss")), "7:05:09");
    EXPECT_EQ(FormatTime({17, 5, 9, 0}, Times("H.m.s")), "17.5.9");
}

TEST(FormatTime, UsesTheTwelveHourDial) {
    const TRegionalSettings regional = Times("h:mm:ss tt");
    EXPECT_EQ(FormatTime({0, 0, 0, 0}, regional), "12:00:00 AM");
    EXPECT_EQ(FormatTime({11, 59, 59, 0}, regional), "11:59:59 AM");
    EXPECT_EQ(FormatTime({12, 0, 0, 0}, regional), "12:00:00 PM");
    EXPECT_EQ(FormatTime({23, 5, 0, 0}, regional), "11:05:00 PM");
    EXPECT_EQ(FormatTime({13, 5, 0, 0}, Times("hh:mm t")), "01:05 P");
}

TEST(ParseTime, ReadsBackWhatFormatTimeWrites) {
    for (const std::string_view pattern :
         {"HH:mm:ss", "H:mm:ss", "h:mm:ss tt", "tt hh:mm:ss", "H.mm.ss", "HHmmss", "hh:mm:ss t",
          "H 'h' mm 'm' ss 's'"}) {
        const TRegionalSettings regional = Times(pattern);
        for (const TTimeOfDay time : {TTimeOfDay{0, 0, 0, 0}, TTimeOfDay{7, 5, 9, 0},
                                      TTimeOfDay{12, 30, 0, 0}, TTimeOfDay{23, 59, 59, 0}})
            EXPECT_EQ(ParseTime(FormatTime(time, regional), regional), time) << pattern;
    }
}

TEST(ParseTime, NeedsNoSeconds) {
    EXPECT_EQ(ParseTime("08:30", {}), (TTimeOfDay{8, 30, 0, 0}));
    EXPECT_EQ(ParseTime("2:30 PM", Times("h:mm:ss tt")), (TTimeOfDay{14, 30, 0, 0}));
    EXPECT_EQ(ParseTime("0830", Times("HHmmss")), (TTimeOfDay{8, 30, 0, 0}));
    EXPECT_EQ(ParseTime("8:30", Times("ss:mm:HH")), (TTimeOfDay{8, 30, 0, 0}));
}

TEST(ParseTime, NeedsNoTextsForTheHalvesOfTheDay) {
    TRegionalSettings regional = Times("h:mm:ss tt");
    regional.morning.clear();
    regional.afternoon.clear();
    EXPECT_EQ(ParseTime("8:30:15", regional), (TTimeOfDay{8, 30, 15, 0}));
    EXPECT_EQ(ParseTime("14:30:15", regional), (TTimeOfDay{14, 30, 15, 0}));
    EXPECT_EQ(ParseTime("8:30:15 PM", regional), std::nullopt);
}

TEST(ParseTime, BearsBlanksBetweenThePieces) {
    EXPECT_EQ(ParseTime(" 8 : 30 : 15 ", {}), (TTimeOfDay{8, 30, 15, 0}));
    EXPECT_EQ(ParseTime("2:30:00pm", Times("h:mm:ss tt")), (TTimeOfDay{14, 30, 0, 0}));
}

TEST(ParseTime, BearsBlanksAroundTheTextsOfTheHalvesOfTheDay) {
    TRegionalSettings regional = Times("h:mm:ss tt");
    regional.morning = " AM";
    regional.afternoon = "PM ";
    EXPECT_EQ(ParseTime("1:05:07  AM", regional), (TTimeOfDay{1, 5, 7}));
    EXPECT_EQ(ParseTime("1:05:07 PM ", regional), (TTimeOfDay{13, 5, 7}));
}

TEST(ParseTime, ReadsColonsWhateverTheSettings) {
    EXPECT_EQ(ParseTime("18:45", Times("H.mm.ss")), (TTimeOfDay{18, 45, 0, 0}));
    EXPECT_EQ(ParseTime("18:45:10", Times("h:mm:ss tt")), (TTimeOfDay{18, 45, 10, 0}));
}

TEST(ParseTime, RefusesWhatIsNoTimeOfDay) {
    for (const std::string_view text : {"", " ", "abc", "8", "24:00", "12:60", "12:30:60", "8:30x",
                                        "8.30", "-8:30", "123:10", "1 2:30", ":30"})
        EXPECT_EQ(ParseTime(text, {}), std::nullopt) << text;
    EXPECT_EQ(ParseTime("13:30 PM", Times("h:mm tt")), std::nullopt);
}

TEST(UsableDecimalSeparator, IsNothingElseInANumberOrInAnArticleLine) {
    for (const char c : {',', '.', ';', '\'', ' ', '\xA0'})
        EXPECT_EQ(UsableDecimalSeparator(c), c);
    for (const char c : {'0', '9', '+', '-', 'e', 'E', '|', '\0', '\n'})
        EXPECT_EQ(UsableDecimalSeparator(c), '.');
}

TEST(SystemRegionalSettings, AnswersUsablePatterns) {
    const TRegionalSettings regional = SystemRegionalSettings();
    EXPECT_EQ(ParseTime(FormatTime({13, 14, 15, 0}, regional), regional),
              (TTimeOfDay{13, 14, 15, 0}));
    EXPECT_NE(FormatDate(kDate, regional), FormatDate({2025, 3, 5}, regional));
    EXPECT_NE(regional.decimalSeparator, '\0');
}

}  // namespace
}  // namespace tolvane
