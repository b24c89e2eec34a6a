// Prints what loading articles takes beside fetching the rows of the same query and throwing them
// away, for 1,000, 10,000 and 100,000 articles or for the numbers given, and the memory per
// article. Needs the environment of the integration tests: TOLVANE_FB_SERVER, TOLVANE_FB_PASSWORD,
// TOLVANE_FB_DIR.

#include <cstdio>
#include <ctime>
#include <exception>
#include <string>
#include <vector>

#include "articles/ArticleQueries.h"
#include "tests/bench/articles/BareFetch.h"
#include "tests/bench/articles/BigShop.h"
#include "tests/bench/articles/Loading.h"
#include "tests/bench/measure/Quick.h"
#include "tests/bench/measure/Sides.h"
#include "tests/support/database/TestDatabase.h"

namespace tolvane::bench {
namespace {

constexpr int kFewArticles = 1000;

int RoundsFor(int articles, bool quick) {
    if (quick) return 3;
    if (articles <= kFewArticles) return 41;
    if (articles <= 10 * kFewArticles) return 15;
    return articles <= 100 * kFewArticles ? 7 : 3;
}

// Of this process, in milliseconds.
double ProcessorTime() {
    return static_cast<double>(std::clock()) * 1000 / CLOCKS_PER_SEC;
}

// Measures the time that passes and the time of this process's processor.
template <class Body>
void Measure(const Body& body, std::vector<double>& passed, std::vector<double>& processor) {
    const double before = ProcessorTime();
    passed.push_back(MillisecondsOf(body));
    processor.push_back(ProcessorTime() - before);
}

void CompareLoads(int articles, int rounds) {
    test::TTestDatabase database(test::Schema() + BigShopScript(articles));
    TLoading loading(test::Library(), database.Host().Handle());
    const std::string text = ArticleQuery();
    std::size_t bareRows = 0;
    const auto bare = [&] { bareRows = BareFetch(database.Host().Handle(), text); };
    bare();  // the first one reads from the disk
    TRounds passed;
    TRounds processor;
    for (int round = 0; round < rounds; ++round) {
        Measure([&] { loading.Load(); }, passed.ours, processor.ours);
        Measure(bare, passed.other, processor.other);
    }
    std::printf("%d articles\n\n", articles);
    PrintSide("LoadArticles", "ms", passed.ours);
    PrintSide("bare fetch of the article query", "ms", passed.other);
    PrintRatio(passed, articles <= kFewArticles ? 1.2 : 1.1);
    PrintSide("LoadArticles, processor time", "ms", processor.ours);
    PrintSide("bare fetch, processor time", "ms", processor.other);
    PrintRatio(processor);
    const TArticleTable& table = loading.Articles();
    std::printf("%-44s %9zu bytes, at most 270 from 100,000 on\n\n", "memory per article",
                table.MemoryUsed() / table.RowCount());
    if (table.RowCount() != bareRows)
        std::printf("%zu rows, but %zu by the bare fetch\n", table.RowCount(), bareRows);
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    try {
        const bool quick = tolvane::bench::IsQuick(count, arguments);
        for (const int articles :
             tolvane::bench::Sizes(count, arguments, {1000, 10000, 100000}, {1000, 5000}))
            tolvane::bench::CompareLoads(articles, tolvane::bench::RoundsFor(articles, quick));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
