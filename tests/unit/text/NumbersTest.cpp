#include "text/Numbers.h"

#include <gtest/gtest.h>

#include <limits>

namespace tolvane {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string Price(double value) {
    return FormatFixed(value, 1, 2, '.');
}

TEST(FormatFixed, RoundsHalfAwayFromZeroOnTheDecimalDigits) {
    EXPECT_EQ(Price(0.005), "0.01");
    EXPECT_EQ(Price(1.005), "1.01");
    EXPECT_EQ(Price(2.675), "2.68");
    EXPECT_EQ(Price(2.665), "2.67");
    EXPECT_EQ(Price(0.125), "0.13");
    EXPECT_EQ(Price(0.375), "0.38");
    EXPECT_EQ(Price(-1.005), "-1.01");
    EXPECT_EQ(Price(0.994999), "0.99");
    EXPECT_EQ(Price(12.3449), "12.34");
}

TEST(FormatFixed, CarriesThroughNines) {
    EXPECT_EQ(Price(0.995), "1.00");
    EXPECT_EQ(Price(9.999), "10.00");
    EXPECT_EQ(FormatFixed(9999.995, 4, 2, '.'), "10000.00");
}

TEST(FormatFixed, ShowsAtLeastTheIntegerDigitsAskedFor) {
    EXPECT_EQ(FormatFixed(12.34, 4, 2, ','), "0012,34");
    EXPECT_EQ(FormatFixed(0, 4, 2, ','), "0000,00");
    EXPECT_EQ(FormatFixed(12345.6, 4, 2, ','), "12345,60");
}

TEST(FormatFixed, UsesTheSeparatorGiven) {
    EXPECT_EQ(FormatFixed(1.5, 1, 2, ','), "1,50");
    EXPECT_EQ(FormatFixed(1.5, 1, 2, '\''), "1'50");
}

TEST(FormatFixed, ShowsNoSeparatorWithoutDecimals) {
    EXPECT_EQ(FormatFixed(2.5, 1, 0, ','), "3");
    EXPECT_EQ(FormatFixed(-0.4, 1, 0, ','), "0");
}

TEST(FormatFixed, ShowsNoSignOnZero) {
    EXPECT_EQ(Price(0.004), "0.00");
    EXPECT_EQ(Price(-0.004), "0.00");
    EXPECT_EQ(Price(-0.0), "0.00");
    EXPECT_EQ(Price(-0.005), "-0.01");
}

TEST(FormatFixed, ShowsTinyNumbersAsZero) {
    EXPECT_EQ(Price(0.0009), "0.00");
    EXPECT_EQ(Price(1e-300), "0.00");
    EXPECT_EQ(Price(5e-324), "0.00");
}

TEST(FormatFixed, ShowsFifteenDigitsOfLargeNumbersAndZerosAfterThem) {
    EXPECT_EQ(Price(1e20), "100000000000000000000.00");
    EXPECT_EQ(Price(123456789012345.0), "123456789012345.00");
    EXPECT_EQ(Price(1234567890123.45), "1234567890123.45");
    EXPECT_EQ(Price(1.7976931348623157e308), "179769313486232" + std::string(294, '0') + ".00");
}

TEST(FormatFixed, ShowsWhatIsNoFiniteNumberAsZero) {
    EXPECT_EQ(Price(kInfinity), "0.00");
    EXPECT_EQ(Price(-kInfinity), "0.00");
    EXPECT_EQ(Price(std::numeric_limits<double>::quiet_NaN()), "0.00");
}

TEST(FormatNumber, ShowsTheShortestText) {
    EXPECT_EQ(FormatNumber(12.5, ','), "12,5");
    EXPECT_EQ(FormatNumber(3, ','), "3");
    EXPECT_EQ(FormatNumber(0, ','), "0");
    EXPECT_EQ(FormatNumber(-0.0, ','), "0");
    EXPECT_EQ(FormatNumber(-7.25, '.'), "-7.25");
    EXPECT_EQ(FormatNumber(1200, '.'), "1200");
    EXPECT_EQ(FormatNumber(0.1 + 0.2, '.'), "0.3");
    EXPECT_EQ(FormatNumber(0.00001, '.'), "0.00001");
}

TEST(FormatNumber, ShowsAnExponentForVeryLargeAndVerySmallNumbers) {
    EXPECT_EQ(FormatNumber(999999999999999.0, '.'), "999999999999999");
    EXPECT_EQ(FormatNumber(1e15, '.'), "1E+15");
    EXPECT_EQ(FormatNumber(-2.5e20, ','), "-2,5E+20");
    EXPECT_EQ(FormatNumber(0.0000015, ','), "1,5E-6");
}

TEST(FormatNumber, ShowsWhatIsNoFiniteNumberAsZero) {
    EXPECT_EQ(FormatNumber(kInfinity, '.'), "0");
    EXPECT_EQ(FormatNumber(std::numeric_limits<double>::quiet_NaN(), '.'), "0");
}

TEST(ParseInteger, ReadsSignsAndBlanks) {
    EXPECT_EQ(ParseInteger("42"), 42);
    EXPECT_EQ(ParseInteger(" -17 "), -17);
    EXPECT_EQ(ParseInteger("+5"), 5);
    EXPECT_EQ(ParseInteger("007"), 7);
}

TEST(ParseInteger, HoldsTheWholeRange) {
    EXPECT_EQ(ParseInteger("2147483647"), 2147483647);
    EXPECT_EQ(ParseInteger("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(ParseInteger("2147483648"), std::nullopt);
    EXPECT_EQ(ParseInteger("-2147483649"), std::nullopt);
    EXPECT_EQ(ParseInteger(std::string(1000, '9')), std::nullopt);
}

TEST(ParseInteger, RefusesWhatIsNoInteger) {
    for (const std::string_view text :
         {"", " ", "-", "+", "+-1", "--1", "1 2", "1.5", "1,5", "0x10", "12a", "a"})
        EXPECT_EQ(ParseInteger(text), std::nullopt) << text;
}

TEST(ParseIntegerOr, AnswersTheDefaultForWhatIsNoInteger) {
    EXPECT_EQ(ParseIntegerOr("12", 3), 12);
    EXPECT_EQ(ParseIntegerOr("x", 3), 3);
}

TEST(ParseNumber, ReadsTheSeparatorGiven) {
    EXPECT_EQ(ParseNumber("12,5", ','), 12.5);
    EXPECT_EQ(ParseNumber("12.5", '.'), 12.5);
    EXPECT_EQ(ParseNumber("12.5", ','), std::nullopt);
}

TEST(ParseNumber, ReadsSignsBlanksAndExponents) {
    EXPECT_EQ(ParseNumber(" -0,25 ", ','), -0.25);
    EXPECT_EQ(ParseNumber("+3", ','), 3.0);
    EXPECT_EQ(ParseNumber("1,5e3", ','), 1500.0);
    EXPECT_EQ(ParseNumber("25E-2", ','), 0.25);
    EXPECT_EQ(ParseNumber(",5", ','), 0.5);
    EXPECT_EQ(ParseNumber("5,", ','), 5.0);
}

TEST(ParseNumber, ReadsBackWhatFormatNumberWrites) {
    for (const double value : {0.0, 12.5, -7.25, 1e15, 2.5e20, 1.5e-6, 123456.789012345})
        EXPECT_EQ(ParseNumber(FormatNumber(value, ','), ','), value);
}

TEST(ParseNumber, RefusesWhatIsNoNumber) {
    for (const std::string_view text :
         {"", " ", ",", "-", "-,", "1,2,3", "1 2", "1e", "1e+", "e5", "abc", "nan", "inf", "0x10"})
        EXPECT_EQ(ParseNumber(text, ','), std::nullopt) << text;
}

TEST(ParseNumber, RefusesWhatNoDoubleHolds) {
    EXPECT_EQ(ParseNumber("1e999", '.'), std::nullopt);
    EXPECT_EQ(ParseNumber(std::string(500, '9'), '.'), std::nullopt);
}

}  // namespace
}  // namespace tolvane
