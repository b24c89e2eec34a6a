#include "command/Progress.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "command/Columns.h"
#include "tests/support/RecordingClock.h"
#include "tests/support/scales/TestScales.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

class TProgressTest : public ::testing::Test {
protected:
    // What was printed since the last time.
    std::string Printed() {
        std::string text = out.str();
        out.str({});
        return text;
    }
    // The bars that are drawn now, each on its line.
    std::string Drawn(TProgress& progress) {
        progress.Draw();
        return Printed();
    }

    std::ostringstream out;
    TRecordingClock clock;
    std::size_t terminalColumns = 80;
    const std::function<std::size_t()> columns = [this] { return terminalColumns; };
    const TScaleRec milk = NetworkScale(3, "Мляко"_cp1251);
};

TEST_F(TProgressTest, DrawsABarForEachScaleInItsPlace) {
    TProgress progress(out, true, true, clock, columns);
    progress.Add(milk);
    const std::size_t meat = progress.Add(NetworkScale(4, "Meat"));
    EXPECT_EQ(Drawn(progress), "\r\x1b[K3 Мляко  waiting\n\r\x1b[K4 Meat  waiting\n");
    progress.Begins(meat, 200);
    progress.Done(meat, 50);
    EXPECT_EQ(Drawn(progress),
              "\x1b[2A\r\x1b[K3 Мляко  waiting\n"
              "\r\x1b[K4 Meat  [######..................]  50/200\n");
}

// 50 of 200 in 30 seconds: 100 a minute, and 90 seconds for the other 150.
TEST_F(TProgressTest, TellsRateAndTimeLeftAfterTwoSeconds) {
    TProgress progress(out, true, true, clock, columns);
    const std::size_t scale = progress.Add(milk);
    progress.Begins(scale, 200);
    progress.Done(scale, 50);
    clock.Sleep(TMilliseconds(1999));
    EXPECT_TRUE(Drawn(progress).ends_with(" 50/200\n"));
    clock.Sleep(TMilliseconds(28001));
    EXPECT_TRUE(Drawn(progress).ends_with(" 50/200  100/min, 1 min 30 s left\n"));
    progress.Done(scale, 190);
    EXPECT_TRUE(Drawn(progress).ends_with(" 190/200  380/min, 1 s left\n"));
}

TEST_F(TProgressTest, TellsHowAScaleHasEnded) {
    TProgress progress(out, true, true, clock, columns);
    const std::size_t scale = progress.Add(milk);
    progress.Ends(scale, {.outcome = TScaleOutcome::Failed,
                          .written = 5,
                          .unchanged = 4,
                          .deleted = 3,
                          .pending = 1,
                          .refused = {{.number = 7}, {.number = 8}}});
    EXPECT_EQ(Drawn(progress),
              "\r\x1b[K3 Мляко  failed, 5 written, 4 unchanged, 3 deleted, 2 refused, 1 pending\n");
}

// It stands where the bars stood, and they are drawn anew below it.
TEST_F(TProgressTest, ALineForEverybodyStandsAboveTheBars) {
    TProgress progress(out, true, true, clock, columns);
    progress.Add(milk);
    progress.Add(NetworkScale(4, "Meat"));
    progress.Tell("Early.");
    EXPECT_EQ(Printed(), "Early.\n");
    const std::string bars = "\r\x1b[K3 Мляко  waiting\n\r\x1b[K4 Meat  waiting\n";
    EXPECT_EQ(Drawn(progress), bars);
    progress.Tell("Interrupted.");
    EXPECT_EQ(Printed(), "\x1b[2A\r\x1b[JInterrupted.\n");
    EXPECT_EQ(Drawn(progress), bars);
    EXPECT_EQ(Drawn(progress), "\x1b[2A" + bars);
}

TEST_F(TProgressTest, IsNeverWiderThanATerminal) {
    TProgress progress(out, true, true, clock, columns);
    const std::string longName(40, 'M');
    const std::size_t scale = progress.Add(NetworkScale(65535, longName));
    const std::size_t ended = progress.Add(NetworkScale(65534, longName));
    progress.Begins(scale, 65535);
    progress.Done(scale, 60000);
    progress.Ends(ended, {.outcome = TScaleOutcome::NotReached,
                          .written = 65535,
                          .unchanged = 65535,
                          .deleted = 65535,
                          .pending = 65535});
    clock.Sleep(TMilliseconds(3000));
    std::istringstream lines(Drawn(progress));
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        ASSERT_TRUE(line.starts_with("\r\x1b[K6553"));
        EXPECT_LE(Columns(line.substr(4)), 79U) << line;
        EXPECT_NE(line.find("MMM...  "), std::string::npos) << line;
    }
    EXPECT_EQ(count, 2);
}

// The rest of the line takes 40 columns: two blanks, 26 for the bar, 12 for the counts. Of the
// name's 34, 24 are shown at most, and 12 at least.
TEST_F(TProgressTest, CutsNamesFirstWhereTheTerminalIsNarrow) {
    TProgress progress(out, true, true, clock, columns);
    const std::size_t scale = progress.Add(NetworkScale(123, std::string(30, 'M')));
    progress.Begins(scale, 20000);
    progress.Done(scale, 5000);
    const std::string bar = "  [######..................]  5000/20000\n";
    terminalColumns = 80;
    EXPECT_EQ(Drawn(progress), "\r\x1b[K123 " + std::string(17, 'M') + "..." + bar);
    const std::string again = "\x1b[1A\r\x1b[K";
    terminalColumns = 60;
    EXPECT_EQ(Drawn(progress), again + "123 " + std::string(12, 'M') + "..." + bar);
    terminalColumns = 53;
    EXPECT_EQ(Drawn(progress), again + "123 MMMMM..." + bar);
    terminalColumns = 41;
    EXPECT_EQ(Drawn(progress), again + "123 MMMMM...  [###.........]  5000/20000\n");
    terminalColumns = 20;
    EXPECT_EQ(Drawn(progress), again + "123 MMMMM...  []...\n");
}

TEST_F(TProgressTest, AnEmptyRunHasAnEmptyBar) {
    TProgress progress(out, true, true, clock, columns);
    progress.Begins(progress.Add(milk), 0);
    EXPECT_EQ(Drawn(progress), "\r\x1b[K3 Мляко  [........................]  0/0\n");
}

TEST_F(TProgressTest, PrintsLinesWhereThereIsNoTerminal) {
    TProgress progress(out, true, false, clock, columns);
    const std::size_t scale = progress.Add(milk);
    progress.Begins(scale, 2);
    EXPECT_EQ(Printed(), "3 Мляко: connected, 2 articles\n");
    progress.Done(scale, 1);
    EXPECT_EQ(Drawn(progress), "");
    progress.Ends(scale, {.outcome = TScaleOutcome::Done, .written = 2});
    EXPECT_EQ(Printed(), "3 Мляко: done, 2 written\n");
}

TEST_F(TProgressTest, PrintsNothingWhenItIsNotShown) {
    for (const bool terminal : {false, true}) {
        TProgress progress(out, false, terminal, clock, columns);
        const std::size_t scale = progress.Add(milk);
        progress.Begins(scale, 2);
        progress.Ends(scale, {});
        EXPECT_EQ(Drawn(progress), "");
        progress.Tell("But for this.");
        EXPECT_EQ(Printed(), "But for this.\n");
    }
}

}  // namespace
}  // namespace tolvane::test
