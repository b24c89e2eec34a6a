#pragma once

#include <windows.h>

#include "host/HostSettings.h"
#include "window/Form.h"

namespace tolvane::host {

// Whether the demo shop is offered: not where there is a database or its scripts are missing, and
// where no engine can open it only how one gets it.
enum class TDemoOffer { None, NeedsEngine, Ready };

// Asks which database the program is to open, by whom and with what password.
class TDatabaseForm final : public TForm {
public:
    // What ShowModal returns when the user wants the demo shop, which has no settings to be chosen.
    static constexpr int kDemoShop = IDYES;

    // Shows these settings first; TDemoOffer::Ready: also a button for the demo shop.
    TDatabaseForm(HWND owner, THostSettings settings, TDemoOffer demo);
    ~TDatabaseForm() override { Destroy(); }

    // What the user has chosen, once ShowModal has returned IDOK; otherwise as before.
    const THostSettings& Settings() const noexcept { return settings_; }

protected:
    // Stays open until there is a database.
    bool CanClose(int result) override;

private:
    void AddButtons(int top, bool withDemo);

    THostSettings settings_;
    HWND database_ = nullptr;
    HWND user_ = nullptr;
    HWND password_ = nullptr;
};

}  // namespace tolvane::host
