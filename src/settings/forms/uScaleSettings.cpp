#include "settings/forms/uScaleSettings.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "settings/forms/uHint.h"
#include "system/SerialPortList.h"
#include "text/Cp1251.h"
#include "window/MessageBoxes.h"
#include "window/WideText.h"

namespace tolvane {
TScaleSettingsServices SystemSettingsServices() {
    return {[](bool sort, std::vector<std::string>& items) {
                StoreSerialPorts(ScanSerialPorts(), sort, items);
            },
            NetworkSearch()};
}

TfrmScaleSettings::TfrmScaleSettings(HWND owner, std::string_view caption,
                                     const TScaleSettings& settings,
                                     std::vector<std::int32_t> listed,
                                     TScaleSettingsServices services)
    : settings_(settings), listed_(std::move(listed)), services_(std::move(services)) {
    MakePopup({.className = kScaleSettingsFormClass,
               .name = "frmScaleSettings",
               .caption = caption.empty() ? kScaleSettingsCaption : caption,
               .exStyle = WS_EX_TOOLWINDOW | WS_EX_CONTROLPARENT,
               .clientWidth = TScaleSettingsControls::kFormWidth,
               .clientHeight = TScaleSettingsControls::kFormHeight},
              owner);
    CentreOnScreen();
    controls_.Make(*this, Actions());
    Show(settings_);
}

TScaleSettingsActions TfrmScaleSettings::Actions() {
    return {.chooseTransport = [this](TTransport transport) { RadioClick(transport); },
            .refreshComList = [this] { btnRefreshComListClick(); },
            .findDevices = [this] { btnFindDevicesClick(); },
            .hint = [this] { btnHintClick(); },
            .ok = [this] { btnOkClick(); },
            .cancel = [this] { btnCancelClick(); }};
}

void TfrmScaleSettings::CentreOnScreen() const {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    RECT rect{};
    GetWindowRect(Handle(), &rect);
    GetMonitorInfoW(MonitorFromWindow(Handle(), MONITOR_DEFAULTTONEAREST), &monitor);
    const RECT& work = monitor.rcWork;
    const LONG x = (work.left + work.right - (rect.right - rect.left)) / 2;
    const LONG y = (work.top + work.bottom - (rect.bottom - rect.top)) / 2;
    SetWindowPos(Handle(), nullptr, std::max(x, work.left), std::max(y, work.top), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void TfrmScaleSettings::Show(const TScaleSettings& settings) {
    controls_.edtScaleNumb.Fill(settings.number);
    SetWindowText(controls_.edtScaleName, settings.name);
    SetComboIndex(controls_.cbScaleType, settings.type);
    SetComboIndex(controls_.cbbEncoding, settings.encoding);
    controls_.seScaleAddr.Fill(settings.scaleAddress);
    serialPorts_ = settings.serialPorts;
    ShowSerialPorts();
    SetComboIndex(controls_.cbPickComPort, settings.serialPort);
    SetComboIndex(controls_.cbBaudRate, settings.baudRate);
    SetWindowText(controls_.edtIpAddress, settings.ipAddress);
    SetWindowText(controls_.edtPort, settings.port);
    transport_ = settings.transport;
    EnableControls();
}

TScaleSettings TfrmScaleSettings::Current() const {
    TScaleSettings settings;
    settings.number = controls_.edtScaleNumb.Value();
    settings.numberBefore = settings_.numberBefore;
    settings.name = WindowText(controls_.edtScaleName);
    settings.type = ComboIndex(controls_.cbScaleType);
    settings.encoding = ComboIndex(controls_.cbbEncoding);
    settings.transport = transport_;
    settings.scaleAddress = controls_.seScaleAddr.Value();
    settings.serialPorts = serialPorts_;
    settings.serialPort = ComboIndex(controls_.cbPickComPort);
    settings.baudRate = ComboIndex(controls_.cbBaudRate);
    settings.ipAddress = WindowText(controls_.edtIpAddress);
    settings.port = WindowText(controls_.edtPort);
    return settings;
}

void TfrmScaleSettings::ShowSerialPorts() {
    SendMessageW(controls_.cbPickComPort, CB_RESETCONTENT, 0, 0);
    for (const std::string& port : serialPorts_)
        AddComboItem(controls_.cbPickComPort, port);
}

void TfrmScaleSettings::RefreshSerialPorts(bool sort) {
    const int before = ComboIndex(controls_.cbPickComPort);
    const std::string chosen =
        before >= 0 ? serialPorts_[static_cast<std::size_t>(before)] : std::string();
    services_.listSerialPorts(sort, serialPorts_);
    ShowSerialPorts();
    // A port that is still there stays chosen.
    if (before >= 0) SetComboIndex(controls_.cbPickComPort, SerialPortIndex(serialPorts_, chosen));
}

void TfrmScaleSettings::EnableControls() {
    const TTransportRules rules = RulesOf(transport_);
    for (std::size_t i = 0; i < controls_.radios.size(); ++i)
        SetChecked(controls_.radios[i], i == static_cast<std::size_t>(transport_));
    for (const HWND control :
         {controls_.cbPickComPort, controls_.btnRefreshComList, controls_.cbBaudRate,
          controls_.seScaleAddr.edit, controls_.seScaleAddr.arrows})
        EnableWindow(control, rules.serialControls ? TRUE : FALSE);
    for (const HWND control : {controls_.edtIpAddress, controls_.btnFindDevices})
        EnableWindow(control, rules.ipControls ? TRUE : FALSE);
    EnableWindow(controls_.edtPort, rules.portField ? TRUE : FALSE);
}

void TfrmScaleSettings::SelectTransport(TTransport transport) {
    transport_ = transport;
    EnableControls();
    SetWindowText(controls_.edtPort, RulesOf(transport).portText);
    if (transport == TTransport::Serial) RefreshSerialPorts(true);
}

void TfrmScaleSettings::RadioClick(TTransport transport) {
    // A click on the transport that is already chosen changes nothing.
    if (transport != transport_) SelectTransport(transport);
}

void TfrmScaleSettings::btnRefreshComListClick() {
    RefreshSerialPorts(false);
}

void TfrmScaleSettings::btnFindDevicesClick() {
    TFindDevicesForm form(Handle(), services_.search);
    const bool isChosen = form.ShowModal() == IDOK && form.Chosen();
    // This dialog may have been destroyed in the meantime.
    if (!isChosen || Handle() == nullptr) return;
    const TFoundDevice device = *form.Chosen();
    SelectTransport(device.kind == TDeviceKind::TcpModule ? TTransport::Tcp : TTransport::Udp);
    SetWindowText(controls_.edtIpAddress, device.address);
}

void TfrmScaleSettings::btnHintClick() {
    THintForm(Handle()).ShowModal();
}

void TfrmScaleSettings::btnOkClick() {
    TScaleSettings settings = Current();
    const TSettingsFault fault = CheckSettings(settings, listed_);
    if (fault.field != TSettingsField::Number) controls_.edtScaleNumb.Settle();
    if (!fault.text.empty()) {
        (fault.isError ? ShowError : ShowWarning)(Handle(), fault.text);
        FocusField(fault.field);
        return;
    }
    if (settings.transport != TTransport::Serial)
        SetWindowText(controls_.edtIpAddress, settings.ipAddress);
    settings.number = controls_.edtScaleNumb.Value();
    settings_ = std::move(settings);
    EndModal(IDOK);
}

void TfrmScaleSettings::btnCancelClick() {
    EndModal(IDCANCEL);
}

void TfrmScaleSettings::FocusField(TSettingsField field) {
    if (Handle() == nullptr) return;
    const std::pair<TSettingsField, HWND> fields[] = {
        {TSettingsField::Number, controls_.edtScaleNumb.edit},
        {TSettingsField::Port, controls_.edtPort},
        {TSettingsField::IpAddress, controls_.edtIpAddress},
        {TSettingsField::SerialPort, controls_.cbPickComPort},
    };
    for (const auto& [of, control] : fields) {
        if (of != field || IsWindowEnabled(control) == 0) continue;
        SetFocus(control);
        SendMessageW(control, EM_SETSEL, 0, -1);
    }
}

void TfrmScaleSettings::OnShow() {
    SendMessageW(controls_.edtScaleNumb.edit, EM_SETSEL, 0, -1);
}

void TfrmScaleSettings::OnCommand(int, int code, HWND control) {
    // Not while a message box is in front of the dialog: it may be about the typed text.
    const HWND focus = GetFocus();
    if (code != EN_KILLFOCUS || IsChild(Handle(), focus) == 0) return;
    // OK refuses number 0 with a message, so it is not corrected silently here.
    const bool confirms = focus == GetDlgItem(Handle(), IDOK);
    if (confirms && control == controls_.edtScaleNumb.edit && controls_.edtScaleNumb.Value() == 0)
        return;
    for (const TSpinEdit* spin : {&controls_.edtScaleNumb, &controls_.seScaleAddr}) {
        if (control == spin->edit) spin->Settle();
    }
}

LRESULT TfrmScaleSettings::OnNotify(NMHDR& header) {
    if (header.code != static_cast<UINT>(UDN_DELTAPOS)) return 0;
    for (const TSpinEdit* spin : {&controls_.edtScaleNumb, &controls_.seScaleAddr}) {
        if (header.hwndFrom == spin->arrows) return spin->EnterLimits() ? TRUE : FALSE;
    }
    return 0;
}

}  // namespace tolvane
