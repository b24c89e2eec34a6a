#include "settings/IpMask.h"
#include "settings/forms/IpMaskEdit.h"
#include "settings/forms/uScaleSettings.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

// Sizes at 96 dots per inch.
constexpr int kRow = 26;
constexpr int kLabelDrop = 4;  // a label is lower than the field beside it
constexpr int kFieldHeight = 22;
constexpr int kLabelHeight = 16;
constexpr int kOpenedComboHeight = 150;
constexpr int kLeft = 8;
constexpr int kLabelLeft = 20;
constexpr int kIdentityField = 118;
constexpr int kIdentityTop = 22;
constexpr int kTransportTop = 140;
constexpr int kSettingsTop = 226;
constexpr int kSerialField = 102;
constexpr int kNetworkLeft = 214;
constexpr int kNetworkField = 290;
constexpr int kBottom = 340;

constexpr WPARAM kNameLength = 50;
constexpr WPARAM kScaleAddressDigits = 3;

struct TTransportRadio {
    TTransport transport;
    const char* name;
    std::string_view caption;
    const char* labelName;
    std::string_view label;
    int left;
};
constexpr std::array kRadios = {
    TTransportRadio{TTransport::Serial, "rbRS232", "RS232", "lblRS232", "Директна връзка"_cp1251,
                    20},
    TTransportRadio{TTransport::Tcp, "rbTCP", "TCP/IP", "lblTCP", "eCov", 162},
    TTransportRadio{TTransport::Udp, "rbUDP", "UDP", "lblUDP", "ETS - Ethernet\r\nWizNet", 304},
};

}  // namespace

HWND TfrmScaleSettings::AddCombo(const char* name, const TPlace& place,
                                 std::span<const std::string_view> items) {
    const HWND combo = Add(TControlKind::ComboList, name, {}, place);
    for (const std::string_view item : items)
        AddComboItem(combo, item);
    return combo;
}

TSpinEdit TfrmScaleSettings::AddSpinEdit(const char* name, const char* arrowsName,
                                         const TPlace& place, std::int32_t lowest,
                                         std::int32_t highest) {
    TSpinEdit spin;
    spin.edit = Add(TControlKind::Edit, name, {}, place, ES_NUMBER);
    spin.arrows = Add(TControlKind::UpDown, arrowsName, {}, {});
    spin.limits.lowest = lowest;
    spin.limits.highest = highest;
    spin.Prepare();
    return spin;
}

void TfrmScaleSettings::MakeIdentity() {
    Add(TControlKind::GroupBox, "gbIdentity", " Идентификация "_cp1251, {kLeft, 4, 424, 130});
    constexpr std::array kLabels = {"Везна №"_cp1251, "Име:"_cp1251, "Тип:"_cp1251,
                                    "Кодова табл:"_cp1251};
    constexpr std::array kNames = {"lblScaleNumb", "lblScaleName", "lblScaleType", "lblEncoding"};
    const auto field = [](int row, int height) {
        return TPlace{kIdentityField, kIdentityTop + row * kRow, 300, height};
    };
    const auto label = [&](int row) {
        AddLabel(kNames[static_cast<std::size_t>(row)], kLabels[static_cast<std::size_t>(row)],
                 {kLabelLeft, kIdentityTop + row * kRow + kLabelDrop, 96, kLabelHeight});
    };
    label(0);
    edtScaleNumb_ =
        AddSpinEdit("edtScaleNumb", "udScaleNumb", {kIdentityField, kIdentityTop, 64, kFieldHeight},
                    kLowestScaleNumber, kHighestScaleNumber);
    label(1);
    edtScaleName_ = Add(TControlKind::Edit, "edtScaleName", {}, field(1, kFieldHeight));
    SendMessageW(edtScaleName_, EM_LIMITTEXT, kNameLength, 0);
    label(2);
    cbScaleType_ = AddCombo("cbScaleType", field(2, kOpenedComboHeight), kScaleTypeNames);
    label(3);
    cbbEncoding_ = AddCombo("cbbEncoding", field(3, kOpenedComboHeight), kEncodingNames);
}

