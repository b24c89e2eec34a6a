#include "command/EventLog.h"

#include <gtest/gtest.h>

#include <sstream>

#include "command/ScaleView.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/scales/TestScales.h"

namespace tolvane::test {
namespace {

TEST(EventLog, AppendsAnObjectALine) {
    const TScratchFolder folder;
    for (int run = 0; run < 2; ++run) {
        TEventLog log;
        log.Open(folder / "log.json", [] { return "T"; });
        log.Write("written", {{"scale", std::int64_t{3}},
                              {"text", std::string("Щ \"x\"\n")},
                              {"nothing", {}},
                              {"ok", true}});
        EXPECT_FALSE(log.Failed());
    }
    const std::string line =
        "{\"time\":\"T\",\"event\":\"written\",\"scale\":3,\"text\":\"Щ \\\"x\\\"\\n\",\"ok\":true}"
        "\n";
    EXPECT_EQ(GetFile(folder / "log.json"), line + line);
}

TEST(EventLog, WithoutANameLogsNothingAndWithABadOneThrows) {
    const TScratchFolder folder;
    const auto now = [] { return std::string("T"); };
    TEventLog none;
    none.Write("x", {});
    none.Open({}, now);
    none.Write("x", {});
    EXPECT_FALSE(none.Failed());
    TEventLog bad;
    EXPECT_THROW(bad.Open(folder / "no folder" / "log", now), std::runtime_error);
}

// What the scale itself has refused was logged when it did.
TEST(EventLog, TellsWhatWasRefusedOrLeftOutBeforeAnythingWasSent) {
    const TScratchFolder folder;
    TEventLog log;
    log.Open(folder / "log", [] { return "T"; });
    LogResult(log,
              {.rec = NetworkScale(3, "A"),
               .outcome = TScaleOutcome::Failed,
               .refused = {{.number = 12007, .reason = "planned"}, {.number = 8, .reason = "sent"}},
               .leftOut = {{.number = 9, .reason = "left"}}},
              1);
    std::istringstream lines(GetFile(folder / "log"));
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, R"({"time":"T","event":"refused","scale":3,"number":12007,"text":"planned"})");
    std::getline(lines, line);
    EXPECT_EQ(line, R"({"time":"T","event":"leftOut","scale":3,"number":9,"text":"left"})");
    std::getline(lines, line);
    EXPECT_NE(line.find(R"("event":"scale","scale":3,"name":"A","outcome":"failed")"),
              std::string::npos)
        << line;
    EXPECT_NE(line.find(R"("refused":2,"leftOut":1)"), std::string::npos) << line;
    EXPECT_FALSE(std::getline(lines, line));
}

}  // namespace
}  // namespace tolvane::test
