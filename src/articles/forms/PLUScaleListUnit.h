#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "articles/ArticleLoader.h"
#include "articles/ArticleSort.h"
#include "articles/ArticleTable.h"
#include "articles/forms/ArticleGrid.h"
#include "articles/forms/uWaitForm.h"
#include "config/ScaleTable.h"
#include "window/Form.h"
#include "window/Module.h"

namespace tolvane {

class TElicomPluScaleListForm;

// Run numbers of the menu, and of commands 1001 to 1004.
enum class TRunNumber { SaveMarked = 1, SaveAll = 2, DeleteMarked = 3, DeleteAll = 4 };

// What the list window needs from outside its folder. Functions that are not set do nothing.
struct TListServices {
    // The module's configuration file, as it is named for loading and for saving the scales.
    std::filesystem::path configurationFile;
    std::filesystem::path savedConfigurationFile;
    std::filesystem::path hostSettingsFile;
    // The window is being destroyed.
    std::function<void()> ended;
    // Opens the run window; returns when it is closed.
    std::function<void(TElicomPluScaleListForm&, TRunNumber)> openRun;
    std::function<void(TElicomPluScaleListForm&)> editScales;
    // Title and date-time text, code page 1251; the list view.
    std::function<void(std::string_view, std::string_view, HWND)> print;
};

// Command numbers of the window.
inline constexpr int kFirstRunCommand = 1000;  // + run number
inline constexpr int kSettingsCommand = 1005;
inline constexpr int kFirstSearchCommand = 2000;  // + column index

inline constexpr const wchar_t* kListFormClass = L"TElicomPluScaleListForm";
inline constexpr const char* kListFormName = "ElicomPluScaleListForm";

// The article list window, an MDI child. Frees itself when its window goes.
class TElicomPluScaleListForm : public TForm, private TLoadView {
public:
    // Makes and shows the window; by new only.
    TElicomPluScaleListForm(HWND mdiClient, TListServices services);
    ~TElicomPluScaleListForm() override;

    // Where the window's SQL runs: the client library's name (null: the usual ones) and the host's
    // handle cell. Before the first of the functions below; called again it does nothing unless the
    // host has another connection by now. Throws TDatabaseError.
    void Connect(const char* clientLibrary, void* handle);
    // Throws TDatabaseError.
    void ReadBaseCurrency();
    // Errors of these two are shown and not passed on.
    void CheckDatabase();
    void LoadArticles();
    void RebuildSearchMenu();
    void FocusGrid();
    // A load is going on, a window of the list's own is open in front of it, or somebody keeps the
    // articles: nothing may change now.
    bool IsBusy() const { return loading_ || dialogs_ > 0 || articles_.use_count() > 1; }
    // Ends the window after a failed start, whatever it is doing; its own windows go along. What is
    // left of a transaction is rolled back without a word.
    void CloseAtOnce();

    // mdPlues. While somebody keeps the pointer the articles stay as they are.
    std::shared_ptr<const TArticleTable> Articles() const { return articles_; }
    // In the order of marking.
    std::vector<TRowId> MarkedRows() const { return grid_.MarkedRows(); }
    std::optional<TRowId> CurrentRow() const { return grid_.CurrentRow(); }
    TScaleTable& Scales() { return scales_; }
    // Brings what this window has changed in the scales into the file. Throws TFileError, also when
    // the file has no room for an added scale; the rest is saved then.
    void SaveScales();
    const std::filesystem::path& ConfigurationFile() const { return services_.configurationFile; }
    TArticleGrid& Grid() { return grid_; }

