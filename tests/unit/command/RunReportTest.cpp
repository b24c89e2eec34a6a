#include "command/RunReport.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/support/scales/TestScales.h"

namespace tolvane::test {
namespace {

using enum TScaleOutcome;

TExitCode CodeOf(const std::vector<TScaleOutcome>& outcomes, TScaleResults results = {}) {
    for (const TScaleOutcome outcome : outcomes)
        results.scales.push_back({.outcome = outcome});
    return ExitCodeOf(results);
}

TEST(ExitCodes, TellWhatBecameOfAllScales) {
    EXPECT_EQ(CodeOf({}), TExitCode::Done);
    EXPECT_EQ(CodeOf({Done, Done}), TExitCode::Done);
    EXPECT_EQ(CodeOf({NotReached, NotReached}), TExitCode::NoScaleReached);
    EXPECT_EQ(CodeOf({Locked}), TExitCode::Locked);
    EXPECT_EQ(CodeOf({Done, Locked}), TExitCode::Locked);
    for (const auto& some :
         {std::array{Done, Failed}, std::array{Done, NotReached}, std::array{Failed, Failed},
          std::array{NotReached, Locked}, std::array{Failed, Locked}, std::array{Done, Stopped},
          std::array{Stopped, Stopped}, std::array{Failed, NotReached}})
        EXPECT_EQ(CodeOf({some[0], some[1]}), TExitCode::SomeFailed);
    EXPECT_EQ(CodeOf({Done, Locked, Failed}), TExitCode::SomeFailed);
}

TEST(ExitCodes, TellAnInterruptBeforeAnythingElse) {
    for (const TScaleOutcome outcome : {Done, Failed, NotReached, Locked, Stopped})
        EXPECT_EQ(CodeOf({outcome}, {.interrupted = true}), TExitCode::Interrupted);
}

TEST(ExitCodes, TellTheDeadlineOnlyByWhatItLeftUndone) {
    EXPECT_EQ(CodeOf({Done}, {.deadline = true}), TExitCode::Done);
    EXPECT_EQ(CodeOf({Done, Stopped}, {.deadline = true}), TExitCode::SomeFailed);
}

TEST(ExitCodes, TellNumbersThatNoArticleHas) {
    const TScaleResults results = {.unknown = {{.number = 5, .reason = "no article"}}};
    EXPECT_EQ(CodeOf({Done}, results), TExitCode::SomeFailed);
    EXPECT_EQ(CodeOf({NotReached}, results), TExitCode::NoScaleReached);
}

TEST(ExitCodes, TellLeftOutArticlesThatWereAskedForByNumber) {
    TScaleResults results;
    results.scales.push_back({.leftOut = {{.number = 5, .reason = "r"}}});
    EXPECT_EQ(ExitCodeOf(results), TExitCode::Done);
    results.named = true;
    EXPECT_EQ(ExitCodeOf(results), TExitCode::SomeFailed);
}

TEST(ExitCodes, TellATraceThatLacksItsEndWhereAllElseWentWell) {
    EXPECT_EQ(CodeOf({Done}, {.traceFailed = true}), TExitCode::SomeFailed);
    EXPECT_EQ(CodeOf({NotReached}, {.traceFailed = true}), TExitCode::NoScaleReached);
}

TEST(ExitCodes, TellScalesThatNoRunCanUse) {
    const TScaleResult unusable = UnusableResult(
        {.rec = NetworkScale(3, "A"), .fault = "it has no address", .cure = "enter it"});
    EXPECT_EQ(unusable.outcome, Failed);
    EXPECT_EQ(unusable.error, "it has no address; enter it");
    EXPECT_EQ(ExitCodeOf({.scales = {unusable}}), TExitCode::Usage);
    EXPECT_EQ(ExitCodeOf({.scales = {unusable, unusable}}), TExitCode::Usage);
    EXPECT_EQ(CodeOf({Done}, {.scales = {unusable}}), TExitCode::SomeFailed);
    EXPECT_EQ(CodeOf({NotReached}, {.scales = {unusable}}), TExitCode::SomeFailed);
}

TEST(FailureLines, NameEachScaleThatIsNotDoneAndWhy) {
    TScaleResults results;
    const auto add = [&](TScaleResult result) {
        result.rec = NetworkScale(static_cast<int>(results.scales.size()) + 1, "MEAT");
        results.scales.push_back(std::move(result));
    };
    add({.outcome = Done, .leftOut = {{.number = 5, .reason = "r"}}});
    add({.outcome = NotReached, .error = "no\nanswer"});
    add({.outcome = Failed, .refused = {{.number = 7, .reason = "bad"}, {.number = 8}}});
    add({.outcome = Stopped, .mayBeProgramming = true});
    EXPECT_EQ(FailureLines(results),
              (std::vector<std::string>{"scale 2 MEAT: no answer",
                                        "scale 3 MEAT: 2 refused, first 7: bad",
                                        "scale 4 MEAT: stopped; it may not weigh"}));
}

TEST(RunReport, NamesTheModelsInATest) {
    TScaleResults results;
    results.scales.push_back({.rec = NetworkScale(3, "A")});
    const TReport test = ReportOf("test", results);
    EXPECT_EQ(test.tables[0].columns[2].key, "model");
    EXPECT_EQ(test.tables[0].rows[0][2], TCell(std::string("EVL")));
    const TReport write = ReportOf("write", results);
    for (const TReportColumn& column : write.tables[0].columns)
        EXPECT_NE(column.key, "model");
}

TEST(RunReport, ListsUnknownNumbersOnceAndTheScalesArticlesByScale) {
    TScaleResults results = {.unknown = {{.number = 5, .reason = "no article has this number"}}};
    results.scales.push_back({.rec = NetworkScale(3, "A"),
                              .refused = {{.number = 7, .name = "Eggs", .reason = "r"}},
                              .leftOut = {{.number = 8, .name = "Milk", .reason = "l"}},
                              .strays = {9}});
    const TReport report = ReportOf("write", results);
    ASSERT_EQ(report.tables.size(), 2U);
    const auto text = [](const char* value) { return TCell(std::string(value)); };
    const std::vector<std::vector<TCell>> rows = {
        {{}, std::int64_t{5}, text(""), text("left out"), text("no article has this number")},
        {std::int64_t{3}, std::int64_t{7}, text("Eggs"), text("refused"), text("r")},
        {std::int64_t{3}, std::int64_t{8}, text("Milk"), text("left out"), text("l")},
        {std::int64_t{3}, std::int64_t{9}, text(""), text("left over"),
         text("the scale holds it and its list does not; --prune deletes it")}};
    EXPECT_EQ(report.tables[1].rows, rows);
}

}  // namespace
}  // namespace tolvane::test
