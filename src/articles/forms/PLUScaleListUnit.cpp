#include "articles/forms/PLUScaleListUnit.h"

#include <exception>
#include <utility>

#include "articles/ArticleSearch.h"
#include "articles/PrintTime.h"
#include "articles/forms/ColListUnit.h"
#include "system/LocalTime.h"
#include "window/InputBox.h"
#include "window/MessageBoxes.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

constexpr int kClientWidth = 605;
constexpr int kClientHeight = 305;
constexpr int kMinWidth = 520;
constexpr int kMinHeight = 305;
constexpr std::string_view kCaption = "Списък ТЕГЛОВИ артикули"_cp1251;
constexpr std::string_view kPrintTitle = "Теглови артикули"_cp1251;

}  // namespace

TElicomPluScaleListForm::TElicomPluScaleListForm(HWND mdiClient, TListServices services)
    : services_(std::move(services)),
      hold_(GetAncestor(mdiClient, GA_ROOT)),
      grid_(Dpi(), GridSource()),
      regional_(SystemRegionalSettings()) {
    TFormOptions options;
    options.className = kListFormClass;
    options.name = kListFormName;
    options.caption = kCaption;
    options.style = WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_CLIPCHILDREN;
    options.clientWidth = kClientWidth;
    options.clientHeight = kClientHeight;
    options.minWidth = kMinWidth;
    options.minHeight = kMinHeight;
    MakeMdiChild(options, mdiClient);
    MakeControls();
    LoadSettings();
    FreeAfterDestroy();
}

TElicomPluScaleListForm::~TElicomPluScaleListForm() = default;

void TElicomPluScaleListForm::FocusGrid() {
    SetFocus(grid_.Handle());
}

LRESULT TElicomPluScaleListForm::HandleMessage(const TMessage& message) {
    switch (message.id) {
        case WM_MEASUREITEM: {
            auto& measure = *reinterpret_cast<MEASUREITEMSTRUCT*>(message.lParam);
            if (measure.CtlType != ODT_LISTVIEW) break;
            measure.itemHeight = static_cast<UINT>(grid_.RowHeight());
            return TRUE;
        }
        case WM_DRAWITEM: {
            const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(message.lParam);
            if (item.CtlType != ODT_LISTVIEW) break;
            grid_.HandleDraw(item);
            return TRUE;
        }
        case WM_PAINT:
            PaintBars();
            return 0;
        default:
            break;
    }
    return TForm::HandleMessage(message);
}

LRESULT TElicomPluScaleListForm::OnNotify(NMHDR& header) {
    return grid_.HandleNotify(header).value_or(0);
}

void TElicomPluScaleListForm::OnCommand(int id, int /*code*/, HWND /*control*/) {
    if (id > kFirstRunCommand && id < kSettingsCommand)
        NDeleteAllClick(static_cast<TRunNumber>(id - kFirstRunCommand));
    else if (id == kSettingsCommand)
        NSettingsClick();
    else if (id >= kFirstSearchCommand)
        SearchMenuClick(static_cast<std::size_t>(id - kFirstSearchCommand));
}

// The bars' buttons take the focus here, so the grid's keys work on them as well.
bool TElicomPluScaleListForm::OnKey(UINT virtualKey, HWND focus) {
    const bool control = IsKeyDown(VK_CONTROL);
    const bool shift = IsKeyDown(VK_SHIFT);
    if (IsKeyDown(VK_MENU)) return false;
    if (virtualKey == 'F' && control && !shift) {
        SearchButtonClick();
        return true;
    }
    if (virtualKey == VK_RETURN && control && !shift && focus == grid_.Handle()) {
        grid_.ClickCurrentTitle();
        return true;
    }
    if (control || shift) return false;
    if (virtualKey == VK_F3) {
        FindNext();
        return true;
    }
    if (virtualKey == VK_F5) {
        RefreshBtnClick();
        return true;
    }
    return focus == grid_.Handle() && grid_.HandleKey(virtualKey);
}

bool TElicomPluScaleListForm::CanClose(int /*result*/) {
    return !loading_ || closingAtOnce_;
}

// A load that is still going on ends later, without the window.
void TElicomPluScaleListForm::CloseAtOnce() {
    closingAtOnce_ = true;
    Close();
}

void TElicomPluScaleListForm::OnClose() {
    // A load that still runs ends its transaction itself.
    if (database_ && !loading_) EndTransaction();
    EndWork();
}

void TElicomPluScaleListForm::EndTransaction() {
    try {
        database_->query.Close();
        if (!database_->transaction.IsActive()) return;
        if (closingAtOnce_)
            database_->transaction.Rollback();
        else
            database_->transaction.Commit();
    } catch (const std::exception& error) {
        // What failed the start has been told already, and is often the same dead connection.
        if (!closingAtOnce_) ShowError(error.what());
    }
}

// A window that goes with the host's main window leaves the transaction to be rolled back: the host
// may have closed its connection already.
void TElicomPluScaleListForm::OnDestroy() {
    EndWork();
    // A load that still runs uses the wait window; it goes with this object then.
    if (!loading_) wait_.reset();
    if (services_.ended) services_.ended();
}

void TElicomPluScaleListForm::Connect(const char* clientLibrary, void* handle) {
    if (database_ && database_->IsOf(handle)) return;
    if (!wait_) wait_ = std::make_unique<TWaitForm>(Handle());
    loader_.reset();
    database_.reset();
    database_ = std::make_unique<TDatabase>(clientLibrary, handle);
    loader_ = std::make_unique<TArticleLoader>(
        TArticleLoader::TParts{database_->transaction, database_->query, *articles_, sort_,
                               SystemLocalClock(), &SystemRegionalSettings, *wait_, *this});
}

