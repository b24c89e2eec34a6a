// Prints both sides of each ratio that the article table has to hold. Needs the environment of the
// integration tests: TOLVANE_FB_SERVER, TOLVANE_FB_PASSWORD, TOLVANE_FB_DIR.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "articles/ArticleLoader.h"
#include "articles/ArticleQueries.h"
#include "articles/ArticleSearch.h"
#include "tests/bench/articles/BareFetch.h"
#include "tests/bench/articles/BigShop.h"
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

double MillisecondsOf(const std::function<void()>& body) {
    const auto start = std::chrono::steady_clock::now();
    body();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

struct TSide {
    std::string_view name;
    std::function<void()> prepare;
    std::function<void()> run;
};

// Takes the best of several rounds of each side, in turns.
void Compare(const TSide& ours, const TSide& other, double atMost) {
    double best[2] = {std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    for (int round = 0; round < kRounds; ++round) {
        const TSide* sides[2] = {&ours, &other};
        for (int i = 0; i < 2; ++i) {
            sides[i]->prepare();
            best[i] = std::min(best[i], MillisecondsOf(sides[i]->run));
        }
    }
    std::printf("%-34s %9.2f ms\n%-34s %9.2f ms   ratio %.2f, at most %.1f\n", ours.name.data(),
                best[0], other.name.data(), best[1], best[0] / best[1], atMost);
}

std::vector<std::string> TextsOf(const TArticleTable& articles, TField field) {
    std::vector<std::string> texts;
    for (const TRowId row : articles.Order())
        texts.emplace_back(articles.Text(row, field));
    return texts;
}

void CompareSort(TArticleTable& articles) {
    std::vector<TRowId> shuffled = articles.Order();
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(1));
    articles.SetOrder(shuffled);
    const std::vector<std::string> unsorted = TextsOf(articles, TField::PLU_NAME);
    std::vector<std::string> texts;
    Compare({"sort by name", [&] { articles.SetOrder(shuffled); },
             [&] { SortArticles(articles, TField::PLU_NAME, true); }},
            {"std::stable_sort of the names", [&] { texts = unsorted; },
             [&] { std::stable_sort(texts.begin(), texts.end()); }},
            1.5);
}

void CompareSearch(TArticleTable& articles) {
    SortArticles(articles, TField::PLU_NUMB, true);
    const std::vector<std::string> texts = TextsOf(articles, TField::PLU_NAME);
    constexpr std::string_view kNowhere = "тикулище"_cp1251;
    std::size_t found = 0;
    Compare({"search of names without a match", [] {},
             [&] { found += FindInColumn(articles, TField::PLU_NAME, 0, kNowhere, {}) ? 1 : 0; }},
            {"std::string::find in the names", [] {},
             [&] {
                 for (const std::string& text : texts)
                     found += text.find(kNowhere) != std::string::npos ? 1 : 0;
             }},
            3);
    if (found != 0) std::printf("a match where there is none\n");
}

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
    Compare({"LoadArticles, 100,000 articles", [] {}, [&] { loader.LoadArticles(); }},
            {"bare fetch of the same query", [] {},
             [&] { bareRows = BareFetch(database.Host().Handle(), text); }},
            1.3);
    std::printf("%-34s %9zu   bare %zu\n", "rows", articles.RowCount(), bareRows);
    std::printf("%-34s %9zu   at most 400\n", "bytes per article",
                articles.MemoryUsed() / articles.RowCount());
    CompareSort(articles);
    CompareSearch(articles);
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
