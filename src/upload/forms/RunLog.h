#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace tolvane {

// The log of the run window. An append costs more the longer the log is, so lines wait for one
// another and go into the memo together. Interface thread.
class TRunLog {
public:
    // `window` gets the WM_TIMER messages, `memo` the lines; both outlive the log's use.
    void Attach(HWND window, HWND memo);

    // Empties the memo.
    void Clear();
    // One entry at the end, code page 1251. The memo shows it within 50 ms, or when Flush is
    // called.
    void Add(std::string_view entry);
    // Shows the lines that wait.
    void Flush();
    // True for a message of the log's own timer, which is then done with.
    bool HandleTimer(WPARAM timer);

private:
    HWND window_ = nullptr;
    HWND memo_ = nullptr;
    std::string pending_;
    std::size_t pendingLines_ = 0;
};

}  // namespace tolvane
