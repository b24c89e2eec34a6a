// Prints the time and the memory of a load beside those of a program in Free Pascal that fetches
// the rows of the same query, each in a process of its own, for 1,000, 10,000 and 100,000 articles
// or for the numbers given. Needs Debian's fp-compiler and
// fp-units-db when it is built, and the environment of the integration tests: TOLVANE_FB_SERVER,
// TOLVANE_FB_PASSWORD, TOLVANE_FB_DIR.

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "articles/ArticleQueries.h"
#include "tests/bench/articles/BigShop.h"
#include "tests/bench/articles/OtherPrograms.h"
#include "tests/bench/measure/Quick.h"
#include "tests/bench/measure/Sides.h"

namespace tolvane::bench {
namespace {

constexpr double kAtMost = 1;
constexpr double kMebibyte = 1 << 20;

void CompareWithPascal(int articles, int rounds) {
    const test::TTestDatabase database(test::Schema() + BigShopScript(articles));
    const std::filesystem::path queryFile = test::Server().folder / "bench-query.sql";
    std::ofstream(queryFile, std::ios::binary) << ArticleQuery();
    std::vector<std::string> fetch = WithLogin({TOLVANE_PASCAL_FETCH}, database);
    fetch.push_back(queryFile.string());
    const std::vector<std::string> load = WithLogin({TOLVANE_LOAD_ONCE}, database);

    TRounds times;
    TRounds memory;
    for (int round = 0; round < rounds; ++round) {
        const TLoadOnce ours(NumbersOf(load));
        const std::vector<double> pascal = NumbersOf(fetch);
        times.ours.push_back(ours.milliseconds);
        times.other.push_back(pascal.at(0));
        memory.ours.push_back(ours.most / kMebibyte);
        memory.other.push_back(pascal.at(1) / kMebibyte);
        if (pascal.at(2) != articles) std::printf("%.0f rows in Free Pascal\n", pascal.at(2));
    }
    std::filesystem::remove(queryFile);
    std::printf("%d articles\n\n", articles);
    PrintSide("LoadArticles", "ms", times.ours);
    PrintSide("TSQLQuery of Free Pascal", "ms", times.other);
    PrintRatio(times, kAtMost);
    PrintSide("LoadArticles, most memory of the process", "MiB", memory.ours);
    PrintSide("TSQLQuery, most memory of the process", "MiB", memory.other);
    PrintRatio(memory, kAtMost);
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    try {
        const bool quick = tolvane::bench::IsQuick(count, arguments);
        for (const int articles :
             tolvane::bench::Sizes(count, arguments, {1000, 10000, 100000}, {1000}))
            tolvane::bench::CompareWithPascal(articles, quick ? 2 : 5);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
