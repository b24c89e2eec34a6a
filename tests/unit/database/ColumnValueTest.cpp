#include "database/ColumnValue.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include "ColumnValues.h"
#include "database/DatabaseError.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using test::Number;
using test::Text;

// 1 January 2024 in the server's days: 60310 from 17 November 1858.
constexpr std::int32_t kNewYear2024 = 60310;

TRegionalSettings Comma() {
    TRegionalSettings regional;
    regional.decimalSeparator = ',';
    regional.shortDatePattern = "dd.MM.yyyy";
    regional.longTimePattern = "HH:mm:ss";
    return regional;
}

TRegionalSettings Point() {
    TRegionalSettings regional;
    regional.decimalSeparator = '.';
    regional.shortDatePattern = "M/d/yyyy";
    regional.longTimePattern = "h:mm:ss tt";
    regional.morning = "AM";
    regional.afternoon = "PM";
    return regional;
}

TColumnValue Float(double number) {
    TColumnValue value;
    value.kind = TValueKind::Float;
    value.number = number;
    return value;
}

TColumnValue Moment(TValueKind kind, std::int32_t days, std::uint32_t ticks) {
    TColumnValue value;
    value.kind = kind;
    value.days = days;
    value.ticks = ticks;
    return value;
}

TColumnValue Truth(bool truth) {
    TColumnValue value;
    value.kind = TValueKind::Boolean;
    value.integer = truth ? 1 : 0;
    return value;
}

std::string ErrorOf(const TColumnValue& value, bool integer) {
    try {
        if (integer)
            ValueAsInteger(value, "Код за везна"_cp1251, Comma());
        else
            ValueAsFloat(value, "Пок.цена"_cp1251, Comma());
    } catch (const TDatabaseError& error) {
        return ToUtf8(error.what());
    }
    return {};
}

TEST(ColumnValue, NullIsEmptyAndZero) {
    const TColumnValue null;
    EXPECT_EQ(ValueAsText(null, Comma()), "");
    EXPECT_EQ(ValueAsInteger(null, "C", Comma()), 0);
    EXPECT_EQ(ValueAsFloat(null, "C", Comma()), 0.0);
}

TEST(ColumnValue, IntegersAreTheirDigits) {
    EXPECT_EQ(ValueAsText(Number(0), Comma()), "0");
    EXPECT_EQ(ValueAsText(Number(-17), Comma()), "-17");
    EXPECT_EQ(ValueAsText(Number(std::numeric_limits<std::int64_t>::min()), Comma()),
              "-9223372036854775808");
    EXPECT_EQ(ValueAsInteger(Number(2147483647), "C", Comma()), 2147483647);
    EXPECT_EQ(ValueAsFloat(Number(-17), "C", Comma()), -17.0);
}

TEST(ColumnValue, ScaledNumbersLoseTheZerosThatEndTheFraction) {
    EXPECT_EQ(ValueAsText(Number(125000, -4), Comma()), "12,5");
    EXPECT_EQ(ValueAsText(Number(125000, -4), Point()), "12.5");
    EXPECT_EQ(ValueAsText(Number(70000, -4), Comma()), "7");
    EXPECT_EQ(ValueAsText(Number(5, -2), Comma()), "0,05");
    EXPECT_EQ(ValueAsText(Number(-5, -2), Comma()), "-0,05");
    EXPECT_EQ(ValueAsText(Number(0, -4), Comma()), "0");
    EXPECT_EQ(ValueAsText(Number(-1, -18), Comma()), "-0,000000000000000001");
    EXPECT_EQ(ValueAsText(Number(12, 3), Comma()), "12000");
    EXPECT_EQ(ValueAsText(Number(0, 3), Comma()), "0");
}

TEST(ColumnValue, ScaledNumbersAreTheNearestDouble) {
    EXPECT_EQ(ValueAsFloat(Number(123400, -4), "C", Comma()), 12.34);
    EXPECT_EQ(ValueAsFloat(Number(1, -2), "C", Comma()), 0.01);
    EXPECT_EQ(ValueAsFloat(Number(12, 3), "C", Comma()), 12000.0);
    EXPECT_EQ(ValueAsFloat(Number(1, -18), "C", Comma()), 1e-18);
    EXPECT_EQ(ValueAsFloat(Number(3, 22), "C", Comma()), 3e22);
    EXPECT_EQ(ValueAsFloat(Number(3, -23), "C", Comma()), 3e-23);
    EXPECT_EQ(ValueAsInteger(Number(70000, -4), "C", Comma()), 7);
}

// The library reads a number's text as the nearest double. Where a quotient is rounded twice, to
// the processor's own width first, it may be the next one.
TEST(ColumnValue, ScaledNumbersAreWhatTheirTextSays) {
    std::mt19937_64 random(1);
    for (int scale = -18; scale <= 18; ++scale) {
        for (int i = 0; i < 2000; ++i) {
            // Up to 2^53, which a double holds exactly.
            const auto integer = static_cast<std::int64_t>(random() >> (11U + random() % 50));
            const std::string text = std::to_string(integer) + 'e' + std::to_string(scale);
            const double value = ValueAsFloat(Number(integer, scale), "C", Comma());
            const double expected = std::strtod(text.c_str(), nullptr);
            if constexpr (FLT_EVAL_METHOD == 0) {
                ASSERT_EQ(value, expected) << text;
            } else {
                ASSERT_DOUBLE_EQ(value, expected) << text;
            }
        }
    }
}

