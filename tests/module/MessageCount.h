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

}  // namespace tolvane::test
