#include "config/IniIndex.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

bool Any(std::size_t) {
    return true;
}

TEST(IniIndex, FindsNothingAtFirst) {
    EXPECT_EQ(TIniIndex().Find(0, Any), TIniIndex::kNone);
}

TEST(IniIndex, FindsEveryNumberByItsHash) {
    TIniIndex index;
    for (std::size_t number = 0; number < 1000; ++number)
        index.Add(number * 64, number);
    for (std::size_t number = 0; number < 1000; ++number)
        EXPECT_EQ(index.Find(number * 64, Any), number);
    EXPECT_EQ(index.Find(1, Any), TIniIndex::kNone);
}

TEST(IniIndex, TellsNumbersOfTheSameHashApart) {
    TIniIndex index;
    for (std::size_t number = 0; number < 100; ++number)
        index.Add(7, number);
    EXPECT_EQ(index.Find(7, [](std::size_t number) { return number == 70; }), 70U);
    EXPECT_EQ(index.Find(7, [](std::size_t number) { return number == 100; }), TIniIndex::kNone);
}

}  // namespace
}  // namespace tolvane
