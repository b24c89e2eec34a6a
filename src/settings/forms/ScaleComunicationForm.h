#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/TypesUnit.h"
#include "settings/forms/ScaleComunicationUnit.h"
#include "settings/forms/uScaleSettings.h"
#include "window/Form.h"

namespace tolvane {

// What the editor needs from the computer.
struct TScaleListServices {
    TScaleSettingsServices settings;
    // Opens a page that starts with "http://".
    std::function<void(HWND owner, const std::string& page)> openPage;
};
TScaleListServices SystemScaleListServices();

// The window that adds, edits and removes configured scales. It changes only its own list.
// Interface thread.
class TScaleComunicationForm : public TForm {
public:
    TScaleComunicationForm(HWND owner, std::vector<TScaleObj> scales, TScaleListServices services);

    // The edited list, in its order; valid after ShowModal has returned IDOK.
    const std::vector<TScaleObj>& Scales() const { return scales_; }

    // Opens the web page of the shown scale, or warns when there is no address.
    void EditIPBtnClick();

protected:
    void OnShow() override;

private:
    void MakeList();
    void MakeDetails();
    void MakeButtons();

    // The selected scale's index in the list.
    std::optional<std::size_t> Selected() const;
    void Select(std::size_t index);
    void ShowDetails();
    std::vector<std::int32_t> Numbers() const;
    std::vector<std::string> SerialPorts() const;
    // Shows the dialog. Returns its settings if the user confirmed it and this window still exists.
    std::optional<TScaleSettings> Ask(std::string_view caption, const TScaleSettings& settings);

    void ScaleListBoxClick();
    void btnAddScaleClick();
    void btnEditScaleClick();
    void btnDeleteScaleClick();
    void btnOkClick();
    void btnCancelClick();

    std::vector<TScaleObj> scales_;
    TScaleListServices services_;
    HWND scaleListBox_ = nullptr;
    HWND edtScaleNumb_ = nullptr;
    HWND edtScaleName_ = nullptr;
    HWND edtScaleAddress_ = nullptr;
    HWND edtScalePortBoud_ = nullptr;
    HWND lblScalePortBoudRate_ = nullptr;
};

}  // namespace tolvane
