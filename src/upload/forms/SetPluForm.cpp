#include "upload/forms/SetPluForm.h"

#include <utility>

#include "config/IniFile.h"
#include "system/Clock.h"
#include "system/RegionalSettings.h"
#include "text/Cp1251.h"
#include "upload/ArticleLineBuilder.h"
#include "upload/RunScales.h"
#include "upload/ScaleFactory.h"
#include "upload/forms/PostedRunView.h"
#include "window/CheckList.h"
#include "window/MessageBoxes.h"
#include "window/Placement.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

// Sizes at 96 dots per inch.
constexpr int kMargin = 8;
constexpr int kClientWidth = 680;
constexpr int kClientHeight = 500;
constexpr int kMinWidth = 620;
constexpr int kMinHeight = 420;
constexpr int kListTop = 26;
constexpr int kListHeight = 140;
constexpr int kLabelHeight = 16;
constexpr int kButtonHeight = 27;
constexpr int kButtonWidth = 100;
constexpr int kDeleteWidth = 220;

}  // namespace

TSetPluForm::TSetPluForm(HWND owner, const TRunKind& kind, const TRunContext& context)
    : kind_(kind), context_(context), items_(RunItems(*context.scales)) {
    // Comes first: without the kept choices a run could take another price than the shop's.
    const TRunSettings settings = LoadRunSettings(ReadIniFile(context_.iniFile));
    MakePopup({.className = kSetPluFormClass,
               .name = "SetPluForm",
               .caption = kind_.caption,
               .style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX,
               .exStyle = WS_EX_DLGMODALFRAME,  // no icon in the caption
               .clientWidth = kClientWidth,
               .clientHeight = kClientHeight,
               .minWidth = kMinWidth,
               .minHeight = kMinHeight},
              owner);
    // In the order of the Tab key.
    AddScales();
    choices_.Make([this](const TControlOptions& control) { return AddControl(control); });
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
    return AddControl({.kind = kind, .name = name, .text = text, .style = style});
}

HWND TSetPluForm::AddButton(const char* name, std::string_view text, TClick click, int id) {
    return AddControl(
        {.name = name, .text = text, .action = [this, click] { (this->*click)(); }, .id = id});
}

void TSetPluForm::AddScales() {
    lblScales_ = Add(TControlKind::Label, "lblScales", "Везни"_cp1251);
    scaleList_ = Add(TControlKind::CheckList, "ScaleList");
    TCheckList list(scaleList_);
    for (const TScaleObj& item : items_)
        list.Add(item.Rec.ScaleName.View());
    if (!items_.empty()) list.SetCurrent(0);
}

void TSetPluForm::AddLog() {
    readPropLabel_ = Add(TControlKind::Label, "ReadPropLabel", {}, SS_ENDELLIPSIS);
    statusMemo_ = Add(TControlKind::Memo, "StatusMemo");
    log_.Attach(Handle(), statusMemo_);
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
    choices_.Show(settings.choices);
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
        list.SetChecked(static_cast<int>(i), items_[i].Rec.Checked);
    if (maximized_) ShowWindow(Handle(), SW_SHOWMAXIMIZED);
}

void TSetPluForm::OnSize() {
    if (okBtn_ == nullptr) return;
    const SIZE client = ClientSize();
    const int width = client.cx;
    const int inner = width - 2 * kMargin;
    const int choicesLeft = width - kMargin - TRunChoices::kWidth;
    const int buttonsTop = client.cy - kMargin - kButtonHeight;
    const int statusTop = buttonsTop - kMargin - kLabelHeight;
    const int connectionTop = kListTop + kListHeight + kMargin;
    const int memoTop = connectionTop + kLabelHeight + 2;
    Place(lblScales_, {kMargin, kMargin, 120, kLabelHeight});
    Place(scaleList_, {kMargin, kListTop, choicesLeft - 2 * kMargin, kListHeight});
    choices_.Place(choicesLeft, kMargin,
                   [this](HWND control, const TBounds& place) { Place(control, place); });
    Place(readPropLabel_, {kMargin, connectionTop, inner, kLabelHeight});
    Place(statusMemo_, {kMargin, memoTop, inner, statusTop - 4 - memoTop});
    Place(lblStatus_, {kMargin, statusTop, inner, kLabelHeight});
    PlaceButtons(width, buttonsTop);
    SendMessageW(scaleList_, LVM_SETCOLUMNWIDTH, 0, LVSCW_AUTOSIZE_USEHEADER);
    InvalidateRect(Handle(), nullptr, TRUE);
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
    // A disabled list keeps its marks.
    const bool mayChange = header.hwndFrom == scaleList_ && IsWindowEnabled(scaleList_) != 0;
    if (mayChange && header.code == LVN_ITEMCHANGED) PublishMarks();
    return TForm::OnNotify(header);
}

TRunSettings TSetPluForm::CurrentSettings() const {
    TRunSettings settings;
    settings.choices = choices_.Current();
    const TPlacement placement = PlacementOf(Handle());
    const RECT& outer = placement.outer;
    settings.place = TWindowPlace{outer.left, outer.top, outer.right - outer.left,
                                  outer.bottom - outer.top, placement.maximized};
    return settings;
}

std::vector<TScaleObj> TSetPluForm::CurrentItems() const {
    std::vector<TScaleObj> items = items_;
    const TCheckList list(scaleList_);
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i].Rec.Checked = list.IsChecked(static_cast<int>(i));
    return items;
}

