// Whatever answers at a scale's address costs its own scale some seconds at most, claims nothing,
// and leaves the others alone.

#include "tests/command/program/ProgramTest.h"
#include "tests/support/scales/HostileScale.h"

namespace tolvane::test {
namespace {

using HostileScalesTest = TProgramTest;

// Each request may take its three seconds; the scale's first failure ends it.
TEST_F(HostileScalesTest, CostTheRunSomeSecondsAndNoOtherScaleAnything) {
    std::vector<std::unique_ptr<THostileScale>> hostile;
    for (const THostility& hostility : Hostilities()) {
        hostile.push_back(std::make_unique<THostileScale>(hostility));
        AddToList(static_cast<int>(hostile.size()), TModel::S300, "127.0.0.1",
                  hostile.back()->Port(), 1);
    }
    const int good = static_cast<int>(hostile.size()) + 1;
    const TVirtualScale& scale = AddScale(good);
    const auto begin = std::chrono::steady_clock::now();
    const TRun run = Run({"write", "--json"});
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
    EXPECT_EQ(run.exitCode, 3) << run.err;
    EXPECT_EQ(run.Scale(good).at("outcome"), "done") << run.out;
    EXPECT_FALSE(scale.State().articles.empty());
    for (int number = 1; number < good; ++number) {
        const char* const name = Hostilities().at(static_cast<std::size_t>(number) - 1).name;
        EXPECT_NE(run.Scale(number).at("outcome"), "done") << name;
        EXPECT_NE(run.Scale(number).at("error"), "") << name;
    }
    // Nothing is claimed of them.
    const TRun status = Run({"status", "--json"});
    for (int number = 1; number < good; ++number)
        EXPECT_EQ(status.Scale(number).value("held", 0), 0) << status.out;
    EXPECT_GT(status.Scale(good).value("held", 0), 0) << status.out;
}

}  // namespace
}  // namespace tolvane::test
