#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

class InterruptTest : public TProgramTest {
protected:
    InterruptTest() {
        for (const int number : {1, 2}) {
            TVirtualScale& scale = AddScale(number);
            scale.SetFaults({.faults = {simulator::FaultFromText("slow,ms=100")}});
            scales_.push_back(&scale);
        }
    }
    // A run that has begun to send articles to both scales.
    std::unique_ptr<TProcess> StartAndWait() {
        std::unique_ptr<TProcess> run = Start({"write", "--json"});
        for (const TVirtualScale* scale : scales_)
            EXPECT_TRUE(scale->WaitForRequests(6, std::chrono::seconds(30)));
        return run;
    }

    std::vector<TVirtualScale*> scales_{};
};

TEST_F(InterruptTest, TheFirstOneEndsBetweenTwoArticlesWithTheScalesWeighing) {
    const std::unique_ptr<TProcess> process = StartAndWait();
    process->Interrupt();
    const TRun run = Ended(*process);
    EXPECT_EQ(run.exitCode, 130) << run.err;
    EXPECT_NE(run.err.find("Interrupted"), std::string::npos) << run.err;
    for (const int number : {1, 2}) {
        const TVirtualScale& scale = *scales_.at(static_cast<std::size_t>(number) - 1);
        EXPECT_EQ(run.Scale(number).at("outcome"), "stopped");
        EXPECT_EQ(run.Scale(number).at("mayBeProgramming"), false);
        EXPECT_FALSE(scale.State().programming);
        const int written = run.Scale(number).at("written");
        EXPECT_EQ(written + int(run.Scale(number).at("pending")), 3);
        EXPECT_LT(written, 3);
    }
    const TRun next = Run({"write", "--changed", "--json"});
    EXPECT_EQ(next.exitCode, 0) << next.err;
    EXPECT_EQ(next.Scale(1).at("unchanged"), run.Scale(1).at("written"));
    EXPECT_EQ(NumbersOf(*scales_[0]), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(NumbersOf(*scales_[1]), (std::vector<int>{1, 2, 4}));
}

TEST_F(InterruptTest, TheSecondOneEndsAtOnceAndLosesNothingThatWasSaved) {
    const std::unique_ptr<TProcess> process = StartAndWait();
    scales_[0]->SetFaults({.faults = {simulator::FaultFromText("silent")}});
    process->Interrupt();
    process->Interrupt();
    EXPECT_EQ(Ended(*process).exitCode, 130);
    scales_[0]->SetFaults({});
    scales_[1]->SetFaults({});
    EXPECT_EQ(Run({"write", "--changed"}).exitCode, 0);
    EXPECT_EQ(NumbersOf(*scales_[0]), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(NumbersOf(*scales_[1]), (std::vector<int>{1, 2, 4}));
}

}  // namespace
}  // namespace tolvane::test
