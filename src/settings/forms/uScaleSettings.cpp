#include "settings/forms/uScaleSettings.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "settings/forms/uHint.h"
#include "system/SerialPorts.h"
#include "text/Cp1251.h"
#include "window/MessageBoxes.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

constexpr int kWidth = 440;
constexpr int kHeight = 376;

}  // namespace

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
    TFormOptions options;
    options.className = kScaleSettingsFormClass;
    options.name = "frmScaleSettings";
    options.caption = caption.empty() ? kScaleSettingsCaption : caption;
    options.exStyle = WS_EX_TOOLWINDOW | WS_EX_CONTROLPARENT;
    options.clientWidth = kWidth;
    options.clientHeight = kHeight;
    MakePopup(options, owner);
    CentreOnScreen();
    // In the order of the Tab key.
    MakeIdentity();
    MakeTransports();
    MakeSerialControls();
    MakeNetworkControls();
    MakeButtons();
    Show(settings_);
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
    edtScaleNumb_.Fill(settings.number);
    SetWindowText(edtScaleName_, settings.name);
    SetComboIndex(cbScaleType_, settings.type);
    SetComboIndex(cbbEncoding_, settings.encoding);
    seScaleAddr_.Fill(settings.scaleAddress);
    serialPorts_ = settings.serialPorts;
    ShowSerialPorts();
    SetComboIndex(cbPickComPort_, settings.serialPort);
    SetComboIndex(cbBaudRate_, settings.baudRate);
    SetWindowText(edtIpAddress_, settings.ipAddress);
    SetWindowText(edtPort_, settings.port);
    transport_ = settings.transport;
    EnableControls();
}

TScaleSettings TfrmScaleSettings::Current() const {
    TScaleSettings settings;
    settings.number = edtScaleNumb_.Value();
    settings.numberBefore = settings_.numberBefore;
    settings.name = WindowText(edtScaleName_);
    settings.type = ComboIndex(cbScaleType_);
    settings.encoding = ComboIndex(cbbEncoding_);
    settings.transport = transport_;
    settings.scaleAddress = seScaleAddr_.Value();
    settings.serialPorts = serialPorts_;
    settings.serialPort = ComboIndex(cbPickComPort_);
    settings.baudRate = ComboIndex(cbBaudRate_);
    settings.ipAddress = WindowText(edtIpAddress_);
    settings.port = WindowText(edtPort_);
    return settings;
}

void TfrmScaleSettings::ShowSerialPorts() {
    SendMessageW(cbPickComPort_, CB_RESETCONTENT, 0, 0);
    for (const std::string& port : serialPorts_)
        AddComboItem(cbPickComPort_, port);
}

void TfrmScaleSettings::RefreshSerialPorts(bool sort) {
    const int before = ComboIndex(cbPickComPort_);
    const std::string chosen =
        before >= 0 ? serialPorts_[static_cast<std::size_t>(before)] : std::string();
    services_.listSerialPorts(sort, serialPorts_);
    ShowSerialPorts();
    // A port that is still there stays chosen.
    if (before >= 0) SetComboIndex(cbPickComPort_, SerialPortIndex(serialPorts_, chosen));
}

void TfrmScaleSettings::EnableControls() {
    const TTransportRules rules = RulesOf(transport_);
    for (std::size_t i = 0; i < radios_.size(); ++i)
        SetChecked(radios_[i], i == static_cast<std::size_t>(transport_));
    for (const HWND control :
         {cbPickComPort_, btnRefreshComList_, cbBaudRate_, seScaleAddr_.edit, seScaleAddr_.arrows})
        EnableWindow(control, rules.serialControls ? TRUE : FALSE);
    for (const HWND control : {edtIpAddress_, btnFindDevices_})
        EnableWindow(control, rules.ipControls ? TRUE : FALSE);
    EnableWindow(edtPort_, rules.portField ? TRUE : FALSE);
}

void TfrmScaleSettings::SelectTransport(TTransport transport) {
    transport_ = transport;
    EnableControls();
    SetWindowText(edtPort_, RulesOf(transport).portText);
    if (transport == TTransport::Serial) RefreshSerialPorts(true);
}

void TfrmScaleSettings::RadioClick(TTransport transport) {
    // A click on the chosen one changes nothing.
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
    SetWindowText(edtIpAddress_, device.address);
}

void TfrmScaleSettings::btnHintClick() {
    THintForm(Handle()).ShowModal();
}

void TfrmScaleSettings::btnOkClick() {
    TScaleSettings settings = Current();
    const TSettingsFault fault = CheckSettings(settings, listed_);
    if (fault.field != TSettingsField::Number) edtScaleNumb_.Settle();
    if (!fault.text.empty()) {
        (fault.isError ? ShowError : ShowWarning)(Handle(), fault.text);
        FocusField(fault.field);
        return;
    }
    if (settings.transport != TTransport::Serial) SetWindowText(edtIpAddress_, settings.ipAddress);
    settings.number = edtScaleNumb_.Value();
    settings_ = std::move(settings);
    EndModal(IDOK);
}

void TfrmScaleSettings::btnCancelClick() {
    EndModal(IDCANCEL);
}

void TfrmScaleSettings::FocusField(TSettingsField field) {
    if (Handle() == nullptr) return;
    const std::pair<TSettingsField, HWND> fields[] = {
        {TSettingsField::Number, edtScaleNumb_.edit},
        {TSettingsField::Port, edtPort_},
        {TSettingsField::IpAddress, edtIpAddress_},
        {TSettingsField::SerialPort, cbPickComPort_},
    };
    for (const auto& [of, control] : fields) {
        if (of != field || IsWindowEnabled(control) == 0) continue;
        SetFocus(control);
        SendMessageW(control, EM_SETSEL, 0, -1);
    }
}

void TfrmScaleSettings::OnShow() {
    SendMessageW(edtScaleNumb_.edit, EM_SETSEL, 0, -1);
}

void TfrmScaleSettings::OnCommand(int, int code, HWND control) {
    // Not for a box in front of the dialog, which may be about what was typed.
    const HWND focus = GetFocus();
    if (code != EN_KILLFOCUS || IsChild(Handle(), focus) == 0) return;
    // Number zero is refused when the dialog is confirmed, not corrected unseen.
    const bool confirms = focus == GetDlgItem(Handle(), IDOK);
    if (confirms && control == edtScaleNumb_.edit && edtScaleNumb_.Value() == 0) return;
    for (const TSpinEdit* spin : {&edtScaleNumb_, &seScaleAddr_}) {
        if (control == spin->edit) spin->Settle();
    }
}

LRESULT TfrmScaleSettings::OnNotify(NMHDR& header) {
    if (header.code != static_cast<UINT>(UDN_DELTAPOS)) return 0;
    for (const TSpinEdit* spin : {&edtScaleNumb_, &seScaleAddr_}) {
        if (header.hwndFrom == spin->arrows) return spin->EnterLimits() ? TRUE : FALSE;
    }
    return 0;
}

}  // namespace tolvane
