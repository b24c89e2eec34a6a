#pragma once

#include <windows.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/window/MessageWindow.h"

namespace tolvane::test {

// Measures, from a thread of its own, for how long the thread that made it reads no message: it
// sends a message every ten milliseconds, which any message loop handles. While a gap lasts longer
// than 100 ms it looks where the thread stands. A gap of two minutes ends the program. In a gap it
// sends another message each second: when that one is answered and the first is not, the system has
// lost a message (as Wine does without room for a call, see TCallRoom), which is no gap.
class TLoopWatch {
public:
    struct TSample {
        DWORD afterMs = 0;                     // since the gap began
        std::vector<std::string> addresses{};  // where it is, and what of its stack lies in code
    };
    struct TGap {
        DWORD ms = 0;
        DWORD processorMs = 0;   // that the thread had
        bool isLoading = false;  // the wait window was open
        std::vector<TSample> samples{};
        std::string Text(std::size_t mostSamples) const;
    };

    TLoopWatch();
    TLoopWatch(const TLoopWatch&) = delete;
    TLoopWatch& operator=(const TLoopWatch&) = delete;
    ~TLoopWatch();

    // Ends the watch. What follows is for afterwards.
    void Stop();
    int Beats() const { return beats_; }
    int Lost() const { return lost_; }
    // Gaps above 50 ms, the longest first.
    std::vector<TGap> Gaps(bool loading) const;

private:
    struct TCodeRange {
        std::string name;
        std::uintptr_t begin;
        std::uintptr_t end;
    };
    static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam);
    static std::vector<TCodeRange> LoadedCode();
    void Watch();
    void Beat();
    bool Send();
    TGap WaitForAnswer(std::int64_t start, DWORD processorBefore);
    void TakeSample(TGap& gap, DWORD afterMs, const std::vector<TCodeRange>& code);
    DWORD ProcessorMs() const;

    TMessageWindow window_;
    HANDLE watched_ = nullptr;
    HANDLE answer_ = nullptr;
    std::uintptr_t stackEnd_ = 0;
    WPARAM sent_ = 0;  // the number of the last message
    std::atomic<WPARAM> waitedFor_ = 0;
    std::atomic<WPARAM> answered_ = 0;
    std::atomic<std::int64_t> answeredAt_ = 0;
    std::atomic<bool> stop_ = false;
    std::array<std::uintptr_t, 8192> stack_{};
    int beats_ = 0;
    int lost_ = 0;
    std::vector<TGap> gaps_;
    std::thread thread_;
};

}  // namespace tolvane::test
