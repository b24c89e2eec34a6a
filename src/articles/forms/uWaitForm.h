#pragma once

#include "window/Form.h"

namespace tolvane {

inline constexpr const wchar_t* kWaitFormClass = L"TWaitForm";

// The wait window "Моля, изчакайте..." with its progress bar. Its window is made on first use.
class TWaitForm : public TForm {
public:
    // The window stands in the middle of the owner's top-level window.
    explicit TWaitForm(HWND owner) : owner_(owner) {}

    // Shows the window and lets it paint; the bar is there when `count` is 1 or
    // more.
    void ShowCount(int count);
    void Step();
    void Hide();

protected:
    LRESULT HandleMessage(const TMessage& message) override;

private:
    void Make();
    void Paint() const;

    HWND owner_;
    HWND bar_ = nullptr;
    TOwnedFont labelFont_;
};

}  // namespace tolvane
