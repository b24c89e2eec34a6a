// Prints what making the article lines of 20 scales takes beside loading the articles. Needs the
// environment of the integration tests: TOLVANE_FB_SERVER, TOLVANE_FB_PASSWORD, TOLVANE_FB_DIR.

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "config/ScaleTable.h"
#include "tests/bench/articles/BigShop.h"
#include "tests/bench/articles/Loading.h"
#include "tests/bench/measure/Quick.h"
#include "tests/bench/measure/Sides.h"
#include "tests/support/database/TestDatabase.h"
#include "upload/ArticleLineBuilder.h"

namespace tolvane::bench {
namespace {

constexpr double kAtMost = 0.1;

// Returns how many lines there are.
std::size_t MakeLines(const TArticleTable& articles) {
    const TArticleLineBuilder builder(articles, {}, {}, [](std::string_view) {});
    std::vector<std::string> lines;
    std::size_t count = 0;
    for (int scale = 1; scale <= kScaleSlots; ++scale) {
        builder.Build(articles.Order(), scale, lines);
        count += lines.size();
    }
    return count;
}

void Run(int count, int rounds) {
    test::TTestDatabase database(test::Schema() + BigShopScript(count));
    TLoading loading(test::Library(), database.Host().Handle());
    loading.Load();
    TArticleTable articles = loading.Articles();
    const auto compare = [&](std::string_view name, std::optional<double> atMost) {
        std::size_t lines = 0;
        Compare({name, [&] { lines = MakeLines(articles); }},
                {"LoadArticles", [&] { loading.Load(); }}, atMost, rounds);
        std::printf("%zu lines of %zu articles\n\n", lines, articles.RowCount());
    };
    compare("lines for 20 scales, two scales an article", kAtMost);
    for (const TRowId row : articles.Order())
        articles.SetText(row, TField::PLU_FORSCALES, "0");
    compare("lines for 20 scales, each article for all", {});
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    try {
        const bool quick = tolvane::bench::IsQuick(count, arguments);
        tolvane::bench::Run(quick ? 5000 : 100000, quick ? 3 : 5);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
