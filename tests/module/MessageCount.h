#pragma once

#include <windows.h>

#include <commctrl.h>

namespace tolvane::test {

// Counts the messages of one kind that a window gets while this lives.
class TMessageCount {
public:
    TMessageCount(HWND window, UINT message) : window_(window), message_(message) {
        SetWindowSubclass(window_, &Procedure, message, reinterpret_cast<DWORD_PTR>(this));
    }
    TMessageCount(const TMessageCount&) = delete;
    TMessageCount& operator=(const TMessageCount&) = delete;
    ~TMessageCount() { RemoveWindowSubclass(window_, &Procedure, message_); }

    int Count() const { return count_; }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                      DWORD_PTR count) {
        auto& self = *reinterpret_cast<TMessageCount*>(count);
        if (id == self.message_) ++self.count_;
        return DefSubclassProc(window, id, wParam, lParam);
    }

    HWND window_;
    UINT message_;
    int count_ = 0;
};

// Counts the messages of one kind that are sent to any window of this thread while this lives. One
// at a time.
class TSentCount {
public:
    explicit TSentCount(UINT message) {
        message_ = message;
        count_ = 0;
        hook_ = SetWindowsHookExW(WH_CALLWNDPROC, &Procedure, nullptr, GetCurrentThreadId());
    }
    TSentCount(const TSentCount&) = delete;
    TSentCount& operator=(const TSentCount&) = delete;
    ~TSentCount() { UnhookWindowsHookEx(hook_); }

    static int Count() { return count_; }

private:
    static LRESULT CALLBACK Procedure(int code, WPARAM wParam, LPARAM lParam) {
        if (code == HC_ACTION && reinterpret_cast<const CWPSTRUCT*>(lParam)->message == message_)
            ++count_;
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static inline UINT message_ = 0;
    static inline int count_ = 0;
    HHOOK hook_ = nullptr;
};

}  // namespace tolvane::test
