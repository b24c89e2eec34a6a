#include "upload/forms/SetPluForm.h"

#include <memory>
#include <new>
#include <utility>

#include "config/IniFile.h"
#include "system/Clock.h"
#include "system/RegionalSettings.h"
#include "text/Cp1251.h"
#include "text/Failure.h"
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

// The smallest outer size, at 96 dots per inch.
constexpr int kMinWidth = 620;
constexpr int kMinHeight = 420;

}  // namespace

TSetPluForm::TSetPluForm(HWND owner, const TRunKind& kind, const TRunContext& context)
    : kind_(kind), context_(context), items_(RunItems(*context.scales)) {
    // Comes first: without the saved choices a run could use a different price from the shop's.
    const TRunSettings settings = LoadRunSettings(ReadIniFile(context_.iniFile));
    MakePopup({.className = kSetPluFormClass,
               .name = "SetPluForm",
               .caption = kind_.caption,
               .style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX,
               .exStyle = WS_EX_DLGMODALFRAME,  // no icon in the caption
               .clientWidth = TSetPluControls::kFormWidth,
               .clientHeight = TSetPluControls::kFormHeight,
               .minWidth = kMinWidth,
               .minHeight = kMinHeight},
              owner);
    controls_.Make(*this, kind_, items_,
                   {.save = [this] { SaveBtnClick(); },
                    .deleteEverything = [this] { DeleteBtnClick(); },
                    .stop = [this] { StopReadBtnClick(); },
                    .close = [this] { OnCancel(); }});
    controls_.choices.Show(settings.choices);
    if (settings.place) RestorePosition(*settings.place);
    OnSize();
}

TSetPluForm::~TSetPluForm() {
    stop_->Abandon();
    worker_.Wait();
    Queue().Detach();
}

void TSetPluForm::RestorePosition(const TWindowPlace& place) {
    maximized_ = place.maximized;
    MoveTo(Handle(), place);
}

void TSetPluForm::OnShow() {
    TCheckList list(controls_.scaleList);
    for (std::size_t i = 0; i < items_.size(); ++i)
        list.SetChecked(static_cast<int>(i), items_[i].Rec.Checked);
    if (maximized_) ShowWindow(Handle(), SW_SHOWMAXIMIZED);
}

void TSetPluForm::OnSize() {
    controls_.Arrange(*this);
}

bool TSetPluForm::OnKey(UINT virtualKey, HWND focus) {
    const bool selectsAll = virtualKey == 'A' && GetKeyState(VK_CONTROL) < 0 &&
                            GetKeyState(VK_MENU) >= 0 && focus == controls_.statusMemo;
    if (selectsAll) SendMessageW(controls_.statusMemo, EM_SETSEL, 0, -1);
    return selectsAll;
}

LRESULT TSetPluForm::OnNotify(NMHDR& header) {
    // The marks of a disabled list do not change.
    const bool mayChange =
        header.hwndFrom == controls_.scaleList && IsWindowEnabled(controls_.scaleList) != 0;
    if (mayChange && header.code == LVN_ITEMCHANGED) PublishMarks();
    return TForm::OnNotify(header);
}

TRunSettings TSetPluForm::CurrentSettings() const {
    TRunSettings settings;
    settings.choices = controls_.choices.Current();
    settings.place = PlaceOf(Handle());
    return settings;
}

std::vector<TScaleObj> TSetPluForm::CurrentItems() const {
    std::vector<TScaleObj> items = items_;
    const TCheckList list(controls_.scaleList);
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i].Rec.Checked = list.IsChecked(static_cast<int>(i));
    return items;
}

void TSetPluForm::PublishMarks() {
    const TCheckList list(controls_.scaleList);
    for (std::size_t i = 0; i < items_.size(); ++i)
        marks_->Set(i, list.IsChecked(static_cast<int>(i)));
}