    // Whether `text` (any case) is in a row of the field at or after the first row, or after the
    // current row; that row becomes the current one.
    bool FindInColumn(TField field, bool fromStart, std::string_view text);

protected:
    LRESULT HandleMessage(const TMessage& message) override;
    LRESULT OnNotify(NMHDR& header) override;
    void OnCommand(int id, int code, HWND control) override;
    bool OnKey(UINT virtualKey, HWND focus) override;
    void OnSize() override;
    bool CanClose(int result) override;
    void OnClose() override;
    void OnDestroy() override;

private:
    // The host's connection, as this window uses it.
    struct TDatabase {
        TDatabase(const char* clientLibrary, void* handle)
            : cell(handle),
              attachment(*static_cast<void**>(handle)),
              library(clientLibrary),
              transaction(library, handle),
              query(transaction) {}
        bool IsOf(void* handle) const {
            return handle == cell && *static_cast<void**>(handle) == attachment;
        }
        void* cell;
        void* attachment;  // what the cell held
        TClientLibrary library;
        TTransaction transaction;
        TQuery query;
    };
    // One of the list's own modal windows is open for the length of a block.
    class TDialogScope {
    public:
        explicit TDialogScope(int& dialogs) : dialogs_(dialogs) { ++dialogs_; }
        TDialogScope(const TDialogScope&) = delete;
        TDialogScope& operator=(const TDialogScope&) = delete;
        ~TDialogScope() { --dialogs_; }

    private:
        int& dialogs_;
    };

    // TLoadView
    void SuspendDisplay() override;
    void ResumeDisplay() override;
    void ShowError(std::string_view text) override;

    void MakeControls();
    void MakeTopBar();
    void MakeBottomBar();
    void MakeMenus();
    void MakeColumns(const TGridLayout& layout);
    TGridSource GridSource();
    void PaintBars() const;
    // What the window keeps from one opening to the next.
    void LoadSettings();
    // Throws TFileError when the configuration file could not be read at the opening and still
    // cannot: what it holds must not be taken for no scales.
    void NeedScales();
    // The same for the layout, which is taken over then.
    void NeedLayout();
    void ApplyLayout(const TIniDocument& document);
    void RestorePlace(const TWindowPlace& place);
    TGridLayout CurrentLayout() const;
    void SaveLayout() const;
    // Works on the file's document and writes it; with the scales as SaveScales says.
    void Save(bool scales, bool layout);
    void SelectSearchColumn(TField field);
    void FillSearchMenu();
    void SearchMenuClick(std::size_t column);
    void SearchButtonClick();
    void FindNext();
    void RefreshBtnClick();
    void ColBtnClick();
    void PrintBtnClick() const;
    void NDeleteAllClick(TRunNumber number);
    void NSettingsClick();
    void aDBGridTitleBtnClick(std::size_t column);
    void aDBGridColEnter(std::size_t column);
    void ShowSortMark();
    void DropMenu(HMENU menu, std::string_view button);
    TField FieldOfColumn(std::size_t column) const;
    // Tells when the server refuses to commit, unless the window is closed at once.
    void EndTransaction();
    // Saves the scale table and the layout, once, however the window ends.
    void EndWork();

    TListServices services_;
    TModuleHold hold_;
    std::shared_ptr<TArticleTable> articles_ = std::make_shared<TArticleTable>();
    TSortState sort_;
    std::unique_ptr<TWaitForm> wait_;
    std::unique_ptr<TDatabase> database_;
    std::unique_ptr<TArticleLoader> loader_;
    TScaleTable scales_;
    TScaleTable savedScales_;  // as this window loaded or last saved them
    // What could be read: only that is written when the window goes.
    bool layoutLoaded_ = false;
    bool scalesLoaded_ = false;
    TArticleGrid grid_;
    std::string hiddenRows_;  // see TGridLayout
    TOwnedMenu savePopup_;
    TOwnedMenu searchMenu_;
    TOwnedIcon scaleIcon_;
    TRegionalSettings regional_;
    TField searchField_ = TField::PLU_NUMB;
    std::string searchText_;
    bool loading_ = false;
    bool closingAtOnce_ = false;
    int dialogs_ = 0;         // own modal windows that are open
    bool suspended_ = false;  // the grid shows none of the articles
    bool ended_ = false;
};

}  // namespace tolvane
