// Prints both sides of the ratio that a load of articles has to hold, and their memory. Needs the
// environment of the integration tests: TOLVANE_FB_SERVER, TOLVANE_FB_PASSWORD, TOLVANE_FB_DIR.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>

#include "articles/ArticleLoader.h"
#include "articles/ArticleQueries.h"
#include "tests/bench/articles/BareFetch.h"
#include "tests/bench/articles/BigShop.h"
#include "tests/bench/measure/Sides.h"
#include "tests/support/database/TestDatabase.h"
#include "text/Cp1251.h"

namespace tolvane::bench {
namespace {

constexpr int kArticles = 100000;
constexpr int kRounds = 5;

class TNoView : public TWaitView, public TLoadView {
public:
    void Show(int) override {}
    void Step() override {}
    void Hide() override {}
    void SuspendDisplay() override {}
    void ResumeDisplay() override {}
    void ShowError(std::string_view text) override {
        std::fprintf(stderr, "%s\n", ToUtf8(text).c_str());
        std::exit(1);
    }
};

void Run() {
    test::TTestDatabase database(test::Schema() + BigShopScript(kArticles));
    TTransaction transaction(test::Library(), database.Host().Handle());
    TQuery query(transaction);
    TArticleTable articles;
    TSortState sort;
    TNoView view;
    TArticleLoader loader({transaction, query, articles, sort, SystemLocalClock(),
                           [] { return TRegionalSettings(); }, view, view});
    const std::string text = ArticleQuery();
    std::size_t bareRows = 0;
    Compare({"LoadArticles, 100,000 articles", [&] { loader.LoadArticles(); }},
            {"bare fetch of the same query",
             [&] { bareRows = BareFetch(database.Host().Handle(), text); }},
            1.3, kRounds);
    std::printf("%-34s %9zu   bare %zu\n", "rows", articles.RowCount(), bareRows);
    std::printf("%-34s %9zu   at most 400\n", "bytes per article",
                articles.MemoryUsed() / articles.RowCount());
}

}  // namespace
}  // namespace tolvane::bench

int main() {
    try {
        tolvane::bench::Run();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
