// Prints how much memory a load of 100,000 articles takes at its most beside the loaded table, in a
// process of its own: load_once, or the command that is given, which may run load_once.exe on
// another system. Needs the environment of the integration tests: TOLVANE_FB_SERVER,
// TOLVANE_FB_PASSWORD, TOLVANE_FB_DIR.
//
//   bench_memory [--quick] [COMMAND...]

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "tests/bench/articles/BigShop.h"
#include "tests/bench/articles/OtherPrograms.h"
#include "tests/bench/measure/Quick.h"
#include "tests/bench/measure/Sides.h"

namespace tolvane::bench {
namespace {

constexpr double kAtMost = 1.3;
constexpr double kMebibyte = 1 << 20;

void Run(const std::vector<std::string>& command, int articles, int rounds) {
    const test::TTestDatabase database(test::Schema() + BigShopScript(articles));
    TRounds memory;
    std::vector<double> after;
    for (int round = 0; round < rounds; ++round) {
        const TLoadOnce load(NumbersOf(WithLogin(command, database)));
        memory.ours.push_back((load.most - load.before) / kMebibyte);
        memory.other.push_back(load.table / kMebibyte);
        after.push_back((load.after - load.before) / kMebibyte);
    }
    std::printf("%d articles, %s\n\n", articles, command.back().c_str());
    PrintSide("memory of a load at its most", "MiB", memory.ours);
    PrintSide("the loaded table", "MiB", memory.other);
    PrintRatio(memory, kAtMost);
    PrintSide("memory after the load", "MiB", after);
    PrintRatio({after, memory.other});
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    try {
        const bool quick = tolvane::bench::IsQuick(count, arguments);
        std::vector<std::string> command(arguments + (quick ? 2 : 1), arguments + count);
        if (command.empty()) command.emplace_back(TOLVANE_LOAD_ONCE);
        tolvane::bench::Run(command, quick ? 5000 : 100000, quick ? 2 : 5);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
