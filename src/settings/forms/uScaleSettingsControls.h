#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

#include "settings/ScaleSettings.h"
#include "settings/forms/SpinEdit.h"
#include "window/Form.h"

namespace tolvane {

// What the dialog's buttons do.
struct TScaleSettingsActions {
    std::function<void(TTransport)> chooseTransport;
    std::function<void()> refreshComList;
    std::function<void()> findDevices;
    std::function<void()> hint;
    std::function<void()> ok;
    std::function<void()> cancel;
};

// The controls of the dialog of one scale. Plain handles; the form owns the controls. Interface
// thread.
class TScaleSettingsControls {
public:
    static constexpr int kFormWidth = 440;  // the client area, at 96 dots per inch
    static constexpr int kFormHeight = 376;

    // Makes the controls on the form, in the order of the Tab key.
    void Make(TForm& form, const TScaleSettingsActions& actions);

    TSpinEdit edtScaleNumb;
    HWND edtScaleName = nullptr;
    HWND cbScaleType = nullptr;
    HWND cbbEncoding = nullptr;
    std::array<HWND, 3> radios{};  // by TTransport
    TSpinEdit seScaleAddr;
    HWND cbPickComPort = nullptr;
    HWND btnRefreshComList = nullptr;
    HWND cbBaudRate = nullptr;
    HWND edtIpAddress = nullptr;
    HWND btnFindDevices = nullptr;
    HWND edtPort = nullptr;

private:
    class TMaker;
};

}  // namespace tolvane
