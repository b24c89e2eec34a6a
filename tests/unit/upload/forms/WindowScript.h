#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace tolvane::test {

// Plays a user while a call shows modal windows on this thread: each step waits for its condition
// and then acts. A step that waits for more than 20 seconds ends the test program, since its call
// would never come back.
class TWindowScript {
public:
    TWindowScript();
    TWindowScript(const TWindowScript&) = delete;
    TWindowScript& operator=(const TWindowScript&) = delete;
    ~TWindowScript();

    void When(std::function<bool()> condition, std::function<void()> action);
    bool IsDone() const { return next_ == steps_.size(); }
    // The longest time between two turns of the message loop.
    DWORD LongestBusy() const { return longestBusy_; }

private:
    struct TStep {
        std::function<bool()> condition;
        std::function<void()> action;
    };

    static void CALLBACK Tick(HWND window, UINT message, UINT_PTR timer, DWORD time);
    void Play();

    std::vector<TStep> steps_;
    std::size_t next_ = 0;
    UINT_PTR timer_;
    DWORD stepStart_ = 0;
    DWORD lastTick_ = 0;
    DWORD longestBusy_ = 0;
};

// A visible window of this thread by its class; null when there is none.
HWND ThreadWindow(const wchar_t* className);
// A window's text, UTF-8.
std::string Utf8Text(HWND window);
// Presses a key in the window that has the focus, as the message loop fetches it.
void PressKey(WPARAM virtualKey);
void Click(HWND button);

}  // namespace tolvane::test
