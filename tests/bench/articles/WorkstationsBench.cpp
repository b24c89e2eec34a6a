// Prints what loading articles on 20 workstations at once takes beside as many bare fetches at once
// from the same server. Needs the environment of the integration tests: TOLVANE_FB_SERVER,
// TOLVANE_FB_PASSWORD, TOLVANE_FB_DIR.

#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <thread>
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

constexpr double kAtMost = 1.1;

struct TWorkstation {
    std::unique_ptr<test::TAttachment> attachment;
    std::unique_ptr<TLoading> loading;
};

using TWorkstations = std::vector<TWorkstation>;

void AtOnce(TWorkstations& workstations, const std::function<void(TWorkstation&)>& work) {
    std::vector<std::jthread> threads;
    for (TWorkstation& each : workstations)
        threads.emplace_back([&] { work(each); });
}

void Run(std::size_t count, int articles, int rounds) {
    test::TTestDatabase database(test::Schema() + BigShopScript(articles));
    TWorkstations workstations(count);
    for (TWorkstation& each : workstations) {
        each.attachment = database.Attach();
        each.loading = std::make_unique<TLoading>(test::Library(), each.attachment->Handle());
    }
    const std::string text = ArticleQuery();
    std::printf("%zu workstations, %d articles\n\n", count, articles);
    Compare({"LoadArticles at once",
             [&] { AtOnce(workstations, [](TWorkstation& each) { each.loading->Load(); }); }},
            {"bare fetches of the article query at once",
             [&] {
                 AtOnce(workstations,
                        [&](TWorkstation& each) { BareFetch(each.attachment->Handle(), text); });
             }},
            kAtMost, rounds);
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    try {
        const bool quick = tolvane::bench::IsQuick(count, arguments);
        tolvane::bench::Run(quick ? 5 : 20, quick ? 1000 : 50000, quick ? 2 : 1);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
