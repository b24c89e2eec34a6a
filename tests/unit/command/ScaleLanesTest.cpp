#include "command/ScaleLanes.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <system_error>

#include "tests/support/scales/TestScales.h"

namespace tolvane::test {
namespace {

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

// Threads that the system gives: so many and no more.
TScaleLanes::TStartThread AtMost(int threads) {
    return [left = threads](std::function<void()> work) mutable {
        if (left-- <= 0)
            throw std::system_error(
                std::make_error_code(std::errc::resource_unavailable_try_again));
        return std::jthread(std::move(work));
    };
}

TEST(ScaleLanes, GoOnWithTheThreadsThatTheSystemGives) {
    for (int threads = 0; threads < 4; ++threads) {
        std::array<std::atomic<int>, 6> done{};
        std::vector<TScaleLanes::TTask> tasks;
        for (std::size_t i = 0; i < done.size(); ++i)
            tasks.push_back({.needs = {std::to_string(i % 3)}, .run = [&done, i] { ++done[i]; }});
        TScaleLanes lanes(std::move(tasks), 0, AtMost(threads));
        for (int looks = 0; !lanes.WaitFor(TMilliseconds(30'000)); ++looks)
            ASSERT_LT(looks, 6) << threads;
        for (const auto& count : done)
            EXPECT_EQ(count, 1) << threads;
    }
}

// The caller looks at interrupts between two tasks.
TEST(ScaleLanes, WithoutThreadsDoATaskAtALook) {
    int done = 0;
    TScaleLanes lanes(
        {{.needs = {"a"}, .run = [&] { ++done; }}, {.needs = {"a"}, .run = [&] { ++done; }}}, 0,
        AtMost(0));
    EXPECT_EQ(done, 0);
    EXPECT_FALSE(lanes.WaitFor(TMilliseconds(0)));
    EXPECT_EQ(done, 1);
    EXPECT_TRUE(lanes.WaitFor(TMilliseconds(0)));
    EXPECT_EQ(done, 2);
}

TEST(ScaleLanes, WithoutThreadsLeaveNothingUndone) {
    int done = 0;
    {
        const TScaleLanes lanes({{.needs = {"a"}, .run = [&] { ++done; }}}, 0, AtMost(0));
    }
    EXPECT_EQ(done, 1);
}

}  // namespace
}  // namespace tolvane::test
