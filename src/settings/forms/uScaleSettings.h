#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/ScaleSettings.h"
#include "settings/forms/uFindDevices.h"
#include "settings/forms/uScaleSettingsControls.h"
#include "window/Form.h"

namespace tolvane {

inline constexpr const wchar_t* kScaleSettingsFormClass = L"TfrmScaleSettings";
// The caption of a dialog that is given an empty one.
inline constexpr std::string_view kScaleSettingsCaption = "Scale Settings";

// What the dialog needs from the computer.
struct TScaleSettingsServices {
    // Replaces the items by the computer's serial ports, sorted if `sort` is set. Does not change
    // them when the computer has no list of its ports. Called on the interface thread.
    std::function<void(bool sort, std::vector<std::string>& items)> listSerialPorts;
    TDeviceSearch search;
};
// The system's list of serial ports, and the search of the local network. They keep nothing open
// between calls and throw only std::bad_alloc. Any thread.
TScaleSettingsServices SystemSettingsServices();

// The dialog that edits one scale's identity and connection. ShowModal returns IDOK only with
// settings that pass CheckSettings. Interface thread.
class TfrmScaleSettings : public TForm {  // NOLINT(readability-identifier-naming)
public:
    // `listed`: the numbers of all scales in the list, the edited one's included.
    TfrmScaleSettings(HWND owner, std::string_view caption, const TScaleSettings& settings,
                      std::vector<std::int32_t> listed, TScaleSettingsServices services);

    // The confirmed settings after ShowModal has returned IDOK.
    const TScaleSettings& Settings() const { return settings_; }

protected:
    void OnShow() override;
    void OnCommand(int id, int code, HWND control) override;
    LRESULT OnNotify(NMHDR& header) override;

private:
    TScaleSettingsActions Actions();
    void CentreOnScreen() const;

    void Show(const TScaleSettings& settings);
    TScaleSettings Current() const;
    void ShowSerialPorts();
    void EnableControls();
    // Does what a choice of the user does: also sets the port field and, for serial, the port list.
    void SelectTransport(TTransport transport);
    void RadioClick(TTransport transport);
    void RefreshSerialPorts(bool sort);
    void FocusField(TSettingsField field);

    void btnRefreshComListClick();
    void btnFindDevicesClick();
    void btnHintClick();
    void btnOkClick();
    void btnCancelClick();

    TScaleSettings settings_;
    std::vector<std::int32_t> listed_;
    TScaleSettingsServices services_;
    TTransport transport_ = TTransport::Serial;
    std::vector<std::string> serialPorts_;  // as listed

    TScaleSettingsControls controls_;
};

}  // namespace tolvane
