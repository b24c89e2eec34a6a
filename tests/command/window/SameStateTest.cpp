// What the demo's scales hold after the window's run, against the same scales after `tolvane
// write`, and after that of the program for Windows, which has written some of the articles.

#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "simulator/ScaleState.h"
#include "tests/support/Environment.h"

namespace tolvane::test {
namespace {

using simulator::TArticle;
using simulator::TScaleState;

TScaleState StateIn(const char* folder, const std::string& scale) {
    return simulator::LoadState(Environment(folder) + "/" + scale + ".json");
}

// The numbers of the articles that the program for Windows was to write.
std::set<int> NumbersInWine() {
    std::set<int> numbers;
    std::istringstream list(Environment("TOLVANE_WINDOW_ARTICLES"));
    for (std::string number; std::getline(list, number, ',');)
        numbers.insert(std::stoi(number));
    return numbers;
}

class SameState : public testing::TestWithParam<const char*> {
protected:
    const TScaleState window_ = StateIn("TOLVANE_DEMO_FOLDER", GetParam());
    const TScaleState command_ = StateIn("TOLVANE_WINDOW_FOLDER", GetParam());
    const TScaleState wine_ = StateIn("TOLVANE_WINDOW_FOLDER", std::string("wine/") + GetParam());
};

TEST_P(SameState, IsLeftByTheCommandAsByTheWindow) {
    EXPECT_TRUE(command_.scale == window_.scale);
    EXPECT_FALSE(command_.programming);
    EXPECT_FALSE(window_.programming);
    EXPECT_FALSE(window_.articles.empty());
    ASSERT_EQ(command_.articles.size(), window_.articles.size());
    for (const auto& [number, article] : window_.articles) {
        ASSERT_TRUE(command_.articles.contains(number)) << number;
        // Also how often each price and each text was written.
        EXPECT_TRUE(command_.articles.at(number) == article) << number;
    }
}

// The command puts the scale into weighing mode once more.
TEST_P(SameState, TookTheSameNumberOfRequests) {
    auto counts = window_.requests.byCommand;
    ++counts[simulator::kSetWeightMode];
    EXPECT_EQ(command_.requests.byCommand, counts);
    EXPECT_EQ(command_.requests.refused, 0);
}

TEST_P(SameState, IsLeftByTheProgramForWindowsInItsArticles) {
    EXPECT_TRUE(wine_.scale == window_.scale);
    EXPECT_FALSE(wine_.programming);
    EXPECT_EQ(wine_.requests.refused, 0);
    auto expected = window_.articles;
    const std::set<int> numbers = NumbersInWine();
    std::erase_if(expected, [&](const auto& entry) { return !numbers.contains(entry.first); });
    EXPECT_GE(expected.size(), 4U);
    ASSERT_EQ(wine_.articles.size(), expected.size());
    for (const auto& [number, article] : expected) {
        ASSERT_TRUE(wine_.articles.contains(number)) << number;
        EXPECT_TRUE(wine_.articles.at(number) == article) << number;
    }
}

INSTANTIATE_TEST_SUITE_P(Demo, SameState, testing::Values("evl", "ets", "s300"),
                         [](const auto& scale) { return std::string(scale.param); });

}  // namespace
}  // namespace tolvane::test