void TSetPluForm::PublishMarks() {
    const TCheckList list(scaleList_);
    for (std::size_t i = 0; i < items_.size(); ++i)
        marks_->Set(i, list.IsChecked(static_cast<int>(i)));
}

template <class Body>
void TSetPluForm::StartRun(Body body) {
    // A window that was closed under a question stays until the question is answered.
    if (running_ || closing_) return;
    // The thread of the former run may still have to end; meanwhile another program may click.
    worker_.Wait();
    if (running_ || closing_) return;
    if (const HWND focus = GetFocus(); focus != nullptr) startedBy_ = focus;
    if (startedBy_ == nullptr) startedBy_ = okBtn_;
    // The thread has its own copy of everything, so that it never looks back at the form.
    worker_.Start(
        [body = std::move(body), stop = stop_, queue = Queue(), regional = SystemRegionalSettings(),
         clock = context_.clock, this]() mutable {
            TPostedRunView view(queue, *this);
            TRealScaleFactory factory(*clock);
            TScaleRun run(factory, *clock, view, *stop, regional);
            body(run);
        },
        Queue(), [this, run = ++run_] { RunEnded(run); });
    running_ = true;
}

void TSetPluForm::SaveBtnClick() {
    TRunArticles articles{context_.articles, RowsOfRun(*context_.articles, kind_.markedOnly,
                                                       context_.marked, context_.current)};
    StartRun(
        [items = CurrentItems(), articles = std::move(articles), choices = choices_.Current(),
         write = kind_.write](TScaleRun& run) { run.RunListed(items, articles, choices, write); });
}

void TSetPluForm::DeleteBtnClick() {
    if (running_) return;
    constexpr std::string_view kQuestion =
        "Тази процедура води до изтриване на всички\r\nартикули в избраните везни.\r\n"
        "Желаете ли да продължите?"_cp1251;
    if (!AskWarning(Handle(), kQuestion) || Handle() == nullptr) return;
    PublishMarks();
    StartRun([items = items_, marks = marks_](TScaleRun& run) {
        run.RunDeleteEverything(items, *marks);
    });
}

void TSetPluForm::StopReadBtnClick() {
    stop_->Stop();
}

void TSetPluForm::OnCancel() {
    Close();
}

bool TSetPluForm::CanClose(int) {
    closing_ = true;
    if (!running_) return true;
    stop_->Abandon();
    return false;
}

void TSetPluForm::RunEnded(unsigned run) {
    // The next run has begun between SetRunning(false) and the end of this run's thread.
    if (run != run_) return;
    worker_.Wait();
    running_ = false;
    log_.Flush();
    if (closing_) EndModal(IDCANCEL);
}

void TSetPluForm::OnDestroy() {
    stop_->Abandon();
    try {
        StoreResults();
    } catch (const TFileError&) {
        // The host is taking its windows down; it is no time for a message box.
    }
}

void TSetPluForm::Finish() {
    stop_->Abandon();
    worker_.Wait();
    if (Handle() != nullptr) StoreResults();
}

void TSetPluForm::StoreResults() {
    if (std::exchange(stored_, true)) return;
    StoreRunItems(CurrentItems(), *context_.scales);
    UpdateIniFile(context_.iniFile,
                  [&](TIniDocument& document) { SaveRunSettings(CurrentSettings(), document); });
}

LRESULT TSetPluForm::HandleMessage(const TMessage& message) {
    if (message.id == WM_TIMER && log_.HandleTimer(message.wParam)) return 0;
    if (message.id == WM_SETCURSOR && closing_ && LOWORD(message.lParam) == HTCLIENT) {
        SetCursor(LoadCursorW(nullptr, IDC_WAIT));
        return TRUE;
    }
    if (message.id == WM_CTLCOLORSTATIC && reinterpret_cast<HWND>(message.lParam) == statusMemo_) {
        // A read-only memo is grey by default; a log is there to be read.
        SetBkColor(reinterpret_cast<HDC>(message.wParam), GetSysColor(COLOR_WINDOW));
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
    }
    return TForm::HandleMessage(message);
}

void TSetPluForm::ClearLog() {
    log_.Clear();
}

void TSetPluForm::Log(std::string line) {
    log_.Add(line);
}

void TSetPluForm::SetConnection(std::string text) {
    log_.Flush();
    SetWindowText(readPropLabel_, text);
}

void TSetPluForm::SetProgress(std::string text) {
    log_.Flush();
    SetWindowText(lblStatus_, text);
}

void TSetPluForm::SetRunning(bool running) {
    log_.Flush();
    // The run has finished: a user who sees the buttons enabled may start the next one.
    if (!running) running_ = false;
    EnableWindow(stopReadBtn_, running ? TRUE : FALSE);
    const HWND focus = GetFocus();
    for (const HWND control : {saveBtn_, okBtn_, deleteBtn_, scaleList_})
        EnableWindow(control, running ? FALSE : TRUE);
    // A disabled control would swallow the keys.
    const bool lost =
        focus == nullptr || (IsChild(Handle(), focus) != 0 && IsWindowEnabled(focus) == 0);
    if (lost && GetActiveWindow() == Handle()) SetFocus(running ? stopReadBtn_ : startedBy_);
}

void TSetPluForm::SetChoicesEnabled(bool enabled) {
    log_.Flush();
    choices_.Enable(enabled);
}

void TSetPluForm::ShowRunError(std::string text) {
    log_.Flush();
    ShowError(Handle(), text);
}

}  // namespace tolvane
