#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace tolvane {

// The log of the run window. Appending to a long memo is slow, so the log collects lines and
// appends them together. Interface thread.
class TLogMemo {
public:
    // `window` gets the WM_TIMER messages, `memo` the lines. Both must exist while the log is used.
    void Attach(HWND window, HWND memo);

    // Empties the memo.
    void Clear();
    // Adds an entry at the end, code page 1251. The memo shows it within 50 ms, or when Flush is
    // called. Throws std::bad_alloc, and then adds nothing.
    void Add(std::string_view entry);
    // Shows the collected lines now; when memory is too short for it, as soon as it is not.
    void Flush() noexcept;
    // Handles a WM_TIMER of the log's own timer; returns whether it was one.
    bool HandleTimer(WPARAM timer);

private:
    HWND window_ = nullptr;
    HWND memo_ = nullptr;
    std::string pending_;
    std::size_t pendingLines_ = 0;
};

}  // namespace tolvane