template <class Body>
void TSetPluForm::StartRun(Body body) {
    // A window that is closed while a question is open stays until the question is answered.
    if (running_ || closing_) return;
    // The thread of the previous run may still be ending; during the wait, another program may
    // click.
    worker_.Wait();
    if (running_ || closing_) return;
    if (const HWND focus = GetFocus(); focus != nullptr) startedBy_ = focus;
    if (startedBy_ == nullptr) startedBy_ = controls_.okBtn;
    // The thread has its own copy of everything, so that it never reads the form.
    TRunView& window = *this;
    worker_.Start(
        [body = std::move(body), stop = stop_,
         view = std::make_shared<TPostedRunView>(Queue(), window),
         regional = SystemRegionalSettings(), clock = context_.clock]() mutable {
            try {
                TRealScaleFactory factory(*clock);
                TScaleRun run(factory, *clock, *view, *stop, regional);
                body(run);
            } catch (const std::bad_alloc&) {
                view->ShowMemoryError();
            }
        },
        Queue(), [this, run = ++run_] { RunEnded(run); });
    running_ = true;
}

void TSetPluForm::SaveBtnClick() {
    TRunArticles articles{context_.articles, RowsOfRun(*context_.articles, kind_.markedOnly,
                                                       context_.marked, context_.current)};
    StartRun([items = CurrentItems(), articles = std::move(articles),
              choices = controls_.choices.Current(), write = kind_.write](TScaleRun& run) {
        run.RunListed(items, articles, choices, write);
    });
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
    // The next run began between SetRunning(false) and the end of this run's thread.
    if (run != run_) return;
    worker_.Wait();
    running_ = false;
    controls_.log.Flush();
    if (closing_) EndModal(IDCANCEL);
}

void TSetPluForm::CallUserBack() const {
    CallUser(Handle(), context_.attention);
}

void TSetPluForm::OnDestroy() {
    stop_->Abandon();
    try {
        StoreResults();
    } catch (const TFileError&) {
        // The host is destroying its windows; a message box would come too late.
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
    if (message.id == WM_TIMER && controls_.log.HandleTimer(message.wParam)) return 0;
    if (message.id == WM_SETCURSOR && closing_ && LOWORD(message.lParam) == HTCLIENT) {
        SetCursor(LoadCursorW(nullptr, IDC_WAIT));
        return TRUE;
    }
    if (message.id == WM_CTLCOLORSTATIC &&
        reinterpret_cast<HWND>(message.lParam) == controls_.statusMemo) {
        // A read-only memo is grey by default, which is hard to read.
        SetBkColor(reinterpret_cast<HDC>(message.wParam), GetSysColor(COLOR_WINDOW));
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
    }
    return TForm::HandleMessage(message);
}

void TSetPluForm::ClearLog() {
    controls_.log.Clear();
}

void TSetPluForm::Log(std::string line) {
    controls_.log.Add(line);
}

void TSetPluForm::SetConnection(std::string text) {
    controls_.log.Flush();
    SetWindowText(controls_.readPropLabel, text);
}

void TSetPluForm::SetProgress(std::string text) {
    controls_.log.Flush();
    SetWindowText(controls_.lblStatus, text);
}

void TSetPluForm::ShowCount(const TRunCount& count) {
    controls_.log.Flush();
    controls_.bar.Show(count);
}

void TSetPluForm::SetRunning(bool running) {
    controls_.log.Flush();
    // The run has finished: once the buttons are enabled, the user may start the next one.
    if (!running) running_ = false;
    EnableWindow(controls_.stopReadBtn, running ? TRUE : FALSE);
    const HWND focus = GetFocus();
    for (const HWND control :
         {controls_.saveBtn, controls_.okBtn, controls_.deleteBtn, controls_.scaleList})
        EnableWindow(control, running ? FALSE : TRUE);
    // A disabled control that has the focus would swallow the keys.
    const bool lost =
        focus == nullptr || (IsChild(Handle(), focus) != 0 && IsWindowEnabled(focus) == 0);
    if (lost && GetActiveWindow() == Handle())
        SetFocus(running ? controls_.stopReadBtn : startedBy_);
    if (!running && !closing_) CallUserBack();
}

void TSetPluForm::SetChoicesEnabled(bool enabled) {
    controls_.log.Flush();
    controls_.choices.Enable(enabled);
}

void TSetPluForm::ShowRunError(std::string text) {
    controls_.log.Flush();
    CallUserBack();
    ShowError(Handle(), text);
}

void TSetPluForm::ShowMemoryError() noexcept {
    controls_.log.Flush();
    CallUserBack();
    ShowError(Handle(), kOutOfMemory);
}

}  // namespace tolvane
