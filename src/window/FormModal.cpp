#include <vector>

#include "window/Form.h"

namespace tolvane {
namespace {

// Disables all visible top-level windows of the thread but one, and enables them again.
class TDisabledWindows {
public:
    explicit TDisabledWindows(HWND except) : except_(except) {
        EnumThreadWindows(GetCurrentThreadId(), &Visit, reinterpret_cast<LPARAM>(this));
    }
    TDisabledWindows(const TDisabledWindows&) = delete;
    TDisabledWindows& operator=(const TDisabledWindows&) = delete;
    ~TDisabledWindows() { Enable(); }

    void Enable() noexcept {
        for (const HWND window : windows_) {
            if (IsWindow(window) != 0) EnableWindow(window, TRUE);
        }
        windows_.clear();
    }

private:
    static BOOL CALLBACK Visit(HWND window, LPARAM parameter) {
        auto& self = *reinterpret_cast<TDisabledWindows*>(parameter);
        if (window != self.except_ && IsWindowVisible(window) != 0 &&
            IsWindowEnabled(window) != 0) {
            self.windows_.push_back(window);
            EnableWindow(window, FALSE);
        }
        return TRUE;
    }

    HWND except_;
    std::vector<HWND> windows_;
};

}  // namespace

int TForm::ShowModal() {
    const TKeep keep(*this);
    const HWND owner = GetWindow(Handle(), GW_OWNER);
    const HWND focusBefore = GetFocus();
    modal_ = true;
    modalResult_ = 0;
    TDisabledWindows disabled(Handle());
    OnShow();
    ShowWindow(Handle(), SW_SHOW);
    if (GetFocus() == Handle()) SetFocus(GetNextDlgTabItem(Handle(), nullptr, FALSE));
    RunModalLoop();
    modal_ = false;
    // Enable the owner first: hiding a window whose owner is disabled activates another program.
    disabled.Enable();
    if (Handle() != nullptr) ShowWindow(Handle(), SW_HIDE);
    if (owner != nullptr && IsWindow(owner) != 0) SetActiveWindow(owner);
    // Otherwise the owner would give the focus to the first control of its active child.
    if (IsWindowVisible(focusBefore) != 0 && IsWindowEnabled(focusBefore) != 0)
        SetFocus(focusBefore);
    return modalResult_ != 0 ? modalResult_ : IDCANCEL;
}

void TForm::RunModalLoop() {
    MSG message{};
    while (modalResult_ == 0 && Handle() != nullptr) {
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
        if (got <= 0) return;
        if (HandleKeyMessage(message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void TForm::EndModal(int result) {
    if (modal_ && CanClose(result)) modalResult_ = result;
}

}  // namespace tolvane
