#include "database/RowBuffer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "ColumnValues.h"

namespace tolvane {
namespace {

using test::Number;
using test::Text;
using test::Value;

TEST(RowBuffer, KeepsEveryKindOfValue) {
    TRowBuffer buffer({{TValueKind::Boolean, 0},
                       {TValueKind::Integer, -4},
                       {TValueKind::Text, 0},
                       {TValueKind::Float, 0},
                       {TValueKind::Date, 0},
                       {TValueKind::Time, 0},
                       {TValueKind::Timestamp, 0}});
    std::vector<TColumnValue> row = {
        Value(TValueKind::Boolean),  Number(-125000),         Text("abc"),
        Value(TValueKind::Float),    Value(TValueKind::Date), Value(TValueKind::Time),
        Value(TValueKind::Timestamp)};
    row[0].integer = 1;
    row[3].number = 0.5;
    row[4].days = -7;
    row[5].ticks = 863999999;
    row[6].days = 60310;
    row[6].ticks = 1;
    buffer.Append(row);

    ASSERT_EQ(buffer.RowCount(), 1U);
    EXPECT_EQ(buffer.Value(0, 0).integer, 1);
    EXPECT_EQ(buffer.Value(0, 1).integer, -125000);
    EXPECT_EQ(buffer.Value(0, 1).scale, -4);
    EXPECT_EQ(buffer.Value(0, 2).text, "abc");
    EXPECT_EQ(buffer.Value(0, 3).number, 0.5);
    EXPECT_EQ(buffer.Value(0, 4).days, -7);
    EXPECT_EQ(buffer.Value(0, 5).ticks, 863999999U);
    EXPECT_EQ(buffer.Value(0, 6).days, 60310);
    EXPECT_EQ(buffer.Value(0, 6).ticks, 1U);
    for (std::size_t column = 0; column < row.size(); ++column)
        EXPECT_EQ(buffer.Value(0, column).kind, row[column].kind);
}

TEST(RowBuffer, NullsAreKeptPerColumnAndRow) {
    TRowBuffer buffer(std::vector<TColumnType>(10, {TValueKind::Integer, 0}));
    for (std::size_t row = 0; row < 10; ++row) {
        std::vector<TColumnValue> values(10, Number(7));
        values[row] = {};
        buffer.Append(values);
    }
    for (std::size_t row = 0; row < 10; ++row)
        for (std::size_t column = 0; column < 10; ++column)
            EXPECT_EQ(buffer.Value(row, column).kind,
                      row == column ? TValueKind::Null : TValueKind::Integer);
}

TEST(RowBuffer, CopiesTextsAndKeepsThemWhileItGrows) {
    TRowBuffer buffer({{TValueKind::Text, 0}, {TValueKind::Text, 0}});
    constexpr std::size_t kRows = 30000;
    for (std::size_t row = 0; row < kRows; ++row) {
        std::string text = std::to_string(row);
        buffer.Append(std::vector<TColumnValue>{Text(text), Text("")});
        text.assign(text.size(), 'x');
    }
    for (std::size_t row = 0; row < kRows; ++row) {
        ASSERT_EQ(buffer.Value(row, 0).text, std::to_string(row));
        ASSERT_EQ(buffer.Value(row, 1).text, "");
    }
}

TEST(RowBuffer, TakesTextsLongerThanABlock) {
    TRowBuffer buffer({{TValueKind::Text, 0}});
    const std::string longText(1000000, 'a');
    buffer.Append(std::vector<TColumnValue>{Text("before")});
    buffer.Append(std::vector<TColumnValue>{Text(longText)});
    buffer.Append(std::vector<TColumnValue>{Text("behind")});
    EXPECT_EQ(buffer.Value(0, 0).text, "before");
    EXPECT_EQ(buffer.Value(1, 0).text, longText);
    EXPECT_EQ(buffer.Value(2, 0).text, "behind");
}

TEST(RowBuffer, UsesTheLengthOfTextsAndNotOfTheirColumns) {
    TRowBuffer buffer({{TValueKind::Text, 0}});
    for (int row = 0; row < 100000; ++row) {
        const std::string text = std::to_string(1'000'000'000 + row);
        buffer.Append(std::vector<TColumnValue>{Text(text)});
    }
    // Per row a pointer, a byte for nulls, a length and ten characters; besides at most two spare
    // blocks.
    EXPECT_LE(buffer.MemoryUsed(), 100000 * (sizeof(void*) + 1 + 4 + 10) + 2 * 0x100000);
}

TEST(RowBuffer, KeepsATextThatTheRowBeforeHasOnlyOnce) {
    TRowBuffer buffer({{TValueKind::Text, 0}, {TValueKind::Text, 0}});
    const std::string group(1000, 'g');
    const std::string unit(1000, 'u');
    for (int row = 0; row < 100000; ++row)
        buffer.Append(std::vector<TColumnValue>{Text(group), row % 2 == 0 ? Text(unit) : Text("")});
    EXPECT_LE(buffer.MemoryUsed(), 100000 * (2 * sizeof(void*) + 1) + 2 * 0x100000);
    EXPECT_EQ(buffer.Value(0, 0).text, group);
    EXPECT_EQ(buffer.Value(99998, 1).text, unit);
    EXPECT_EQ(buffer.Value(99999, 0).text, group);
    EXPECT_EQ(buffer.Value(99999, 1).text, "");
}

TEST(RowBuffer, ChecksRowAndColumn) {
    TRowBuffer buffer({{TValueKind::Integer, 0}});
    EXPECT_THROW(buffer.Value(0, 0), std::out_of_range);
    buffer.Append(std::vector<TColumnValue>{Number(1)});
    EXPECT_NO_THROW(buffer.Value(0, 0));
    EXPECT_THROW(buffer.Value(1, 0), std::out_of_range);
    EXPECT_THROW(buffer.Value(0, 1), std::out_of_range);
    EXPECT_THROW(TRowBuffer().Value(0, 0), std::out_of_range);
}

TEST(RowBuffer, MovesWithItsRows) {
    TRowBuffer source({{TValueKind::Text, 0}});
    source.Append(std::vector<TColumnValue>{Text("kept")});
    TRowBuffer target({{TValueKind::Text, 0}});
    target.Append(std::vector<TColumnValue>{Text("gone")});
    target = std::move(source);
    EXPECT_EQ(target.Value(0, 0).text, "kept");
    target.Append(std::vector<TColumnValue>{Text("next")});
    EXPECT_EQ(target.Value(1, 0).text, "next");
}

}  // namespace
}  // namespace tolvane
