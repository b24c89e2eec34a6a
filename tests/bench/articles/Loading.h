#pragma once

#include <string_view>

#include "articles/ArticleLoader.h"
#include "database/ClientLibrary.h"

namespace tolvane::bench {

// A list window without its windows. A failure of a load ends the program.
class TNoWindow : public TWaitView, public TLoadView {
public:
    void Show(int /*count*/) override {}
    void Step() override {}
    void Hide() override {}
    void SuspendDisplay() override {}
    void ResumeDisplay() override {}
    void ShowError(std::string_view text) override;
};

// The loader of a list window with the parts that it fills. `database` points to the attachment's
// handle.
class TLoading {
public:
    TLoading(const TClientLibrary& library, void* database);
    // What the list window does to open or to refresh its list: the article query, its rows copied
    // into the table, the promotion query and its pass.
    void Load() { loader_.LoadArticles(); }
    TArticleTable& Articles() { return articles_; }

private:
    TTransaction transaction_;
    TQuery query_;
    TArticleTable articles_;
    TSortState sort_;
    TNoWindow window_;
    TArticleLoader loader_;
};

}  // namespace tolvane::bench
