#include "settings/forms/uScaleSettingsControls.h"

#include "settings/IpMask.h"
#include "settings/forms/IpMaskEdit.h"
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
constexpr auto kRadios = std::to_array<TTransportRadio>({
    {.transport = TTransport::Serial,
     .name = "rbRS232",
     .caption = "RS232",
     .labelName = "lblRS232",
     .label = "Директна връзка"_cp1251,
     .left = 20},
    {.transport = TTransport::Tcp,
     .name = "rbTCP",
     .caption = "TCP/IP",
     .labelName = "lblTCP",
     .label = "eCov",
     .left = 162},
    {.transport = TTransport::Udp,
     .name = "rbUDP",
     .caption = "UDP",
     .labelName = "lblUDP",
     .label = "ETS - Ethernet\r\nWizNet",
     .left = 304},
});

}  // namespace

// Makes the controls of one dialog, group by group.
class TScaleSettingsControls::TMaker {
public:
    TMaker(TForm& form, TScaleSettingsControls& controls, const TScaleSettingsActions& actions)
        : form_(form), controls_(controls), actions_(actions) {}

    void MakeIdentity();
    void MakeTransports();
    void MakeSerialControls();
    void MakeNetworkControls();
    void MakeButtons();

private:
    HWND AddCombo(const char* name, const TBounds& bounds, std::span<const std::string_view> items);
    TSpinEdit AddSpinEdit(const char* name, const char* arrowsName, const TBounds& bounds,
                          std::int32_t lowest, std::int32_t highest);

    TForm& form_;
    TScaleSettingsControls& controls_;
    const TScaleSettingsActions& actions_;
};

void TScaleSettingsControls::Make(TForm& form, const TScaleSettingsActions& actions) {
    TMaker maker(form, *this, actions);
    maker.MakeIdentity();
    maker.MakeTransports();
    maker.MakeSerialControls();
    maker.MakeNetworkControls();
    maker.MakeButtons();
}

HWND TScaleSettingsControls::TMaker::AddCombo(const char* name, const TBounds& bounds,
                                              std::span<const std::string_view> items) {
    const HWND combo = form_.Add(TControlKind::ComboList, name, {}, bounds);
    for (const std::string_view item : items)
        AddComboItem(combo, item);
    return combo;
}

TSpinEdit TScaleSettingsControls::TMaker::AddSpinEdit(const char* name, const char* arrowsName,
                                                      const TBounds& bounds, std::int32_t lowest,
                                                      std::int32_t highest) {
    TSpinEdit spin;
    spin.edit = form_.Add(TControlKind::Edit, name, {}, bounds, ES_NUMBER);
    spin.arrows = form_.Add(TControlKind::UpDown, arrowsName, {}, {});
    spin.limits.lowest = lowest;
    spin.limits.highest = highest;
    spin.Prepare();
    return spin;
}

void TScaleSettingsControls::TMaker::MakeIdentity() {
    form_.Add(TControlKind::GroupBox, "gbIdentity", " Идентификация "_cp1251, {kLeft, 4, 424, 130});
    constexpr std::array kLabels = {"Везна №"_cp1251, "Име:"_cp1251, "Тип:"_cp1251,
                                    "Кодова табл:"_cp1251};
    constexpr std::array kNames = {"lblScaleNumb", "lblScaleName", "lblScaleType", "lblEncoding"};
    const auto field = [](int row, int height) {
        return TBounds{kIdentityField, kIdentityTop + row * kRow, 300, height};
    };
    const auto label = [&](int row) {
        form_.AddLabel(kNames[static_cast<std::size_t>(row)],
                       kLabels[static_cast<std::size_t>(row)],
                       {kLabelLeft, kIdentityTop + row * kRow + kLabelDrop, 96, kLabelHeight});
    };
    label(0);
    controls_.edtScaleNumb =
        AddSpinEdit("edtScaleNumb", "udScaleNumb", {kIdentityField, kIdentityTop, 64, kFieldHeight},
                    kLowestScaleNumber, kHighestScaleNumber);
    label(1);
    controls_.edtScaleName =
        form_.Add(TControlKind::Edit, "edtScaleName", {}, field(1, kFieldHeight));
    SendMessageW(controls_.edtScaleName, EM_LIMITTEXT, kNameLength, 0);
    label(2);
    controls_.cbScaleType = AddCombo("cbScaleType", field(2, kOpenedComboHeight), kScaleTypeNames);
    label(3);
    controls_.cbbEncoding = AddCombo("cbbEncoding", field(3, kOpenedComboHeight), kEncodingNames);
}

