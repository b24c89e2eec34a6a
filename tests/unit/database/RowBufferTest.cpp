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

// A name of its own in each row, a group for a thousand rows, and now and then a long comment.
std::vector<std::string> TextsOf(std::size_t row) {
    return {"name " + std::to_string(row), "group " + std::to_string(row / 1000),
            row % 500 == 0 ? std::string(20000, static_cast<char>('a' + row % 26)) : ""};
}

void AppendTexts(TRowBuffer& buffer, std::size_t row) {
    const std::vector<std::string> texts = TextsOf(row);
    buffer.Append(std::vector<TColumnValue>{Text(texts[0]), Text(texts[1]), Text(texts[2])});
}

TEST(RowBuffer, GivesBackRowsInTheirOrderAndKeepsTheOthers) {
    TRowBuffer buffer(std::vector<TColumnType>(3, {TValueKind::Text, 0}));
    constexpr std::size_t kRows = 200'000;
    for (std::size_t row = 0; row < kRows; ++row)
        AppendTexts(buffer, row);
    constexpr std::size_t kRowsOfBlock = 0x100000 / (1 + 3 * sizeof(void*));
    const std::uint64_t all = buffer.MemoryUsed();
    for (std::size_t row = 0; row < kRows; ++row) {
        const std::vector<std::string> texts = TextsOf(row);
        for (std::size_t column = 0; column < texts.size(); ++column)
            ASSERT_EQ(buffer.Value(row, column).text, texts[column]) << row;
        buffer.FreeBefore(row);
        // The rows of one block with their texts, a block of texts in part, and a spare end of each
        // are there too long.
        ASSERT_LE(buffer.MemoryUsed(), all * (kRows - row + kRowsOfBlock) / kRows + 4 * 0x100000)
            << row;
    }
    EXPECT_THROW(buffer.Value(0, 0), std::out_of_range);
    EXPECT_EQ(buffer.RowCount(), kRows);
}

TEST(RowBuffer, TakesMoreRowsAfterSomeAreFreed) {
    TRowBuffer buffer(std::vector<TColumnType>(3, {TValueKind::Text, 0}));
    constexpr std::size_t kRows = 200'000;
    for (std::size_t row = 0; row < kRows; ++row) {
        AppendTexts(buffer, row);
        if (row % 1000 == 999) buffer.FreeBefore(row);
    }
    EXPECT_LE(buffer.MemoryUsed(), 8U * 0x100000);
    EXPECT_EQ(buffer.Value(kRows - 1, 1).text, TextsOf(kRows - 1)[1]);
    buffer.FreeBefore(kRows + 100);
    AppendTexts(buffer, kRows);
    for (std::size_t column = 0; column < 3; ++column)
        EXPECT_EQ(buffer.Value(kRows, column).text, TextsOf(kRows)[column]);
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
