#include "articles/forms/PLUScaleListUnit.h"

#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "articles/PrintTime.h"
#include "articles/forms/DatabasePatience.h"
#include "articles/forms/ListLayout.h"
#include "system/LocalTime.h"
#include "text/Cp1251.h"
#include "text/Failure.h"
#include "window/MessageBoxes.h"

namespace tolvane {
namespace {

constexpr int kClientWidth = 605;
constexpr int kClientHeight = 305;
constexpr int kMinWidth = 520;
constexpr int kMinHeight = 305;
constexpr std::string_view kCaption = "Списък ТЕГЛОВИ артикули"_cp1251;
constexpr std::string_view kPrintTitle = "Теглови артикули"_cp1251;

}  // namespace

TElicomPluScaleListForm::TElicomPluScaleListForm(std::filesystem::path configurationFile,
                                                 std::filesystem::path hostSettings)
    : store_(std::move(configurationFile), std::move(hostSettings)),
      session_(*this, SystemLocalClock(), &SystemRegionalSettings),
      grid_(Dpi(), session_, [this](TField field) { Search().SelectField(field); }),
      bars_(*this) {}

void TElicomPluScaleListForm::Open(HWND mdiClient) {
    MakeMdiChild({.className = kListFormClass,
                  .name = kListFormName,
                  .caption = kCaption,
                  .style = WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_CLIPCHILDREN,
                  .clientWidth = kClientWidth,
                  .clientHeight = kClientHeight,
                  .minWidth = kMinWidth,
                  .minHeight = kMinHeight},
                 mdiClient);
    grid_.Grid().SetDpi(Dpi());
    MakeControls();
    grid_.Grid().SetStyle(LoadGridStyle(store_.HostSettings()));
    store_.Load([this](const TIniDocument& document) { ApplyListLayout(document, *this, grid_); });
    FreeAfterDestroy();
}

void TElicomPluScaleListForm::MakeControls() {
    bars_.MakeTop([this] { SearchButtonClick(); });
    grid_.Grid().Attach(
        AddControl({.kind = TControlKind::ListView, .name = "aDBGrid", .style = kGridListStyle}));
    bars_.MakeBottom([this] { RefreshBtnClick(); }, [this] { ColBtnClick(); },
                     [this] { PrintBtnClick(); });
    OnSize();
}

void TElicomPluScaleListForm::FocusGrid() {
    SetFocus(Grid().Handle());
}

void TElicomPluScaleListForm::OnSize() {
    if (Grid().Handle() != nullptr) bars_.Arrange(Grid().Handle());
}

void TElicomPluScaleListForm::OnDpiChange() {
    grid_.Grid().SetDpi(Dpi());
    bars_.LoadIcon();
}

LRESULT TElicomPluScaleListForm::HandleMessage(const TMessage& message) {
    switch (message.id) {
        case WM_MEASUREITEM: {
            auto& measure = *reinterpret_cast<MEASUREITEMSTRUCT*>(message.lParam);
            if (measure.CtlType != ODT_LISTVIEW) break;
            measure.itemHeight = static_cast<UINT>(Grid().RowHeight());
            return TRUE;
        }
        case WM_DRAWITEM: {
            const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(message.lParam);
            if (item.CtlType != ODT_LISTVIEW) break;
            grid_.Grid().HandleDraw(item);
            return TRUE;
        }
        case WM_PAINT:
            bars_.Paint();
            return 0;
        default:
            break;
    }
    return TForm::HandleMessage(message);
}

LRESULT TElicomPluScaleListForm::OnNotify(NMHDR& header) {
    return grid_.Grid().HandleNotify(header).value_or(0);
}

void TElicomPluScaleListForm::OnCommand(int id, int /*code*/, HWND /*control*/) {
    if (id > kFirstRunCommand && id < kSettingsCommand)
        NDeleteAllClick(static_cast<TRunNumber>(id - kFirstRunCommand));
    else if (id == kSettingsCommand)
        NSettingsClick();
    else if (id >= kFirstSearchCommand)
        SearchMenuClick(static_cast<std::size_t>(id - kFirstSearchCommand));
}

// The bars' buttons take the focus, so these keys also work while a button has it.
bool TElicomPluScaleListForm::OnKey(UINT virtualKey, HWND focus) {
    const bool control = IsKeyDown(VK_CONTROL);
    const bool shift = IsKeyDown(VK_SHIFT);
    if (IsKeyDown(VK_MENU)) return false;
    if (virtualKey == 'F' && control && !shift) {
        SearchButtonClick();
        return true;
    }
    if (virtualKey == VK_RETURN && control && !shift && focus == Grid().Handle()) {
        grid_.Grid().ClickCurrentTitle();
        return true;
    }
    if (control || shift) return false;
    if (virtualKey == VK_F3) {
        Search().FindNext();
        return true;
    }
    if (virtualKey == VK_F5) {
        RefreshBtnClick();
        return true;
    }
    return focus == Grid().Handle() && grid_.Grid().HandleKey(virtualKey);
}

bool TElicomPluScaleListForm::CanClose(int /*result*/) {
    return session_.MayEnd();
}

// A load that is still going on ends later, when the window is gone.
void TElicomPluScaleListForm::CloseAtOnce() {
    session_.Abandon();
    Close();
}

void TElicomPluScaleListForm::OnClose() {
    session_.End();
    SaveAndShowFailure();
}

// This also runs when the host's main window is destroyed. The transaction is then rolled back, not
// committed: the host may have closed its connection already.
void TElicomPluScaleListForm::OnDestroy() {
    SaveAndShowFailure();
    // A load that still runs needs the wait window, which is then destroyed with this object.
    if (!session_.IsLoading()) wait_.reset();
    Ended();
}

void TElicomPluScaleListForm::SaveAndShowFailure() {
    try {
        store_.SaveAtEnd(
            [this](TIniDocument& document) { WriteListLayout(*this, grid_, document); });
    } catch (const std::exception&) {
        // The error of a failed start has been shown; the loss of a scale must still be shown.
        if (!session_.IsAbandoned() || store_.HasUnsavedScales())
            ShowCurrentException({}, [this](std::string_view text) { ShowError(text); });
    }
}

void TElicomPluScaleListForm::Connect(const char* clientLibrary, void* handle) {
    if (!wait_) wait_ = std::make_unique<TWaitForm>(Handle());
    session_.Connect(clientLibrary, handle, *wait_);
}

void TElicomPluScaleListForm::LoadArticles() {
    session_.LoadArticles();
    ShowEmptyList();
}

// A load that finds no articles ends without ResumeDisplay.
void TElicomPluScaleListForm::ShowEmptyList() {
    if (Handle() != nullptr && session_.ShownRowCount() == 0) grid_.Grid().RowsReplaced();
}

void TElicomPluScaleListForm::SuspendDisplay() {
    grid_.Grid().SuspendRows();
}

void TElicomPluScaleListForm::ResumeDisplay() {
    grid_.Grid().RowsReplaced();
    grid_.ShowSortMark();
}

void TElicomPluScaleListForm::ShowError(std::string_view text) {
    tolvane::ShowError(Handle(), text);
}

std::unique_ptr<TPatience> TElicomPluScaleListForm::Watch(const TDatabaseCalls& calls) {
    return calls.CanEnd() ? std::make_unique<TDatabasePatience>(calls) : nullptr;
}

void TElicomPluScaleListForm::FillSearchMenu() {
    std::vector<TField> fields;
    for (std::size_t column = 0; column < Grid().ColumnCount(); ++column)
        fields.push_back(grid_.FieldOf(column));
    bars_.FillSearchMenu(fields);
}

void TElicomPluScaleListForm::RebuildSearchMenu() {
    FillSearchMenu();
    SearchMenuClick(0);
}

TListSearch TElicomPluScaleListForm::Search() {
    return {.form = *this, .session = session_, .grid = grid_, .bars = bars_};
}

void TElicomPluScaleListForm::SearchMenuClick(std::size_t column) {
    Search().SelectColumn(column);
}

void TElicomPluScaleListForm::SearchButtonClick() {
    Search().AskAndFindFirst();
}

void TElicomPluScaleListForm::RefreshBtnClick() {
    if (session_.IsBusy()) return;
    session_.Refresh();
    ShowEmptyList();
    grid_.ShowSortMark();
}

void TElicomPluScaleListForm::ColBtnClick() {
    if (session_.IsBusy()) return;
    store_.EnsureLayoutLoaded([this](const TIniDocument& document) {
        ApplyListLayout(document, *this, grid_);
        grid_.ShowSortMark();
    });
    {
        const TArticleSession::THold hold(session_);
        grid_.ChooseColumns(Handle());
    }
    // A window that was destroyed in the meantime has saved its layout itself.
    if (Handle() == nullptr) return;
    FillSearchMenu();
    store_.SaveLayout([this](TIniDocument& document) { WriteListLayout(*this, grid_, document); });
}

void TElicomPluScaleListForm::PrintBtnClick() {
    Print(kPrintTitle, PrintTime(SystemLocalClock().Now()), Grid().Handle());
}

// Every run: the menu items of all four have this one handler, which is named after the last.
void TElicomPluScaleListForm::NDeleteAllClick(TRunNumber number) {
    if (session_.IsBusy() || session_.Articles().RowCount() == 0) return;
    store_.EnsureScalesLoaded();
    {
        const TArticleSession::THold hold(session_);
        OpenRun(number);
    }
    // The list window was destroyed, and saved, while the run window was open; the check marks
    // changed after that.
    if (Handle() == nullptr) store_.SaveScales();
}

void TElicomPluScaleListForm::NSettingsClick() {
    if (session_.IsBusy()) return;
    store_.EnsureScalesLoaded();
    const TArticleSession::THold hold(session_);
    EditScales();
}

}  // namespace tolvane