void TScaleSettingsControls::TMaker::MakeTransports() {
    form_.Add(TControlKind::GroupBox, "gbTransport", " Комуникация "_cp1251,
              {kLeft, kTransportTop, 424, 80});
    for (const TTransportRadio& radio : kRadios) {
        const auto click = [choose = actions_.chooseTransport, transport = radio.transport] {
            choose(transport);
        };
        const DWORD group = radio.transport == TTransport::Serial ? DWORD{WS_GROUP} : DWORD{0};
        controls_.radios[static_cast<std::size_t>(radio.transport)] =
            form_.AddControl({.kind = TControlKind::RadioButton,
                              .name = radio.name,
                              .text = radio.caption,
                              .bounds = {radio.left, kTransportTop + 18, 120, 18},
                              .style = group,
                              .action = click});
    }
    DWORD group = WS_GROUP;
    for (const TTransportRadio& radio : kRadios) {
        form_.AddLabel(radio.labelName, radio.label,
                       {radio.left, kTransportTop + 40, 124, 2 * kLabelHeight}, group);
        group = 0;
    }
}

void TScaleSettingsControls::TMaker::MakeSerialControls() {
    form_.Add(TControlKind::GroupBox, "gbRS232", " Настройки RS232 "_cp1251,
              {kLeft, kSettingsTop, 198, 106});
    const int top = kSettingsTop + 20;
    form_.AddLabel("lblScaleAddr", "Адрес везна:"_cp1251,
                   {kLabelLeft, top + kLabelDrop, 80, kLabelHeight});
    controls_.seScaleAddr =
        AddSpinEdit("seScaleAddr", "udScaleAddr", {kSerialField, top, 60, kFieldHeight}, 0,
                    kHighestScaleAddress);
    SendMessageW(controls_.seScaleAddr.edit, EM_LIMITTEXT, kScaleAddressDigits, 0);
    form_.AddLabel("lblComPort", "COM:", {kLabelLeft, top + kRow + kLabelDrop, 80, kLabelHeight});
    controls_.cbPickComPort =
        AddCombo("cbPickComPort", {kSerialField, top + kRow, 70, kOpenedComboHeight}, {});
    controls_.btnRefreshComList =
        form_.AddControl({.name = "btnRefreshComList",
                          .text = "П"_cp1251,
                          .bounds = {kSerialField + 72, top + kRow, 22, kFieldHeight},
                          .action = actions_.refreshComList,
                          .hint = "Прочитане отново на COM портовете"_cp1251});
    form_.AddLabel("lblBaudRate", "Скорост:"_cp1251,
                   {kLabelLeft, top + 2 * kRow + kLabelDrop, 80, kLabelHeight});
    controls_.cbBaudRate = AddCombo(
        "cbBaudRate", {kSerialField, top + 2 * kRow, 94, kOpenedComboHeight}, kBaudRateNames);
}

void TScaleSettingsControls::TMaker::MakeNetworkControls() {
    form_.Add(TControlKind::GroupBox, "gbEthernet", " Настройки Ethernet "_cp1251,
              {kNetworkLeft, kSettingsTop, 218, 106});
    const int top = kSettingsTop + 20;
    const int labelLeft = kNetworkLeft + kLabelLeft - kLeft;
    form_.AddLabel("lblIpAddress", "IP адрес:"_cp1251,
                   {labelLeft, top + kLabelDrop, 60, kLabelHeight});
    controls_.edtIpAddress =
        form_.Add(TControlKind::Edit, "edtIpAddress", {}, {kNetworkField, top, 90, kFieldHeight});
    SendMessageW(controls_.edtIpAddress, EM_LIMITTEXT, TIpMask::kLength, 0);
    MakeIpMaskEdit(controls_.edtIpAddress);
    controls_.btnFindDevices =
        form_.AddControl({.name = "btnFindDevices",
                          .text = "Т"_cp1251,
                          .bounds = {kNetworkField + 92, top, 20, kFieldHeight},
                          .action = actions_.findDevices,
                          .hint = "Търсене на везни в мрежата"_cp1251});
    form_.AddControl({.name = "btnHint",
                      .text = "?",
                      .bounds = {kNetworkField + 114, top, 20, kFieldHeight},
                      .action = actions_.hint,
                      .hint = "Помощ за настройката на връзката"_cp1251});
    form_.AddLabel("lblPort", "Порт:"_cp1251,
                   {labelLeft, top + kRow + kLabelDrop, 60, kLabelHeight});
    controls_.edtPort =
        form_.Add(TControlKind::Edit, "edtPort", {}, {kNetworkField, top + kRow, 60, kFieldHeight});
}

void TScaleSettingsControls::TMaker::MakeButtons() {
    form_.AddButton("btnOk", "Потвърди"_cp1251, {244, kBottom, 90, 27}, actions_.ok, IDOK);
    form_.AddButton("btnCancel", "Отказ"_cp1251, {342, kBottom, 90, 27}, actions_.cancel, IDCANCEL);
}

}  // namespace tolvane
