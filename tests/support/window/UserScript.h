#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/window/Controls.h"
#include "tests/support/window/Input.h"

namespace tolvane::test {

// Calls a function every ten milliseconds while it lives, from whichever message loop of this
// thread runs, also a modal window's.
class TRegularCall {
public:
    explicit TRegularCall(std::function<void()> function);
    TRegularCall(const TRegularCall&) = delete;
    TRegularCall& operator=(const TRegularCall&) = delete;
    ~TRegularCall();

private:
    UINT_PTR timer_;
};

// Plays a user while a call shows modal windows on this thread and returns only after they have
// closed: takes one step after another, each once its condition holds.
class TUserScript {
public:
    TUserScript();
    // One step: acts once, in the first visible window of the class.
    TUserScript(std::wstring className, std::function<void(HWND)> act);
    TUserScript(const TUserScript&) = delete;
    TUserScript& operator=(const TUserScript&) = delete;
    virtual ~TUserScript() = default;

    // Adds a step. Its action may open a modal window; later steps are taken in that.
    void When(std::function<bool()> condition, std::function<void()> action);
    // Every step was taken.
    bool IsDone() const { return next_ == steps_.size(); }

protected:
    // Takes the next step when its condition holds.
    virtual void Look();
    std::size_t StepsTaken() const { return next_; }
    bool IsInStep() const { return depth_ > 0; }
    // Since the last step, or since the start.
    DWORD MillisecondsIdle() const { return GetTickCount() - lastStep_; }

private:
    struct TStep {
        std::function<bool()> condition;
        std::function<void()> action;
    };

    std::vector<TStep> steps_;
    std::size_t next_ = 0;
    int depth_ = 0;
    DWORD lastStep_ = GetTickCount();
    TRegularCall look_{[this] { Look(); }};
};

// Uses the first visible window of a class on this thread: takes each step after everything that
// the step before caused has been handled, and while no other window is open in front. Its end
// fails the test when steps are left, or when the window was still open five seconds after the last
// step; the script has closed it then.
class TDialogScript : public TUserScript {
public:
    using TStep = std::function<void(HWND window)>;

    TDialogScript(std::wstring className, std::vector<TStep> steps);
    TDialogScript(const TDialogScript&) = delete;
    TDialogScript& operator=(const TDialogScript&) = delete;
    ~TDialogScript() override;

    bool WasLeftOpen() const { return leftOpen_; }

protected:
    void Look() override;

private:
    // Null while another window is in front.
    HWND UsableWindow() const;

    std::wstring className_;
    std::size_t count_;
    bool leftOpen_ = false;
};

// The step that presses a button.
TDialogScript::TStep Pressing(std::string name);

}  // namespace tolvane::test
