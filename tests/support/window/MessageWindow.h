#pragma once

#include <windows.h>

namespace tolvane::test {

// A window that nobody sees, for messages to an object of a test.
class TMessageWindow {
public:
    TMessageWindow(const wchar_t* className, WNDPROC procedure, void* object);
    TMessageWindow(const TMessageWindow&) = delete;
    TMessageWindow& operator=(const TMessageWindow&) = delete;
    ~TMessageWindow();

    HWND Handle() const { return window_; }
    // For the procedure; null for the messages that come while the window is made.
    template <class TObject>
    static TObject* ObjectOf(HWND window) {
        return reinterpret_cast<TObject*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    }

private:
    HWND window_;
};

}  // namespace tolvane::test