void TfrmScaleSettings::MakeTransports() {
    Add(TControlKind::GroupBox, "gbTransport", " Комуникация "_cp1251,
        {kLeft, kTransportTop, 424, 80});
    for (const TTransportRadio& radio : kRadios) {
        const auto click = [this, transport = radio.transport] { RadioClick(transport); };
        const DWORD group = radio.transport == TTransport::Serial ? DWORD{WS_GROUP} : DWORD{0};
        radios_[static_cast<std::size_t>(radio.transport)] =
            AddControl({.kind = TControlKind::RadioButton,
                        .name = radio.name,
                        .text = radio.caption,
                        .place = {radio.left, kTransportTop + 18, 120, 18},
                        .style = group,
                        .action = click});
    }
    DWORD group = WS_GROUP;
    for (const TTransportRadio& radio : kRadios) {
        AddLabel(radio.labelName, radio.label,
                 {radio.left, kTransportTop + 40, 124, 2 * kLabelHeight}, group);
        group = 0;
    }
}

void TfrmScaleSettings::MakeSerialControls() {
    Add(TControlKind::GroupBox, "gbRS232", " Настройки RS232 "_cp1251,
        {kLeft, kSettingsTop, 198, 106});
    const int top = kSettingsTop + 20;
    AddLabel("lblScaleAddr", "Адрес везна:"_cp1251,
             {kLabelLeft, top + kLabelDrop, 80, kLabelHeight});
    seScaleAddr_ = AddSpinEdit("seScaleAddr", "udScaleAddr", {kSerialField, top, 60, kFieldHeight},
                               0, kHighestScaleAddress);
    SendMessageW(seScaleAddr_.edit, EM_LIMITTEXT, kScaleAddressDigits, 0);
    AddLabel("lblComPort", "COM:", {kLabelLeft, top + kRow + kLabelDrop, 80, kLabelHeight});
    cbPickComPort_ =
        AddCombo("cbPickComPort", {kSerialField, top + kRow, 70, kOpenedComboHeight}, {});
    btnRefreshComList_ = AddButton("btnRefreshComList", "П"_cp1251,
                                   {kSerialField + 72, top + kRow, 22, kFieldHeight},
                                   &TfrmScaleSettings::btnRefreshComListClick);
    AddLabel("lblBaudRate", "Скорост:"_cp1251,
             {kLabelLeft, top + 2 * kRow + kLabelDrop, 80, kLabelHeight});
    cbBaudRate_ = AddCombo("cbBaudRate", {kSerialField, top + 2 * kRow, 94, kOpenedComboHeight},
                           kBaudRateNames);
}

void TfrmScaleSettings::MakeNetworkControls() {
    Add(TControlKind::GroupBox, "gbEthernet", " Настройки Ethernet "_cp1251,
        {kNetworkLeft, kSettingsTop, 218, 106});
    const int top = kSettingsTop + 20;
    const int labelLeft = kNetworkLeft + kLabelLeft - kLeft;
    AddLabel("lblIpAddress", "IP адрес:"_cp1251, {labelLeft, top + kLabelDrop, 60, kLabelHeight});
    edtIpAddress_ =
        Add(TControlKind::Edit, "edtIpAddress", {}, {kNetworkField, top, 90, kFieldHeight});
    SendMessageW(edtIpAddress_, EM_LIMITTEXT, TIpMask::kLength, 0);
    MakeIpMaskEdit(edtIpAddress_);
    btnFindDevices_ =
        AddButton("btnFindDevices", "Т"_cp1251, {kNetworkField + 92, top, 20, kFieldHeight},
                  &TfrmScaleSettings::btnFindDevicesClick);
    AddButton("btnHint", "?", {kNetworkField + 114, top, 20, kFieldHeight},
              &TfrmScaleSettings::btnHintClick);
    AddLabel("lblPort", "Порт:"_cp1251, {labelLeft, top + kRow + kLabelDrop, 60, kLabelHeight});
    edtPort_ =
        Add(TControlKind::Edit, "edtPort", {}, {kNetworkField, top + kRow, 60, kFieldHeight});
}

void TfrmScaleSettings::MakeButtons() {
    AddButton("btnOk", "Потвърди"_cp1251, {244, kBottom, 90, 27}, &TfrmScaleSettings::btnOkClick,
              IDOK);
    AddButton("btnCancel", "Отказ"_cp1251, {342, kBottom, 90, 27},
              &TfrmScaleSettings::btnCancelClick, IDCANCEL);
}

}  // namespace tolvane
