#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

#include "articles/ArticleSession.h"
#include "articles/forms/ListBars.h"
#include "articles/forms/ListGrid.h"
#include "articles/forms/ListSearch.h"
#include "articles/forms/uWaitForm.h"
#include "config/ConfigurationStore.h"
#include "config/RunNumber.h"
#include "window/Form.h"

namespace tolvane {

inline constexpr const wchar_t* kListFormClass = L"TElicomPluScaleListForm";
inline constexpr const char* kListFormName = "ElicomPluScaleListForm";

// The article list window, an MDI child. Its session and its store make the decisions; a derived
// class connects it with the rest of the module. Interface thread.
class TElicomPluScaleListForm : public TForm, private TLoadView {
public:
    // Gives the session the host's connection, see TArticleSession::Connect. Must come before any
    // other use of the session. Throws TDatabaseError.
    void Connect(const char* clientLibrary, void* handle);
    TArticleSession& Session() { return session_; }
    // Loads the articles; see TArticleSession.
    void LoadArticles();
    // Fills the search menu in the order of the columns and selects the first one.
    void RebuildSearchMenu();
    void FocusGrid();
    // Closes the window and its dialogs after a failed start, also during a load. Rolls back an
    // open transaction and shows no error for it.
    void CloseAtOnce();

protected:
    // The module's configuration file, as ModuleConfigurationFile gives it, and the host's own
    // settings.
    TElicomPluScaleListForm(std::filesystem::path configurationFile,
                            std::filesystem::path hostSettings);
    // Makes and shows the window and reads the settings. From then on the object, which must have
    // been made by new, deletes itself when its window is destroyed. The derived class calls this
    // at the end of its constructor, because the window calls the functions below. Throws
    // TWindowError.
    void Open(HWND mdiClient);

    TConfigurationStore& Store() { return store_; }
    const TArticleGrid& Grid() const { return grid_.Grid(); }

    // Shows the run window and returns when it is closed.
    virtual void OpenRun(TRunNumber number) = 0;
    // Lets the user edit the scales, and saves them.
    virtual void EditScales() = 0;
    // Prints the list view. The texts are in code page 1251.
    virtual void Print(std::string_view title, std::string_view dateTime, HWND grid) = 0;
    // Is called once, while the window is being destroyed and after it has saved.
    virtual void Ended() = 0;

    LRESULT HandleMessage(const TMessage& message) override;
    LRESULT OnNotify(NMHDR& header) override;
    void OnCommand(int id, int code, HWND control) override;
    bool OnKey(UINT virtualKey, HWND focus) override;
    void OnSize() override;
    bool CanClose(int result) override;
    void OnClose() override;
    void OnDestroy() override;
    void OnDpiChange() override;

private:
    // TLoadView
    void SuspendDisplay() override;
    void ResumeDisplay() override;
    void ShowError(std::string_view text) override;
    std::unique_ptr<TPatience> Watch(const TDatabaseCalls& calls) override;

    void MakeControls();
    void FillSearchMenu();
    TListSearch Search();
    void ShowEmptyList();
    // Saves the scales and the layout, however the window ends; only the first call saves.
    void SaveAndShowFailure();

    void SearchMenuClick(std::size_t column);
    void SearchButtonClick();
    void RefreshBtnClick();
    void ColBtnClick();
    void PrintBtnClick();
    void NDeleteAllClick(TRunNumber number);
    void NSettingsClick();

    TConfigurationStore store_;
    std::unique_ptr<TWaitForm> wait_;
    TArticleSession session_;
    TListGrid grid_;
    TListBars bars_;
};

}  // namespace tolvane
