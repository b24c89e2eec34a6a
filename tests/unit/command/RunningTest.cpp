// What runs scales beside each other, and what is left of it: lanes, links, the log, exit codes.

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <mutex>

#include "comm/TDevCommRS232.h"
#include "command/EventLog.h"
#include "command/LinkFactory.h"
#include "command/ScaleLanes.h"
#include "command/ScaleRunner.h"
#include "tests/support/RecordingClock.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/scales/TestScales.h"
#include "tests/unit/command/Shop.h"

namespace tolvane::test {
namespace {

using enum TScaleOutcome;

// How many tasks are at work at the same time.
class TCrowd {
public:
    void Work() {
        const int now = ++inside_;
        int most = most_;
        while (most < now && !most_.compare_exchange_weak(most, now)) {
        }
        // Gives the others a chance to come in, if they may.
        for (int i = 0; i < 1000; ++i)
            std::this_thread::yield();
        --inside_;
    }
    int Most() const { return most_; }

private:
    std::atomic<int> inside_ = 0;
    std::atomic<int> most_ = 0;
};

int MostAtOnce(const std::vector<TScaleRec>& scales, std::size_t jobs) {
    TCrowd crowd;
    std::vector<TScaleLanes::TTask> tasks;
    for (const TScaleRec& rec : scales)
        tasks.push_back({.needs = NeedsOf(rec), .run = [&] { crowd.Work(); }});
    { const TScaleLanes lanes(std::move(tasks), jobs); }
    return crowd.Most();
}

TScaleRec Udp(int number, std::string_view address) {
    TScaleRec rec = NetworkScale(number, "A", address, 1);
    rec.CommType = kCommUdp;
    return rec;
}

// Opens when as many as were told have arrived. std::latch now and then wakes nobody in a program
// for 32-bit Windows.
class TGate {
public:
    explicit TGate(std::size_t awaited) : awaited_(awaited) {}
    void Arrive() {
        const std::lock_guard lock(mutex_);
        if (--awaited_ == 0) opened_.notify_all();
    }
    void Wait() {
        std::unique_lock lock(mutex_);
        opened_.wait(lock, [this] { return awaited_ == 0; });
    }

private:
    std::mutex mutex_;
    std::condition_variable opened_;
    std::size_t awaited_;
};

TEST(ScaleLanes, NeverRunTwoUdpScalesAtOnce) {
    EXPECT_EQ(MostAtOnce({Udp(1, "10.0.0.1"), Udp(2, "10.0.0.2"), Udp(3, "10.0.0.3")}, 0), 1);
}

TEST(ScaleLanes, NeverRunTwoScalesOfOneLineOrOneLedgerAtOnce) {
    EXPECT_EQ(
        MostAtOnce({tolvane::SerialScale(1, "A", "COM1"), tolvane::SerialScale(2, "B", "com1")}, 0),
        1);
    EXPECT_EQ(MostAtOnce({NetworkScale(1, "A"), NetworkScale(1, "B", "10.0.0.9", 100)}, 0), 1);
}

// Scale 2 shares its link with the first and its ledger with the third.
TEST(ScaleLanes, RunScalesThatAreLinkedThroughAnotherInOneLane) {
    EXPECT_EQ(MostAtOnce({Udp(1, "10.0.0.1"), NetworkScale(2, "B"), Udp(2, "10.0.0.2")}, 0), 1);
}

// Each task waits for all the others: it would never end if one had to wait for its turn.
TEST(ScaleLanes, RunTcpScalesAndSerialLinesAllAtOnce) {
    const std::vector<TScaleRec> scales = {
        NetworkScale(1, "A"), NetworkScale(2, "B"), tolvane::SerialScale(3, "C", "COM1"),
        tolvane::SerialScale(4, "D", "COM2"), Udp(5, "10.0.0.5")};
    TGate all(scales.size());
    std::vector<TScaleLanes::TTask> tasks;
    for (const TScaleRec& rec : scales)
        tasks.push_back({.needs = NeedsOf(rec), .run = [&] {
                             all.Arrive();
                             all.Wait();
                         }});
    TScaleLanes lanes(std::move(tasks), 0);
    EXPECT_TRUE(lanes.WaitFor(TMilliseconds(30'000)));
}

TEST(ScaleLanes, RunNoMoreAtOnceThanTheyAreTold) {
    std::vector<TScaleRec> scales;
    for (int number = 1; number <= 8; ++number)
        scales.push_back(NetworkScale(number, "A"));
    EXPECT_EQ(MostAtOnce(scales, 1), 1);
    EXPECT_LE(MostAtOnce(scales, 2), 2);
}

TEST(ScaleLanes, KeepTheOrderInsideALane) {
    std::vector<int> order;
    std::vector<TScaleLanes::TTask> tasks;
    for (int i = 0; i < 5; ++i)
        tasks.push_back({.needs = {"udp"}, .run = [&order, i] { order.push_back(i); }});
    { const TScaleLanes lanes(std::move(tasks), 0); }
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST(ScaleLanes, WaitNoLongerThanTheyAreTold) {
    TGate goOn(1);
    TScaleLanes lanes({{.needs = {"a"}, .run = [&] { goOn.Wait(); }}}, 0);
    EXPECT_FALSE(lanes.WaitFor(TMilliseconds(1)));
    goOn.Arrive();
    EXPECT_TRUE(lanes.WaitFor(TMilliseconds(30'000)));
    EXPECT_TRUE(TScaleLanes({}, 0).WaitFor(TMilliseconds(0)));
}

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

TEST(EventLog, AppendsAnObjectALine) {
    const TScratchFolder folder;
    for (int run = 0; run < 2; ++run) {
        TEventLog log(folder / "log.json", [] { return "T"; });
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
    TEventLog none({}, [] { return "T"; });
    none.Write("x", {});
    EXPECT_FALSE(none.Failed());
    EXPECT_THROW(TEventLog(folder / "no folder" / "log", [] { return "T"; }), std::runtime_error);
}

TEST(LinkFactory, OpensTheDevicesThatPortsAreNamedAfter) {
    TRecordingClock clock;
    TLinkFactory links(clock, {{"COM1", "/dev/ttyUSB7"}}, 0);
    const auto description = [&](std::int32_t port) {
        return links.CreateRS232(port, 9600)->Channel->GetDescription();
    };
    EXPECT_NE(description(1).find("/dev/ttyUSB7"), std::string::npos) << description(1);
    EXPECT_EQ(description(2).find("/dev/ttyUSB7"), std::string::npos) << description(2);
    EXPECT_NE(links.CreateUDP("10.0.0.5")->Channel->GetDescription().find("10.0.0.5"),
              std::string::npos);
}

}  // namespace
}  // namespace tolvane::test
