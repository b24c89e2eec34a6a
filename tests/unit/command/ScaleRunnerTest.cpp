#include "command/ScaleRunner.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "command/ArticleJobs.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/scales/TestScales.h"
#include "tests/unit/command/TestWorld.h"

namespace tolvane::test {
namespace {

using enum TScaleOutcome;

TMakeJob JobsThatThrow() {
    return [](const TJobParts&, const TScaleRec&) -> std::unique_ptr<TScaleJob> {
        throw std::runtime_error("no memory");
    };
}

TEST(RunScales, TellsAScaleThatNoRunCanUseAndDoesNothingInIt) {
    TTestWorld test;
    const TScratchFolder folder;
    const TScaleResults results =
        RunScales({.state = folder.Path(), .progress = false}, test.world,
                  {{.rec = NetworkScale(1, "A"), .fault = "it has no address", .cure = "enter it"}},
                  JobsThatThrow());
    ASSERT_EQ(results.scales.size(), 1U);
    EXPECT_EQ(results.scales[0].outcome, Failed);
    EXPECT_EQ(results.scales[0].error, "it has no address; enter it");
}

// The log's time is asked when the scale has ended: whatever fails then is the scale's failure, and
// the others go on.
TEST(RunScales, KeepsTheResultsWhenTheViewOfAScaleFails) {
    TTestWorld test;
    const TScratchFolder folder;
    int asked = 0;
    test.world.log.Open(folder / "log", [&]() -> std::string {
        if (++asked == 1) throw std::runtime_error("no time");
        return "T";
    });
    const TScaleResults results =
        RunScales({.state = folder.Path(), .jobs = 1, .progress = false}, test.world,
                  {{.rec = NetworkScale(1, "A")}, {.rec = NetworkScale(2, "B")}}, JobsThatThrow());
    EXPECT_EQ(results.scales[0].error, "no memory; no time");
    EXPECT_EQ(results.scales[1].error, "no memory");
}

TEST(RunScales, TellsALackOfMemoryInEnglish) {
    TTestWorld test;
    const TScratchFolder folder;
    const TScaleResults results = RunScales(
        {.state = folder.Path(), .progress = false}, test.world, {{.rec = NetworkScale(1, "A")}},
        [](const TJobParts&, const TScaleRec&) -> std::unique_ptr<TScaleJob> {
            throw std::bad_alloc();
        });
    EXPECT_EQ(results.scales[0].error, "not enough memory");
}

TEST(RunScales, BeginsNoScaleAfterTheDeadline) {
    TTestWorld test;
    const TScratchFolder folder;
    test.clock.Sleep(TMilliseconds(60'000));
    const TScaleResults results = RunScales(
        {.state = folder.Path(), .deadline = std::chrono::seconds(60), .progress = false},
        test.world, {{.rec = NetworkScale(1, "A")}},
        [&](const TJobParts& parts, const TScaleRec& rec) {
            return std::make_unique<TReleaseJob>(
                parts, rec,
                TLedgerJob::TLedgerParts{.choices = {}, .maxAge = kWeek, .now = test.now});
        });
    EXPECT_TRUE(results.deadline);
    EXPECT_EQ(results.scales[0].outcome, Stopped);
    EXPECT_EQ(test.err.str(),
              "The deadline has passed: each scale ends with the article in work.\n");
}

}  // namespace
}  // namespace tolvane::test
