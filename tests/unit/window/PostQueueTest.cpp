#include "window/PostQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <numeric>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "window/Window.h"
#include "window/WorkerThread.h"

namespace tolvane::test {
namespace {

constexpr UINT kRunMessage = WM_APP + 1;
constexpr int kNever = 0;
constexpr int kAlways = INT_MAX;

// How often each call still fails. It is global, as the calls take no pointer to the test.
struct TFailures {
    std::atomic<int> posts = kNever;
    std::atomic<int> notifications = kNever;
    std::atomic<int> timers = kNever;
};
TFailures& Failures() {
    static TFailures failures;
    return failures;
}

bool Fails(std::atomic<int>& left) {
    if (left == kAlways) return true;
    if (left == kNever) return false;
    --left;
    return true;
}

BOOL WINAPI Post(HWND window, UINT id, WPARAM wParam, LPARAM lParam) {
    return Fails(Failures().posts) ? FALSE : PostMessageW(window, id, wParam, lParam);
}

BOOL WINAPI Notify(HWND window, UINT id, WPARAM wParam, LPARAM lParam) {
    return Fails(Failures().notifications) ? FALSE : SendNotifyMessageW(window, id, wParam, lParam);
}

UINT_PTR WINAPI StartTimer(HWND window, UINT_PTR id, UINT delay, TIMERPROC procedure) {
    return Fails(Failures().timers) ? 0 : SetTimer(window, id, delay, procedure);
}

class TQueueWindow : public TWindow {
public:
    explicit TQueueWindow(TPostQueue queue) : queue_(std::move(queue)) {
        TWindowOptions options;
        options.className = L"TQueueWindow";
        options.name = "QueueWindow";
        MakeWindow(options);
        queue_.Attach(Handle(), kRunMessage);
    }
    ~TQueueWindow() override { queue_.Detach(); }

    std::vector<std::string> errors;

protected:
    LRESULT HandleMessage(const TMessage& message) override {
        if (message.id != kRunMessage) return TWindow::HandleMessage(message);
        queue_.Run();
        return 0;
    }
    void HandleError(std::string_view text) override { errors.emplace_back(text); }

private:
    TPostQueue queue_;
};

void Pump() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0)
        DispatchMessageW(&message);
}

template <class Condition>
bool RunLoopUntil(Condition holds) {
    constexpr DWORD kPatienceMs = 10'000;
    constexpr DWORD kLookMs = 10;
    const DWORD start = GetTickCount();
    while (!holds()) {
        if (GetTickCount() - start > kPatienceMs) return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, kLookMs, QS_ALLINPUT);
        Pump();
    }
    return true;
}

// Works for longer than Run does without a pause.
void WorkLong() {
    constexpr DWORD kLongMs = 15;
    const DWORD start = GetTickCount();
    while (GetTickCount() - start < kLongMs) {
    }
}

class PostQueue : public ::testing::Test {
protected:
    PostQueue() { FailNothing(); }
    ~PostQueue() override { FailNothing(); }

    static void FailNothing() {
        Failures().posts = kNever;
        Failures().notifications = kNever;
        Failures().timers = kNever;
    }
    static void FailBoth() {
        Failures().posts = kAlways;
        Failures().timers = kAlways;
    }
    static TQueueCalls Calls() {
        TQueueCalls calls;
        calls.postMessage = &Post;
        calls.sendNotifyMessage = &Notify;
        calls.setTimer = &StartTimer;
        return calls;
    }
    // A task that notes its number. Every third task takes so long that the queue's turn ends with
    // it.
    TPostQueue::TTask Noting(int number) {
        return [this, number] {
            if (number % 3 == 2) WorkLong();
            ran_.push_back(number);
        };
    }
    static std::vector<int> UpTo(int count) {
        std::vector<int> numbers(static_cast<std::size_t>(count));
        std::iota(numbers.begin(), numbers.end(), 0);
        return numbers;
    }
    bool RunLoopUntilRan(std::size_t count) {
        return RunLoopUntil([&] { return ran_.size() == count; });
    }

    TPostQueue queue_{Calls()};
    TQueueWindow window_{queue_};
    std::vector<int> ran_;
};

// How often PostMessage and SetTimer fail before they work again.
class PostQueueFailures : public PostQueue,
                          public ::testing::WithParamInterface<std::tuple<int, int>> {
protected:
    void Fail() {
        Failures().posts = std::get<0>(GetParam());
        Failures().timers = std::get<1>(GetParam());
    }
};

INSTANTIATE_TEST_SUITE_P(Calls, PostQueueFailures,
                         ::testing::Combine(::testing::Values(kNever, 1, 3, kAlways),
                                            ::testing::Values(kNever, 1, 3, kAlways)));

TEST_P(PostQueueFailures, WorkOfAnotherThreadComesInItsOrder) {
    constexpr int kCount = 30;
    Fail();
    std::thread worker([this] {
        for (int number = 0; number < kCount; ++number)
            queue_.Post(Noting(number));
    });
    EXPECT_TRUE(RunLoopUntilRan(kCount));
    worker.join();
    EXPECT_EQ(ran_, UpTo(kCount));
}

TEST_P(PostQueueFailures, PreparedWorkComesOnceInItsOrder) {
    Fail();
    TPostQueue::TPrepared prepared(Noting(1));
    std::thread worker([&] {
        queue_.Post(Noting(0));
        queue_.Post(prepared);
        queue_.Post(Noting(2));
        queue_.Post(prepared);
        queue_.Post(Noting(3));
    });
    EXPECT_TRUE(RunLoopUntilRan(4));
    worker.join();
    EXPECT_EQ(ran_, UpTo(4));
}

