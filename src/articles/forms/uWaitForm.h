#pragma once

#include "articles/ArticleLoader.h"
#include "system/Clock.h"
#include "window/Form.h"

namespace tolvane {

inline constexpr const wchar_t* kWaitFormClass = L"TWaitForm";

// The wait window "Моля, изчакайте..." with its progress bar. Its window is made on first use.
class TWaitForm : public TForm, public TWaitView {
public:
    // The window is centred on the owner's top-level window.
    explicit TWaitForm(HWND owner) : owner_(owner) {}

    // TWaitView. Show lets windows paint; clicks and keys wait.
    void Show(int count) override;
    void Step() override;
    void Hide() override;

protected:
    LRESULT HandleMessage(const TMessage& message) override;
    void OnDpiChange() override;

private:
    void Make();
    void Paint() const;

    HWND owner_;
    HWND bar_ = nullptr;
    int maximum_ = 1;
    int position_ = 0;
    TTimePoint painted_{};
    TOwnedFont labelFont_;
};

}  // namespace tolvane
