#include "settings/forms/ScaleComunicationForm.h"

#include <shellapi.h>

#include <algorithm>
#include <tuple>
#include <utility>

#include "settings/ScaleListEdit.h"
#include "settings/ScaleSettings.h"
#include "text/Cp1251.h"
#include "window/MessageBoxes.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

// Sizes at 96 dots per inch.
constexpr int kWidth = 560;
constexpr int kHeight = 330;
constexpr int kDetailsLeft = 290;
constexpr int kDetailsWidth = 262;
constexpr int kDetailsRow = 46;

constexpr std::string_view kNoAddress =
    "Няма зададен IP адрес на устройството за комуникация."_cp1251;
constexpr std::string_view kListIsFull = "Списъкът може да съдържа най-много 20 везни."_cp1251;

}  // namespace

TScaleListServices SystemScaleListServices() {
    return {SystemSettingsServices(), [](HWND owner, const std::string& page) {
                ShellExecuteW(owner, L"open", Wide(page).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
            }};
}

TScaleComunicationForm::TScaleComunicationForm(HWND owner, std::vector<TScaleObj> scales,
                                               TScaleListServices services)
    : scales_(std::move(scales)), services_(std::move(services)) {
    MakePopup({.className = kScaleComunicationFormClass,
               .name = "ScaleComunicationForm",
               .caption = "Настройки комуникация със везни ELICOM EVL/ETS"_cp1251,
               .exStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT,
               .clientWidth = kWidth,
               .clientHeight = kHeight},
              owner);
    // In the order of the Tab key.
    MakeList();
    MakeDetails();
    MakeButtons();
}

void TScaleComunicationForm::MakeList() {
    scaleListBox_ = AddControl({.kind = TControlKind::ListBox,
                                .name = "ScaleListBox",
                                .bounds = {8, 8, 272, kHeight - 88},
                                .action = [this] { ScaleListBoxClick(); }});
    for (const TScaleObj& scale : scales_)
        SendMessageW(scaleListBox_, LB_ADDSTRING, 0,
                     reinterpret_cast<LPARAM>(Wide(scale.Rec.ScaleName.View()).c_str()));
}

void TScaleComunicationForm::MakeDetails() {
    int top = 8;
    const auto add = [&](const char* labelName, std::string_view label, const char* name,
                         int width) {
        const HWND text = AddLabel(labelName, label, {kDetailsLeft, top, kDetailsWidth, 16});
        const HWND edit =
            Add(TControlKind::Edit, name, {}, {kDetailsLeft, top + 17, width, 22}, ES_READONLY);
        top += kDetailsRow;
        return std::pair(text, edit);
    };
    edtScaleNumb_ = add("lblScaleNumb", "Номер :"_cp1251, "edtScaleNumb", 60).second;
    edtScaleName_ = add("lblScaleName", "Име :"_cp1251, "edtScaleName", kDetailsWidth).second;
    edtScaleAddress_ = add("lblScaleAddress", "Адрес на устройството за комуникация:"_cp1251,
                           "edtScaleAddress", 120)
                           .second;
    std::tie(lblScalePortBoudRate_, edtScalePortBoud_) =
        add("lblScalePortBoudRate", "Порт на устройството за комуникация."_cp1251,
            "edtScalePortBoud", 120);
}

void TScaleComunicationForm::MakeButtons() {
    const int editTop = kHeight - 72;
    AddButton("btnAddScale", "Добавяне"_cp1251, {8, editTop, 86, 27},
              &TScaleComunicationForm::btnAddScaleClick);
    AddButton("btnEditScale", "Редактиране"_cp1251, {101, editTop, 86, 27},
              &TScaleComunicationForm::btnEditScaleClick);
    AddButton("btnDeleteScale", "Изтриване"_cp1251, {194, editTop, 86, 27},
              &TScaleComunicationForm::btnDeleteScaleClick);
    const int top = kHeight - 35;
    AddButton("btnOk", "Потвърди"_cp1251, {kWidth - 196, top, 90, 27},
              &TScaleComunicationForm::btnOkClick, IDOK);
    AddButton("btnCancel", "Отказ"_cp1251, {kWidth - 98, top, 90, 27},
              &TScaleComunicationForm::btnCancelClick, IDCANCEL);
}

void TScaleComunicationForm::OnShow() {
    if (!scales_.empty()) Select(0);
    ShowDetails();
}

std::optional<std::size_t> TScaleComunicationForm::Selected() const {
    const LRESULT index = SendMessageW(scaleListBox_, LB_GETCURSEL, 0, 0);
    if (index < 0 || static_cast<std::size_t>(index) >= scales_.size()) return std::nullopt;
    return static_cast<std::size_t>(index);
}

void TScaleComunicationForm::Select(std::size_t index) {
    SendMessageW(scaleListBox_, LB_SETCURSEL, index, 0);
}

void TScaleComunicationForm::ShowDetails() {
    const auto selected = Selected();
    TScaleDetails details;
    if (selected) {
        details = DetailsOf(scales_[*selected].Rec);
        SetWindowText(lblScalePortBoudRate_, details.portOrSpeedLabel);
    }
    SetWindowText(edtScaleNumb_, details.number);
    SetWindowText(edtScaleName_, details.name);
    SetWindowText(edtScaleAddress_, details.address);
    SetWindowText(edtScalePortBoud_, details.portOrSpeed);
}

std::vector<std::int32_t> TScaleComunicationForm::Numbers() const {
    std::vector<std::int32_t> numbers;
    for (const TScaleObj& scale : scales_)
        numbers.push_back(scale.Rec.ScaleNumb);
    return numbers;
}

std::vector<std::string> TScaleComunicationForm::SerialPorts() const {
    std::vector<std::string> ports;
    services_.settings.listSerialPorts(true, ports);
    return ports;
}

std::optional<TScaleSettings> TScaleComunicationForm::Ask(std::string_view caption,
                                                          const TScaleSettings& settings) {
    TfrmScaleSettings dialog(Handle(), caption, settings, Numbers(), services_.settings);
    if (dialog.ShowModal() != IDOK || Handle() == nullptr) return std::nullopt;
    return dialog.Settings();
}

void TScaleComunicationForm::ScaleListBoxClick() {
    ShowDetails();
}

void TScaleComunicationForm::btnAddScaleClick() {
    if (scales_.size() >= kScaleSlots) {
        ShowWarning(Handle(), kListIsFull);
        return;
    }
    const auto settings = Ask("Добавяне везна..."_cp1251, SettingsOfNewScale(SerialPorts()));
    if (!settings) return;
    const TScaleRec rec = NewScale(*settings);
    scales_.push_back({rec});
    SendMessageW(scaleListBox_, LB_ADDSTRING, 0,
                 reinterpret_cast<LPARAM>(Wide(rec.ScaleName.View()).c_str()));
    if (!Selected()) Select(0);
    ShowDetails();
}

void TScaleComunicationForm::btnEditScaleClick() {
    const auto selected = Selected();
    if (!selected) return;
    const TScaleRec& before = scales_[*selected].Rec;
    const auto settings = Ask("Редактиране везна..."_cp1251, SettingsOf(before, SerialPorts()));
    if (!settings) return;
    TScaleRec& rec = scales_[*selected].Rec;
    ApplySettings(*settings, rec);
    SendMessageW(scaleListBox_, LB_DELETESTRING, *selected, 0);
    SendMessageW(scaleListBox_, LB_INSERTSTRING, *selected,
                 reinterpret_cast<LPARAM>(Wide(rec.ScaleName.View()).c_str()));
    Select(*selected);
    ShowDetails();
}

void TScaleComunicationForm::btnDeleteScaleClick() {
    const auto selected = Selected();
    if (!selected) return;
    scales_.erase(scales_.begin() + static_cast<std::ptrdiff_t>(*selected));
    SendMessageW(scaleListBox_, LB_DELETESTRING, *selected, 0);
    if (!scales_.empty()) Select(std::min(*selected, scales_.size() - 1));
    ShowDetails();
}

void TScaleComunicationForm::btnOkClick() {
    EndModal(IDOK);
}

void TScaleComunicationForm::btnCancelClick() {
    EndModal(IDCANCEL);
}

void TScaleComunicationForm::EditIPBtnClick() {
    const std::string address = WindowText(edtScaleAddress_);
    if (address.empty())
        ShowWarning(Handle(), kNoAddress);
    else
        services_.openPage(Handle(), WebPageOf(address));
}

}  // namespace tolvane