TEST(ColumnValue, FloatsAreShownShort) {
    EXPECT_EQ(ValueAsText(Float(4.3), Comma()), "4,3");
    EXPECT_EQ(ValueAsText(Float(4.3), Point()), "4.3");
    EXPECT_EQ(ValueAsText(Float(3), Comma()), "3");
    EXPECT_EQ(ValueAsInteger(Float(3), "C", Comma()), 3);
}

TEST(ColumnValue, TextsAreTakenAsTheyAre) {
    EXPECT_EQ(ValueAsText(Text(" кг "_cp1251), Comma()), std::string(" кг "_cp1251));
    EXPECT_EQ(ValueAsInteger(Text(" 42 "), "C", Comma()), 42);
    EXPECT_EQ(ValueAsFloat(Text("12,5"), "C", Comma()), 12.5);
    EXPECT_EQ(ValueAsFloat(Text("12.5"), "C", Comma()), 12.5);
    EXPECT_EQ(ValueAsFloat(Text("12.5"), "C", Point()), 12.5);
}

TEST(ColumnValue, BooleansAreOneAndZero) {
    EXPECT_EQ(ValueAsText(Truth(true), Comma()), "1");
    EXPECT_EQ(ValueAsText(Truth(false), Comma()), "0");
    EXPECT_EQ(ValueAsInteger(Truth(true), "C", Comma()), 1);
    EXPECT_EQ(ValueAsFloat(Truth(false), "C", Comma()), 0.0);
}

TEST(ColumnValue, DatesAndTimesFollowTheRegionalSettings) {
    EXPECT_EQ(ValueAsText(Moment(TValueKind::Date, kNewYear2024, 0), Comma()), "01.01.2024");
    EXPECT_EQ(ValueAsText(Moment(TValueKind::Date, kNewYear2024 - 1, 0), Point()), "12/31/2023");
    EXPECT_EQ(ValueAsText(Moment(TValueKind::Date, 0, 0), Comma()), "17.11.1858");
    // 9:05:07 is 32707 seconds; 21:05:07 is 75907.
    EXPECT_EQ(ValueAsText(Moment(TValueKind::Time, 0, 327070000), Comma()), "09:05:07");
    EXPECT_EQ(ValueAsText(Moment(TValueKind::Time, 0, 759070000), Point()), "9:05:07 PM");
    EXPECT_EQ(ValueAsText(Moment(TValueKind::Time, 0, 0), Comma()), "00:00:00");
}

TEST(ColumnValue, ATimestampAtMidnightIsItsDate) {
    EXPECT_EQ(ValueAsText(Moment(TValueKind::Timestamp, kNewYear2024, 0), Comma()), "01.01.2024");
    EXPECT_EQ(ValueAsText(Moment(TValueKind::Timestamp, kNewYear2024, 327070000), Comma()),
              "01.01.2024 09:05:07");
}

TEST(ColumnValue, AFailedConversionNamesColumnAndValue) {
    EXPECT_EQ(ErrorOf(Text("седем"_cp1251), true),
              "Колона \"Код за везна\": \"седем\" не е цяло число");
    EXPECT_EQ(ErrorOf(Text(""), true), "Колона \"Код за везна\": \"\" не е цяло число");
    EXPECT_EQ(ErrorOf(Number(55, -1), true), "Колона \"Код за везна\": \"5,5\" не е цяло число");
    EXPECT_EQ(ErrorOf(Float(0.5), true), "Колона \"Код за везна\": \"0,5\" не е цяло число");
    EXPECT_EQ(ErrorOf(Moment(TValueKind::Date, kNewYear2024, 0), true),
              "Колона \"Код за везна\": \"01.01.2024\" не е цяло число");
    EXPECT_EQ(ErrorOf(Text("12,5 лв"_cp1251), false),
              "Колона \"Пок.цена\": \"12,5 лв\" не е число");
    EXPECT_EQ(ErrorOf(Moment(TValueKind::Time, 0, 0), false),
              "Колона \"Пок.цена\": \"00:00:00\" не е число");
}

TEST(ColumnValue, AnIntegerOutOfRangeIsAnError) {
    EXPECT_EQ(ErrorOf(Number(2147483648), true),
              "Колона \"Код за везна\": \"2147483648\" е извън границите на целите числа");
    EXPECT_EQ(ErrorOf(Number(-2147483649), true),
              "Колона \"Код за везна\": \"-2147483649\" е извън границите на целите числа");
    EXPECT_EQ(ErrorOf(Text("1e300"), true),
              "Колона \"Код за везна\": \"1e300\" е извън границите на целите числа");
    EXPECT_EQ(ValueAsInteger(Number(-2147483648), "C", Comma()), -2147483647 - 1);
}

}  // namespace
}  // namespace tolvane
