#include "articles/TextArena.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tolvane {
namespace {

TEST(TextArena, TheEmptyTextIsPosition0) {
    TTextArena arena;
    EXPECT_EQ(arena.Store(""), 0U);
    EXPECT_EQ(arena.Text(0), "");
    EXPECT_EQ(arena.MemoryUsed(), 0U);
}

TEST(TextArena, ARepeatedTextIsStoredOnce) {
    TTextArena arena;
    const auto first = arena.Store("repeated");
    const auto other = arena.Store("another");
    EXPECT_EQ(arena.Store("repeated"), first);
    EXPECT_NE(first, other);
    EXPECT_EQ(arena.Text(first), "repeated");
    EXPECT_EQ(arena.Text(other), "another");
}

TEST(TextArena, ARepeatedTextOfAnyLengthIsStoredOnce) {
    for (std::size_t length = 1; length <= TTextArena::kLongest; ++length) {
        TTextArena arena;
        const std::string text(length, 'a');
        const auto first = arena.Store(text);
        EXPECT_EQ(arena.Store(text), first) << length;
        EXPECT_EQ(arena.Text(first), text);
    }
}

TEST(TextArena, KeepsTextsOfEveryLengthAcrossBlocks) {
    TTextArena arena;
    std::vector<TTextArena::TPosition> positions;
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < 3000; ++i) {
        texts.push_back(std::to_string(i) + std::string(i % 250, static_cast<char>('a' + i % 26)));
        positions.push_back(arena.Store(texts.back()));
    }
    for (std::size_t i = 0; i < texts.size(); ++i)
        ASSERT_EQ(arena.Text(positions[i]), texts[i]);
}

TEST(TextArena, ATextWithZeroAndHighBytesComesBackWhole) {
    TTextArena arena;
    const std::string text("\0\xFF\x80", 3);
    EXPECT_EQ(arena.Text(arena.Store(text)), text);
}

TEST(TextArena, ClearForgetsAndFrees) {
    TTextArena arena;
    arena.Store("text");
    arena.Clear();
    EXPECT_EQ(arena.MemoryUsed(), 0U);
    EXPECT_EQ(arena.Text(arena.Store("text")), "text");
}

}  // namespace
}  // namespace tolvane
