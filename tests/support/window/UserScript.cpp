#include "tests/support/window/UserScript.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>

namespace tolvane::test {
namespace {

constexpr UINT kEveryMs = 10;
constexpr DWORD kClosesWithinMs = 5000;

// A timer procedure gets no pointer of its own.
std::map<UINT_PTR, std::function<void()>>& Functions() {
    static std::map<UINT_PTR, std::function<void()>> functions;
    return functions;
}

void CALLBACK Tick(HWND, UINT, UINT_PTR timer, DWORD) {
    const auto found = Functions().find(timer);
    if (found != Functions().end()) found->second();
}

}  // namespace

TRegularCall::TRegularCall(std::function<void()> function)
    : timer_(SetTimer(nullptr, 0, kEveryMs, &Tick)) {
    Functions()[timer_] = std::move(function);
}

TRegularCall::~TRegularCall() {
    KillTimer(nullptr, timer_);
    Functions().erase(timer_);
}

TUserScript::TUserScript() = default;

TUserScript::TUserScript(std::wstring className, std::function<void(HWND)> act) {
    When([className] { return ThreadWindow(className) != nullptr; },
         [className, act = std::move(act)] { act(ThreadWindow(className)); });
}

void TUserScript::When(std::function<bool()> condition, std::function<void()> action) {
    steps_.push_back({std::move(condition), std::move(action)});
}

void TUserScript::Look() {
    if (IsDone() || !steps_[next_].condition()) return;
    const std::function<void()> action = steps_[next_].action;
    ++next_;
    ++depth_;
    action();
    --depth_;
    lastStep_ = GetTickCount();
}

TDialogScript::TDialogScript(std::wstring className, std::vector<TStep> steps)
    : className_(std::move(className)), count_(steps.size()) {
    for (TStep& step : steps)
        When([this] { return !IsInStep() && UsableWindow() != nullptr; },
             [this, step = std::move(step)] { step(UsableWindow()); });
}

TDialogScript::~TDialogScript() {
    EXPECT_TRUE(IsDone()) << "after " << StepsTaken() << " of " << count_ << " steps of "
                          << Utf8(className_);
    EXPECT_FALSE(WasLeftOpen()) << Utf8(className_);
}

void TDialogScript::Look() {
    TUserScript::Look();
    if (!IsDone() || IsInStep() || leftOpen_ || MillisecondsIdle() < kClosesWithinMs) return;
    const HWND window = UsableWindow();
    if (window == nullptr) return;
    leftOpen_ = true;
    PostMessageW(window, WM_CLOSE, 0, 0);
}

HWND TDialogScript::UsableWindow() const {
    const HWND window = ThreadWindow(className_);
    return window != nullptr && IsWindowEnabled(window) != 0 ? window : nullptr;
}

TDialogScript::TStep Pressing(std::string name) {
    return [name = std::move(name)](HWND window) { Press(window, name); };
}

}  // namespace tolvane::test
