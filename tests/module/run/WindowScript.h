#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tolvane::test {

// Plays a user while a call shows modal windows on this thread: each step waits for its condition
// and then acts. A step that waits for more than a minute, or a window that stays that long after
// the last one, ends the test program, since the call would never come back. It looks every 10 ms,
// so its looks are turns of the message loop.
class TWindowScript {
public:
    TWindowScript();
    TWindowScript(const TWindowScript&) = delete;
    TWindowScript& operator=(const TWindowScript&) = delete;
    ~TWindowScript();

    void When(std::function<bool()> condition, std::function<void()> action);
    bool IsDone() const { return next_ == steps_.size(); }

    // Forgets the turns so far: both figures are about the time from here on.
    void Measure();
    int Turns() const { return turns_; }
    // The longest time between two turns, without the steps' own actions.
    DWORD LongestGap() const { return longestGap_; }

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
    DWORD longestGap_ = 0;
    int turns_ = 0;
};

// A visible window of this thread by its class; null when there is none.
HWND ThreadWindow(const wchar_t* className);
inline constexpr const wchar_t* kMessageBoxClass = L"#32770";
// The text line of a message box.
inline constexpr int kMessageBoxText = 0xFFFF;
// A window's text, UTF-8.
std::string Utf8Text(HWND window);
// Presses a key in the window that has the focus, as the message loop fetches it.
void PressKey(WPARAM virtualKey);
// Keeps the Ctrl key down while it lives.
class TCtrlKey {
public:
    TCtrlKey() { Set(0x80); }
    TCtrlKey(const TCtrlKey&) = delete;
    TCtrlKey& operator=(const TCtrlKey&) = delete;
    ~TCtrlKey() { Set(0); }

private:
    static void Set(BYTE state);
};
void Click(HWND button);
// Threads of this program, each by its number, which may be given again, and when it was made.
using TThreadKey = std::pair<DWORD, std::uint64_t>;
std::set<TThreadKey> Threads();

}  // namespace tolvane::test
