#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

class DeleteTest : public TProgramTest {
protected:
    DeleteTest() {
        capacity_ = 20;
        first_ = &AddScale(1);
        second_ = &AddScale(2);
    }

    TVirtualScale* first_ = nullptr;
    TVirtualScale* second_ = nullptr;
};

TEST_F(DeleteTest, TheNamedArticlesLeaveEveryScale) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    const TRun run = Run({"delete", "--plu", "1,3", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Scale(1).at("deleted"), 2);
    EXPECT_EQ(NumbersOf(*first_), (std::vector<int>{2}));
    EXPECT_EQ(NumbersOf(*second_), (std::vector<int>{2, 4}));
    EXPECT_FALSE(first_->State().programming);
}

TEST_F(DeleteTest, WhatWasDeletedIsWrittenAgain) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    ASSERT_EQ(Run({"delete", "--plu", "1", "--scale", "1"}).exitCode, 0);
    const TRun run = Run({"write", "--changed", "--json"});
    EXPECT_EQ(run.Scale(1).at("written"), 1);
    EXPECT_EQ(run.Scale(2).at("written"), 0);
    EXPECT_EQ(NumbersOf(*first_), (std::vector<int>{1, 2, 3}));
}

TEST_F(DeleteTest, EverythingIsDeletedOnlyWithYes) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    EXPECT_EQ(Run({"delete", "--everything"}).exitCode, 2);
    EXPECT_EQ(NumbersOf(*first_), (std::vector<int>{1, 2, 3}));
    const TRun run = Run({"delete", "--everything", "--yes", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Scale(1).at("deleted"), 20);
    EXPECT_EQ(NumbersOf(*first_), (std::vector<int>{}));
    EXPECT_EQ(NumbersOf(*second_), (std::vector<int>{}));
    EXPECT_EQ(Run({"write", "--changed", "--json"}).Scale(1).at("written"), 3);
}

TEST_F(DeleteTest, ANumberThatTheScaleDoesNotHaveIsTold) {
    const TRun run = Run({"delete", "--plu", "25", "--scale", "1", "--json"});
    EXPECT_EQ(run.exitCode, 3) << run.err;
    EXPECT_EQ(run.Scale(1).at("outcome"), "done");
    const auto articles = run.Rows("articles");
    ASSERT_EQ(articles.size(), 1U) << run.out;
    EXPECT_EQ(articles[0].at("number"), 25);
    EXPECT_EQ(articles[0].at("reason"), "the scale has no such number: it has 1 to 20");
}

TEST_F(DeleteTest, NoDatabaseIsNeeded) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    EXPECT_EQ(RunBare({"delete", "--plu", "1", "--ini", (folder_ / "Tolvane.ini").string(),
                       "--state", StateFolder().string()})
                  .exitCode,
              0);
    EXPECT_EQ(NumbersOf(*first_), (std::vector<int>{2, 3}));
}

}  // namespace
}  // namespace tolvane::test
