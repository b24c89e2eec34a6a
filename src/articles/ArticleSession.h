#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "articles/ArticleLoader.h"
#include "articles/ArticleSort.h"
#include "articles/ArticleTable.h"
#include "system/LocalTime.h"
#include "system/RegionalSettings.h"

namespace tolvane {

// The articles of one list window: the host's connection, the loaded table, its sort and its
// search. Interface thread.
class TArticleSession : private TLoadView {
public:
    // The view shows what a load reports; `regional` is asked now and at each load. Both and the
    // clock outlive the session.
    TArticleSession(TLoadView& view, const TLocalClock& clock,
                    std::function<TRegionalSettings()> regional);
    TArticleSession(const TArticleSession&) = delete;
    TArticleSession& operator=(const TArticleSession&) = delete;
    // Rolls back an open transaction.
    ~TArticleSession() override;

    // Sets where the SQL runs: the client library's name (null: the usual ones) and the host's
    // handle cell. Does nothing if the session already uses this cell and the cell still holds the
    // same connection. The cell must outlive the session; the wait window must outlive its last
    // load. Throws TDatabaseError; the session then has no connection.
    void Connect(const char* clientLibrary, void* handle, TWaitView& wait);
    // These two need a connection. ReadBaseCurrency throws TDatabaseError; CheckDatabase creates
    // the index that the article query needs, and shows a failure.
    void ReadBaseCurrency();
    void CheckDatabase() noexcept;
    // Empties and fills the table; see TArticleLoader. Shows a failure. Does nothing without a
    // connection or while the session is busy. Refresh forgets the sort first.
    void LoadArticles() noexcept;
    void Refresh() noexcept;

    bool IsLoading() const { return loading_; }
    // Whether nothing may change: a load is going on, or somebody holds the session or keeps the
    // articles.
    bool IsBusy() const { return loading_ || holds_ > 0 || articles_.use_count() > 1; }
    // Keeps a session busy for the length of a block.
    class THold {
    public:
        explicit THold(TArticleSession& session) : holds_(session.holds_) { ++holds_; }
        THold(const THold&) = delete;
        THold& operator=(const THold&) = delete;
        ~THold() { --holds_; }

    private:
        int& holds_;
    };

    // The table mdPlues.
    const TArticleTable& Articles() const { return *articles_; }
    // The articles do not change for as long as the caller keeps the pointer.
    std::shared_ptr<const TArticleTable> KeepArticles() const { return articles_; }
    // The number of rows to show: none from the start of a load until its rows are complete.
    std::size_t ShownRowCount() const { return suspended_ ? 0 : articles_->RowCount(); }
    // A cell's text in the grid; code page 1251.
    std::string DisplayText(TRowId row, TField field) const;

    const TSortState& Sort() const { return sort_; }
    // Does what a click on the field's title does: sorts by another field in ascending order, and
    // reverses the order of the same field. Returns whether there were rows to sort.
    bool ClickTitle(TField field);

    // The search looks for SearchText in SearchField, without regard to case; the text is in upper
    // case.
    TField SearchField() const { return searchField_; }
    const std::string& SearchText() const { return searchText_; }
    // Selects the field and keeps the text.
    void SelectSearchField(TField field) { searchField_ = field; }
    // A text of blanks counts as empty.
    void SetSearchText(std::string_view text);
    // The first row that has the text.
    std::optional<TRowId> FindFirst() const { return FindFrom(0); }
    // The next row after `current` that has the text, or else the first one.
    std::optional<TRowId> FindNext(std::optional<TRowId> current) const;

    // After a failed start: the session may end during a load, and End shows no error.
    void Abandon() { abandoned_ = true; }
    bool IsAbandoned() const { return abandoned_; }
    // Whether the window may close now.
    bool MayEnd() const { return !loading_ || abandoned_; }
    // Closes the query and commits an open transaction; an abandoned session rolls it back. Shows a
    // failure unless the session is abandoned. Does nothing during a load: the load ends its own
    // transaction.
    void End() noexcept;

private:
    struct TConnection;

    // TLoadView: what the loader reports.
    void SuspendDisplay() override;
    void ResumeDisplay() override;
    void ShowError(std::string_view text) override;

    std::optional<TRowId> FindFrom(std::size_t index) const;
    // For as long as the connection is used; null without one.
    std::unique_ptr<TPatience> Patience() noexcept;

    TLoadView& view_;
    const TLocalClock& clock_;
    std::function<TRegionalSettings()> askRegional_;
    TRegionalSettings regional_;
    std::shared_ptr<TArticleTable> articles_ = std::make_shared<TArticleTable>();
    TSortState sort_;
    std::unique_ptr<TConnection> connection_;
    TField searchField_ = TField::PLU_NUMB;
    std::string searchText_;
    bool loading_ = false;
    bool suspended_ = false;
    bool abandoned_ = false;
    int holds_ = 0;
};

}  // namespace tolvane