void TElicomPluScaleListForm::ReadBaseCurrency() {
    loader_->ReadBaseCurrency();
}

void TElicomPluScaleListForm::CheckDatabase() {
    loader_->CheckDatabase();
}

void TElicomPluScaleListForm::LoadArticles() {
    if (!loader_ || IsBusy()) return;
    loading_ = true;
    const std::unique_ptr<bool, void (*)(bool*)> endLoading(
        &loading_, [](bool* loading) { *loading = false; });
    regional_ = SystemRegionalSettings();
    loader_->LoadArticles();
}

void TElicomPluScaleListForm::SuspendDisplay() {
    suspended_ = true;
    grid_.RowsReplaced();
}

void TElicomPluScaleListForm::ResumeDisplay() {
    suspended_ = false;
    grid_.RowsReplaced();
    ShowSortMark();
}

void TElicomPluScaleListForm::ShowError(std::string_view text) {
    tolvane::ShowError(Handle(), text);
}

TField TElicomPluScaleListForm::FieldOfColumn(std::size_t column) const {
    return static_cast<TField>(grid_.KeyOf(column));
}

void TElicomPluScaleListForm::aDBGridTitleBtnClick(std::size_t column) {
    if (IsBusy()) return;
    const TField field = FieldOfColumn(column);
    sort_.ClickTitle(field);
    if (articles_->RowCount() > 0) {
        const std::optional<TRowId> current = grid_.CurrentRow();
        SortArticles(*articles_, field, sort_.ascending);
        grid_.RowsReordered();
        if (current) grid_.SetCurrentRow(*current);
    }
    ShowSortMark();
}

void TElicomPluScaleListForm::ShowSortMark() {
    std::optional<std::size_t> marked;
    for (std::size_t column = 0; column < grid_.ColumnCount(); ++column) {
        if (FieldOfColumn(column) == sort_.field) marked = column;
    }
    grid_.SetSortMark(marked, sort_.ascending);
}

void TElicomPluScaleListForm::SelectSearchColumn(TField field) {
    searchField_ = field;
    SetWindowText(Control("SearchButton"), std::string("Търси по: "_cp1251) +
                                               std::string(FieldInfo(field).label) +
                                               std::string(" (F3)"));
    InvalidateRect(Control("SearchButton"), nullptr, TRUE);
}

void TElicomPluScaleListForm::SearchMenuClick(std::size_t column) {
    if (column >= grid_.ColumnCount()) return;
    searchText_.clear();
    SelectSearchColumn(FieldOfColumn(column));
}

// The search text is kept.
void TElicomPluScaleListForm::aDBGridColEnter(std::size_t column) {
    SelectSearchColumn(FieldOfColumn(column));
}

void TElicomPluScaleListForm::SearchButtonClick() {
    if (IsBusy()) return;
    std::optional<std::string> answer;
    {
        const TDialogScope open(dialogs_);
        answer = AskText(Handle(), WindowText(Control("SearchButton")), "Стойност"_cp1251);
    }
    if (Handle() == nullptr) return;
    searchText_ = answer.value_or(std::string());
    if (Trim(searchText_).empty()) {
        searchText_.clear();
        return;
    }
    searchText_ = UpperCase(searchText_);
    if (FindInColumn(searchField_, true, searchText_))
        FocusGrid();
    else
        ShowInformation(Handle(), "Не е намерен артикул."_cp1251);
}

void TElicomPluScaleListForm::FindNext() {
    if (searchText_.empty())
        SearchButtonClick();
    else if (!FindInColumn(searchField_, false, searchText_))
        FindInColumn(searchField_, true, searchText_);
}

bool TElicomPluScaleListForm::FindInColumn(TField field, bool fromStart, std::string_view text) {
    if (articles_->RowCount() == 0) return false;
    const std::optional<TRowId> current = grid_.CurrentRow();
    const std::size_t from = fromStart || !current ? 0 : articles_->PlaceOf(*current) + 1;
    const std::optional<std::size_t> found =
        tolvane::FindInColumn(*articles_, field, from, text, regional_);
    if (found) grid_.SetCurrentRow(articles_->RowAt(*found));
    return found.has_value();
}

void TElicomPluScaleListForm::RefreshBtnClick() {
    if (IsBusy()) return;
    sort_.Clear();
    LoadArticles();
    ShowSortMark();
}

void TElicomPluScaleListForm::ColBtnClick() {
    if (IsBusy()) return;
    NeedLayout();
    {
        const TDialogScope open(dialogs_);
        ChooseColumns(Handle(), grid_, hiddenRows_);
    }
    // A window that went meanwhile has saved itself.
    if (Handle() == nullptr) return;
    FillSearchMenu();
    SaveLayout();
}

void TElicomPluScaleListForm::PrintBtnClick() const {
    if (services_.print)
        services_.print(kPrintTitle, PrintTime(SystemLocalClock().Now()), grid_.Handle());
}

void TElicomPluScaleListForm::NDeleteAllClick(TRunNumber number) {
    if (!services_.openRun || IsBusy() || articles_->RowCount() == 0) return;
    NeedScales();
    {
        const TDialogScope open(dialogs_);
        services_.openRun(*this, number);
    }
    // The window went while the run was open; the check marks have come back since.
    if (Handle() == nullptr) SaveScales();
}

void TElicomPluScaleListForm::NSettingsClick() {
    if (!services_.editScales || IsBusy()) return;
    NeedScales();
    const TDialogScope open(dialogs_);
    services_.editScales(*this);
}

}  // namespace tolvane
