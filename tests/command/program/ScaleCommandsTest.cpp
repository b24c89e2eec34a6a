// The commands "test" and "release".

#include "simulator/Commands.h"
#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

using ScaleCommandsTest = TProgramTest;

TEST_F(ScaleCommandsTest, ATestTellsWhatEachScaleReports) {
    const TVirtualScale& scale = AddScale(1, TModel::S300);
    AddScale(2, TModel::Ets);
    const TRun run = Run({"test", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Scale(1).at("model"), "S300");
    EXPECT_EQ(run.Scale(1).at("version"), "3.02");
    EXPECT_EQ(run.Scale(1).at("capacity"), 4000);
    EXPECT_EQ(run.Scale(1).at("labelMode"), 2);
    EXPECT_GT(run.Scale(1).at("exchangeMs"), 0.0);
    EXPECT_EQ(run.Scale(2).at("model"), "ETS");
    EXPECT_EQ(run.Scale(2).at("version"), "2.10");
    EXPECT_FALSE(scale.State().programming);
    EXPECT_EQ(CountOf(scale, simulator::kSetParam), 0);
}

TEST_F(ScaleCommandsTest, ATestNeedsNoDatabase) {
    AddScale(1);
    WithShop({});
    EXPECT_EQ(RunBare({"test", "--ini", (folder_ / "Tolvane.ini").string(), "--state",
                       StateFolder().string()})
                  .exitCode,
              0);
}

TEST_F(ScaleCommandsTest, ADeadScaleIsToldAndTheOthersAreTested) {
    AddDeadScale(1);
    AddScale(2);
    const TRun run = Run({"test", "--json"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.Scale(1).at("outcome"), "not reached");
    EXPECT_NE(run.Scale(1).at("error"), "");
    EXPECT_EQ(run.Scale(1).at("mayBeProgramming"), false);
    EXPECT_EQ(run.Scale(2).at("outcome"), "done");
}

TEST_F(ScaleCommandsTest, WhenNoScaleIsReachedTheCodeSaysSo) {
    AddDeadScale(1);
    AddDeadScale(2);
    EXPECT_EQ(Run({"test"}).exitCode, 5);
    EXPECT_EQ(Run({"release"}).exitCode, 5);
    EXPECT_EQ(Run({"write"}).exitCode, 5);
    EXPECT_EQ(Run({"delete", "--plu", "1"}).exitCode, 5);
}

TEST_F(ScaleCommandsTest, AScaleThatWasLeftInProgrammingModeIsReleased) {
    simulator::TScaleState left;
    left.programming = true;
    TScaleOptions options;
    options.initialState = left;
    const TVirtualScale& scale = AddScale(1, TModel::S300, std::move(options));
    ASSERT_TRUE(scale.State().programming);
    const TRun run = Run({"release", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Scale(1).at("outcome"), "done");
    EXPECT_FALSE(scale.State().programming);
    EXPECT_EQ(CountOf(scale, simulator::kSetPrgMode), 0);
}

}  // namespace
}  // namespace tolvane::test