TEST_P(PostQueueFailures, TheLastWorkOfAThreadComesWithoutAnyAfterIt) {
    Fail();
    std::thread worker([this] { queue_.Post(Noting(0)); });
    worker.join();
    EXPECT_TRUE(RunLoopUntilRan(1));
}

TEST_P(PostQueueFailures, WhatATurnLeavesComesWithoutAnotherPost) {
    for (int number = 0; number < 10; ++number)
        queue_.Post(Noting(number));
    Fail();
    EXPECT_TRUE(RunLoopUntilRan(10));
    EXPECT_EQ(ran_, UpTo(10));
}

TEST_P(PostQueueFailures, WorkThatAnyWorkPostsComesAfterIt) {
    queue_.Post([this] {
        Fail();
        queue_.Post(Noting(1));
        ran_.push_back(0);
        WorkLong();
    });
    EXPECT_TRUE(RunLoopUntilRan(2));
    EXPECT_EQ(ran_, UpTo(2));
}

TEST_P(PostQueueFailures, WorkOfTheWindowsOwnThreadComes) {
    Fail();
    for (int number = 0; number < 5; ++number)
        queue_.Post(Noting(number));
    EXPECT_TRUE(RunLoopUntilRan(5));
    EXPECT_EQ(ran_, UpTo(5));
}

TEST_P(PostQueueFailures, AnExceptionIsReportedAndHoldsNoOtherWorkBack) {
    queue_.Post([] { throw std::runtime_error("a"); });
    for (int number = 0; number < 5; ++number)
        queue_.Post(Noting(number));
    Fail();
    EXPECT_TRUE(RunLoopUntilRan(5));
    EXPECT_EQ(ran_, UpTo(5));
    EXPECT_TRUE(RunLoopUntil([&] { return !window_.errors.empty(); }));
    EXPECT_EQ(window_.errors, std::vector<std::string>{"a"});
}

TEST_F(PostQueue, TheUsersInputComesBetweenTheTurns) {
    constexpr UINT kInput = WM_APP + 2;
    bool more = true;
    queue_.Post([this] {
        PostMessageW(window_.Handle(), kInput, 0, 0);
        WorkLong();
    });
    queue_.Post([&more] { more = false; });
    // Handles only the queue's own message, so that the rest of the work waits for the timer.
    MSG message{};
    ASSERT_NE(GetMessageW(&message, nullptr, kRunMessage, kRunMessage), 0);
    DispatchMessageW(&message);
    EXPECT_TRUE(more);
    ASSERT_NE(GetMessageW(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.message, kInput);
    EXPECT_TRUE(RunLoopUntil([&] { return !more; }));
}

TEST_F(PostQueue, AnotherWindowHearsOfItsWorkAlthoughTheFirstNeverHandledItsMessage) {
    queue_.Post(Noting(0));
    queue_.Detach();
    window_.Destroy();
    TQueueWindow second(queue_);
    queue_.Post(Noting(1));
    EXPECT_TRUE(RunLoopUntilRan(1));
    EXPECT_EQ(ran_, std::vector<int>{1});
}

TEST_F(PostQueue, WorkPostedAfterDetachIsDroppedWhateverFails) {
    queue_.Detach();
    FailBoth();
    queue_.Post(Noting(0));
    std::thread([this] { queue_.Post(Noting(1)); }).join();
    Pump();
    EXPECT_TRUE(ran_.empty());
}

// The work arrives while the window's thread waits for the end of the thread that posted it.
TEST_F(PostQueue, WorkMayWaitForTheThreadThatPostedIt) {
    FailBoth();
    std::atomic<bool> waits = false;
    bool ended = false;
    TWorkerThread worker;
    worker.Start(
        [&] {
            queue_.Post([&] {
                waits = true;
                worker.Wait();
            });
            while (!waits)
                std::this_thread::yield();
        },
        queue_, [&] { ended = true; });
    worker.Wait();
    EXPECT_TRUE(waits);
    EXPECT_TRUE(RunLoopUntil([&] { return ended; }));
}

TEST_F(PostQueue, WorkThatNothingCouldBringComesWhenItIsAnnouncedAgain) {
    Failures().posts = kAlways;
    Failures().notifications = kAlways;
    bool isUnderWay = true;
    std::thread([&] { isUnderWay = queue_.Post(Noting(0)); }).join();
    EXPECT_FALSE(isUnderWay);
    std::thread([&] { isUnderWay = queue_.Announce(); }).join();
    EXPECT_FALSE(isUnderWay);
    Pump();
    EXPECT_TRUE(ran_.empty());
    FailNothing();
    std::thread([&] { isUnderWay = queue_.Announce(); }).join();
    EXPECT_TRUE(isUnderWay);
    EXPECT_TRUE(RunLoopUntilRan(1));
}

TEST_F(PostQueue, TheEndOfAThreadComesOnceWhenNothingCouldBeSentForAWhile) {
    Failures().posts = kAlways;
    Failures().notifications = 3;
    int ends = 0;
    TWorkerThread worker;
    worker.Start([] {}, queue_, [&] { ++ends; });
    EXPECT_TRUE(RunLoopUntil([&] { return ends > 0; }));
    worker.Wait();
    Pump();
    EXPECT_EQ(ends, 1);
}

}  // namespace
}  // namespace tolvane::test
