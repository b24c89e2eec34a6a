#include "upload/forms/SetPluForm.h"

#include "config/IniFile.h"
#include "text/Cp1251.h"
#include "upload/RunScales.h"
#include "window/CheckList.h"
#include "window/Placement.h"

namespace tolvane {
namespace {

// Sizes at 96 dots per inch.
constexpr int kMargin = 8;
constexpr int kClientWidth = 680;
constexpr int kClientHeight = 500;
constexpr int kMinWidth = 620;
constexpr int kMinHeight = 420;
constexpr int kChoicesWidth = 280;
constexpr int kListTop = 26;
constexpr int kListHeight = 140;
constexpr int kLabelHeight = 16;
constexpr int kButtonHeight = 27;
constexpr int kButtonWidth = 100;
constexpr int kDeleteWidth = 220;
constexpr int kOpenedComboHeight = 150;

}  // namespace

TSetPluForm::TSetPluForm(HWND owner, const TRunKind& kind, const TRunContext& context)
    : kind_(kind), context_(context), items_(RunItems(*context.scales)) {
    // First of all: without the kept choices a run could take another price than the shop's.
    const TRunSettings settings = LoadRunSettings(ReadIniFile(context_.iniFile));
    TFormOptions options;
    options.className = kSetPluFormClass;
    options.name = "SetPluForm";
    options.caption = kind_.caption;
    options.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX;
    options.exStyle = WS_EX_DLGMODALFRAME;  // no icon in the caption
    options.clientWidth = kClientWidth;
    options.clientHeight = kClientHeight;
    options.minWidth = kMinWidth;
    options.minHeight = kMinHeight;
    MakePopup(options, owner);
    // In the order of the Tab key.
    AddScales();
    AddChoices();
    AddLog();
    AddButtons();
    Restore(settings);
    OnSize();
}

TSetPluForm::~TSetPluForm() {
    stop_->Abandon();
    worker_.Wait();
    Queue().Detach();
}

HWND TSetPluForm::Add(TControlKind kind, const char* name, std::string_view text, DWORD style) {
    TControlOptions options;
    options.kind = kind;
    options.name = name;
    options.text = text;
    options.style = style;
    return AddControl(options);
}

HWND TSetPluForm::AddButton(const char* name, std::string_view text, TClick click, int id) {
    TControlOptions options;
    options.name = name;
    options.text = text;
    options.action = [this, click] { (this->*click)(); };
    options.id = id;
    return AddControl(options);
}

void TSetPluForm::AddScales() {
    lblScales_ = Add(TControlKind::Label, "lblScales", "Везни"_cp1251);
    scaleList_ = Add(TControlKind::CheckList, "ScaleList");
    TCheckList list(scaleList_);
    for (const TRunItem& item : items_)
        list.Add(item.rec.ScaleName.View());
    if (!items_.empty()) list.SetCurrent(0);
}

void TSetPluForm::AddChoices() {
    constexpr std::array<const char*, kPriceCaptions.size()> kNames = {"PriceRadio0",
                                                                       "PriceRadio1"};
    priceRadio_ = Add(TControlKind::GroupBox, "PriceRadio", "Цена"_cp1251);
    for (std::size_t i = 0; i < priceButtons_.size(); ++i)
        priceButtons_[i] = Add(TControlKind::RadioButton, kNames[i], kPriceCaptions[i],
                               i == 0 ? DWORD{WS_GROUP} : DWORD{0});
    lblPluName1_ = Add(TControlKind::Label, "lblPluName1", "Име 1"_cp1251, WS_GROUP);
    cbPluName1_ = Add(TControlKind::ComboList, "cbPluName1");
    lblPluName2_ = Add(TControlKind::Label, "lblPluName2", "Име 2"_cp1251);
    cbPluName2_ = Add(TControlKind::ComboList, "cbPluName2");
    for (const HWND combo : {cbPluName1_, cbPluName2_}) {
        for (const TNameChoice& choice : kNameChoices)
            AddComboItem(combo, choice.caption);
    }
}

void TSetPluForm::AddLog() {
    readPropLabel_ = Add(TControlKind::Label, "ReadPropLabel", {}, SS_ENDELLIPSIS);
    statusMemo_ = Add(TControlKind::Memo, "StatusMemo");
    SendMessageW(statusMemo_, EM_SETLIMITTEXT, 0, 0);
    lblStatus_ = Add(TControlKind::Label, "lblStatus", {}, SS_ENDELLIPSIS);
}

void TSetPluForm::AddButtons() {
    saveBtn_ = AddButton("SaveBtn", kind_.saveCaption, &TSetPluForm::SaveBtnClick);
    if (!kind_.saveVisible) ShowWindow(saveBtn_, SW_HIDE);
    deleteBtn_ =
        AddButton("DeleteBtn", "Изтриване на всички артикули"_cp1251, &TSetPluForm::DeleteBtnClick);
    stopReadBtn_ = AddButton("StopReadBtn", "Прекъсни"_cp1251, &TSetPluForm::StopReadBtnClick);
    EnableWindow(stopReadBtn_, FALSE);
    okBtn_ = AddButton("OkBtn", "Затвори"_cp1251, &TSetPluForm::OnCancel, IDCANCEL);
}

void TSetPluForm::Restore(const TRunSettings& settings) {
    for (std::size_t i = 0; i < priceButtons_.size(); ++i)
        SetChecked(priceButtons_[i], static_cast<int>(i) == settings.choices.price);
    SetComboIndex(cbPluName1_, settings.choices.name1);
    SetComboIndex(cbPluName2_, settings.choices.name2);
    if (settings.place) RestorePlace(*settings.place);
}

void TSetPluForm::RestorePlace(const TWindowPlace& place) {
    maximized_ = place.maximized;
    MoveToPlacement(Handle(),
                    {place.left, place.top, place.left + place.width, place.top + place.height});
}

void TSetPluForm::OnShow() {
    TCheckList list(scaleList_);
    for (std::size_t i = 0; i < items_.size(); ++i)
        list.SetChecked(static_cast<int>(i), items_[i].checked);
    if (maximized_) ShowWindow(Handle(), SW_SHOWMAXIMIZED);
}

void TSetPluForm::OnSize() {
    if (okBtn_ == nullptr) return;
    const SIZE client = ClientSize();
    const int width = client.cx;
    const int inner = width - 2 * kMargin;
    const int choicesLeft = width - kMargin - kChoicesWidth;
    const int buttonsTop = client.cy - kMargin - kButtonHeight;
    const int statusTop = buttonsTop - kMargin - kLabelHeight;
    const int connectionTop = kListTop + kListHeight + kMargin;
    const int memoTop = connectionTop + kLabelHeight + 2;
    Place(lblScales_, {kMargin, kMargin, 120, kLabelHeight});
    Place(scaleList_, {kMargin, kListTop, choicesLeft - 2 * kMargin, kListHeight});
    PlaceChoices(choicesLeft);
    Place(readPropLabel_, {kMargin, connectionTop, inner, kLabelHeight});
    Place(statusMemo_, {kMargin, memoTop, inner, statusTop - 4 - memoTop});
    Place(lblStatus_, {kMargin, statusTop, inner, kLabelHeight});
    PlaceButtons(width, buttonsTop);
    SendMessageW(scaleList_, LVM_SETCOLUMNWIDTH, 0, LVSCW_AUTOSIZE_USEHEADER);
    InvalidateRect(Handle(), nullptr, TRUE);
}

void TSetPluForm::PlaceChoices(int left) {
    Place(priceRadio_, {left, kMargin, kChoicesWidth, 64});
    int top = kMargin + 18;
    for (const HWND button : priceButtons_) {
        Place(button, {left + 10, top, kChoicesWidth - 20, 19});
        top += 21;
    }
    Place(lblPluName1_, {left, 78, kChoicesWidth, kLabelHeight});
    Place(cbPluName1_, {left, 95, kChoicesWidth, kOpenedComboHeight});
    Place(lblPluName2_, {left, 124, kChoicesWidth, kLabelHeight});
    Place(cbPluName2_, {left, 141, kChoicesWidth, kOpenedComboHeight});
}

void TSetPluForm::PlaceButtons(int width, int top) {
    int left = kMargin;
    const auto place = [&](HWND button, int buttonWidth) {
        Place(button, {left, top, buttonWidth, kButtonHeight});
        left += buttonWidth + kMargin;
    };
    if (kind_.saveVisible) place(saveBtn_, kButtonWidth);
    place(deleteBtn_, kDeleteWidth);
    place(stopReadBtn_, kButtonWidth);
    left = width - kMargin - kButtonWidth;
    place(okBtn_, kButtonWidth);
}

bool TSetPluForm::OnKey(UINT virtualKey, HWND focus) {
    const bool selectsAll = virtualKey == 'A' && GetKeyState(VK_CONTROL) < 0 &&
                            GetKeyState(VK_MENU) >= 0 && focus == statusMemo_;
    if (selectsAll) SendMessageW(statusMemo_, EM_SETSEL, 0, -1);
    return selectsAll;
}

LRESULT TSetPluForm::OnNotify(NMHDR& header) {
    // Once the list is disabled its marks stand.
    const bool mayChange = header.hwndFrom == scaleList_ && IsWindowEnabled(scaleList_) != 0;
    if (mayChange && header.code == LVN_ITEMCHANGED) PublishMarks();
    return TForm::OnNotify(header);
}

TRunSettings TSetPluForm::CurrentSettings() const {
    TRunSettings settings;
    for (std::size_t i = 0; i < priceButtons_.size(); ++i) {
        if (IsChecked(priceButtons_[i])) settings.choices.price = static_cast<int>(i);
    }
    settings.choices.name1 = ComboIndex(cbPluName1_);
    settings.choices.name2 = ComboIndex(cbPluName2_);
    const TPlacement placement = PlacementOf(Handle());
    const RECT& outer = placement.outer;
    settings.place = TWindowPlace{outer.left, outer.top, outer.right - outer.left,
                                  outer.bottom - outer.top, placement.maximized};
    return settings;
}

std::vector<TRunItem> TSetPluForm::CurrentItems() const {
    std::vector<TRunItem> items = items_;
    const TCheckList list(scaleList_);
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i].checked = list.IsChecked(static_cast<int>(i));
    return items;
}

void TSetPluForm::PublishMarks() {
    const TCheckList list(scaleList_);
    for (std::size_t i = 0; i < items_.size(); ++i)
        marks_->Set(i, list.IsChecked(static_cast<int>(i)));
}

}  // namespace tolvane
