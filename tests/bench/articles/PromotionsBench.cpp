// Prints what marking promoted articles takes beside fetching their promotions, with one of a
// hundred to each of 100,000 articles in a promotion. Needs the environment of the integration
// tests: TOLVANE_FB_SERVER, TOLVANE_FB_PASSWORD, TOLVANE_FB_DIR.

#include <cstdio>
#include <exception>
#include <string>

#include "articles/ArticleQueries.h"
#include "articles/PromotionPass.h"
#include "tests/bench/articles/BigShop.h"
#include "tests/bench/articles/Loading.h"
#include "tests/bench/measure/Quick.h"
#include "tests/bench/measure/Sides.h"
#include "tests/support/database/TestDatabase.h"

namespace tolvane::bench {
namespace {

void Run(int articles, int promotionEvery, int rounds) {
    test::TTestDatabase database(test::Schema() + BigShopScript(articles, promotionEvery));
    TLoading loading(test::Library(), database.Host().Handle());
    loading.Load();
    TTransaction transaction(test::Library(), database.Host().Handle());
    TQuery query(transaction);
    transaction.Start();
    query.SetText(std::string(PromotionQuery()));
    const auto fetch = [&] {
        query.Open();
        query.FetchAll();
    };
    fetch();
    const TLocalDateTime now = SystemLocalClock().Now();
    std::size_t marked = 0;
    TRounds times;
    for (int round = 0; round < rounds; ++round) {
        times.ours.push_back(MillisecondsOf(
            [&] { marked = MarkPromotedArticles(query, loading.Articles(), now, {}).size(); }));
        times.other.push_back(MillisecondsOf(fetch));
    }
    std::printf("%zu promotions of %d articles\n\n", marked, articles);
    PrintSide("marking the promoted articles", "ms", times.ours);
    PrintSide("fetching the promotions", "ms", times.other);
    PrintRatio(times);
    std::vector<double> each;
    for (const double time : times.ours)
        each.push_back(time * 1000 / static_cast<double>(marked));
    PrintSide("for each promotion", "us", each);
    std::printf("\n");
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    try {
        const bool quick = tolvane::bench::IsQuick(count, arguments);
        const int articles = quick ? 5000 : 100000;
        for (const int every : {100, 10, 1})
            tolvane::bench::Run(articles, every, quick ? 3 : 7);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
