#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "articles/ArticleSort.h"
#include "articles/ArticleTable.h"
#include "articles/PromotionPass.h"
#include "database/DatabaseCalls.h"
#include "database/Query.h"
#include "database/Transaction.h"
#include "system/LocalTime.h"
#include "system/RegionalSettings.h"

namespace tolvane {

// The wait window, as a load uses it. Hide may be called while it is not shown.
class TWaitView {
public:
    virtual ~TWaitView() = default;
    // A bar for `count` steps; without a bar when count is below 1.
    virtual void Show(int count) = 0;
    virtual void Step() = 0;
    virtual void Hide() = 0;
};

// Lives while the interface thread may wait for the database.
class TPatience {
public:
    TPatience() = default;
    TPatience(const TPatience&) = delete;
    TPatience& operator=(const TPatience&) = delete;
    virtual ~TPatience() = default;
};

// What a load reports to the list window.
class TLoadView {
public:
    virtual ~TLoadView() = default;
    // The table is empty; show no rows until ResumeDisplay. Either function may be called twice in
    // a row.
    virtual void SuspendDisplay() = 0;
    // The rows are complete, or an error has ended the load early. The first row is the current
    // one.
    virtual void ResumeDisplay() = 0;
    // A box with an error sign and an OK button; code page 1251. May throw only when memory is too
    // short for the text; it is then called once more, with kOutOfMemory.
    virtual void ShowError(std::string_view text) = 0;
    // Watches these calls as long as the result lives. Null, or an exception: nobody does.
    virtual std::unique_ptr<TPatience> Watch(const TDatabaseCalls& /*calls*/) { return nullptr; }
};

// Fills the article table from the host's database. Interface thread. The query and the transaction
// belong to the list window; the query runs on that transaction.
class TArticleLoader {
public:
    struct TParts {
        TTransaction& transaction;
        TQuery& query;
        TArticleTable& articles;
        TSortState& sort;
        const TLocalClock& clock;
        std::function<TRegionalSettings()> regional;  // asked anew at each load
        TWaitView& wait;
        TLoadView& view;
        // The caller starts and ends the transaction, so that one reading is one moment's picture.
        // Not with CheckDatabase.
        bool inCallersTransaction = false;
    };
    // All parts outlive the loader.
    explicit TArticleLoader(TParts parts);

    // Sets BaseCurrency, empty when there is none. Throws TDatabaseError.
    void ReadBaseCurrency();
    const std::string& BaseCurrency() const { return baseCurrency_; }
    // Creates the index that the article query needs when it is missing. A failure is shown.
    void CheckDatabase() noexcept;
    // Empties and fills the table and marks the promotions. A failure is shown; after one of the
    // database the table is empty, after a value that does not convert the rows before it stay.
    // When there are no articles, it ends early: the display stays suspended, the query open and
    // the transaction active.
    void LoadArticles() noexcept;
    // The same, but a failure is thrown instead of shown, and nothing is put away.
    void FillTable();
    // The promotions that the latest filling has marked.
    const std::vector<TActivePromotion>& Promotions() const { return promotions_; }

private:
    void CommitIfActive();
    void Restart();
    void CreateMissingIndex();
    // False when there are no articles.
    bool LoadRows(const TRegionalSettings& regional);
    // How many rows there were, and why not all are in the table: the first one that did not
    // convert and those behind it are not.
    struct TCopied {
        std::size_t rows = 0;
        std::exception_ptr failure;
    };
    TCopied CopyRows(const TRegionalSettings& regional);
    void MarkPromotions(const TRegionalSettings& regional);
    void Abandon() noexcept;

    TParts parts_;
    std::string baseCurrency_;
    std::vector<TActivePromotion> promotions_;
};

}  // namespace tolvane
