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
#include "window/MessageBoxes.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

// What an append costs grows with the log, so lines go in together: few enough at once for the
// window to stay alive, and not later than this after they came.
constexpr std::size_t kLogBatch = 150;
constexpr UINT kLogDelayMs = 50;
constexpr UINT_PTR kLogTimer = 1;

// A log entry as a memo shows it: a zero byte would end it, and only CR LF breaks a line.
void AppendEntry(std::string_view entry, std::string& text) {
    for (std::size_t i = 0; i < entry.size(); ++i) {
        if (entry.substr(i, 2) == "\r\n") {
            text += "\r\n";
            ++i;
        } else {
            const char c = entry[i];
            text += c == '\0' || c == '\r' || c == '\n' ? ' ' : c;
        }
    }
}

}  // namespace

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
    StartRun([items = CurrentItems(), articles = std::move(articles),
              choices = CurrentSettings().choices, write = kind_.write](TScaleRun& run) {
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
    // The next one has begun between the run's last word and the end of its thread.
    if (run != run_) return;
    worker_.Wait();
    running_ = false;
    FlushLog();
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
    if (message.id == WM_TIMER && message.wParam == kLogTimer) {
        FlushLog();
        return 0;
    }
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
    FlushLog();
    SetWindowText(statusMemo_, {});
}

void TSetPluForm::Log(std::string line) {
    if (pendingLines_ == 0) {
        SetTimer(Handle(), kLogTimer, kLogDelayMs, nullptr);
    } else {
        pendingLog_ += "\r\n";
    }
    AppendEntry(line, pendingLog_);
    if (++pendingLines_ >= kLogBatch) FlushLog();
}

void TSetPluForm::FlushLog() {
    if (pendingLines_ == 0) return;
    KillTimer(Handle(), kLogTimer);
    AppendLine(statusMemo_, pendingLog_);
    pendingLog_.clear();
    pendingLines_ = 0;
}

void TSetPluForm::SetConnection(std::string text) {
    FlushLog();
    SetWindowText(readPropLabel_, text);
}

void TSetPluForm::SetProgress(std::string text) {
    FlushLog();
    SetWindowText(lblStatus_, text);
}

void TSetPluForm::SetRunning(bool running) {
    FlushLog();
    // A run's last word: whoever sees the buttons enabled can start the next one.
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
    FlushLog();
    for (const HWND control :
         {cbPluName1_, cbPluName2_, priceRadio_, priceButtons_[0], priceButtons_[1]})
        EnableWindow(control, enabled ? TRUE : FALSE);
}

void TSetPluForm::ShowRunError(std::string text) {
    FlushLog();
    ShowError(Handle(), text);
}

}  // namespace tolvane
