// Prints how long `tolvane write --all` takes over many TCP scales at once, beside the slowest
// scale alone and beside one scale after another, and what a run over very many costs the computer.
// The scales are virtual S300 in label mode 0, which takes the fewest texts; they answer at once
// and run on the same computer. Needs the demo shop's database file (TOLVANE_FB_SHOP), all of whose
// articles go into every scale.
//
//   bench_command [scales, one of them silent] [very many scales, or 0] [articles]
//   bench_command --quick

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "ManyScales.h"
#include "tests/bench/measure/Quick.h"
#include "tests/support/program/PlainShop.h"
#include "tests/support/program/ScaleShop.h"

namespace tolvane::bench {
namespace {

using std::chrono::steady_clock;
using test::TProgramEnd;
using test::TProgramRun;
using test::TScaleShop;
using TSeconds = std::chrono::duration<double>;

constexpr std::chrono::hours kDeadline{1};
constexpr std::chrono::milliseconds kLook{100};

struct TMeasured {
    double seconds = 0;
    TProgramEnd end{};
    int mostThreads = 0;
    nlohmann::json scales{};  // of the report
};

int ThreadsOf(const TProgramRun& run) {
    std::ifstream status("/proc/" + std::to_string(run.Process()) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("Threads:")) return std::atoi(line.c_str() + 8);
    return 0;
}

class TBench {
public:
    TBench(std::size_t scales, int articles) : shop_(std::vector<int>(scales, 0)) {
        test::MakePlainShop(shop_ / "shop.fdb",
                            {"update PLUES set PLU_FORSCALES = '0'",
                             "update PLUES set PLU_FORSCALES = '' where PLU_SCALE_NUMB > " +
                                 std::to_string(articles)});
    }

    void Silence(std::size_t scale) {
        shop_.Scale(scale).SetFaults({{{.kind = simulator::TFaultKind::Silent}}});
    }

    // A run over the first scales in a process of this program.
    TMeasured WriteMany(std::size_t count) {
        std::filesystem::remove_all(shop_.StateFolder());
        std::vector<std::string> line = {std::filesystem::read_symlink("/proc/self/exe").string(),
                                         "--run", shop_.StateFolder().string(),
                                         (shop_ / "shop.fdb").string()};
        for (std::size_t i = 0; i < count; ++i)
            line.push_back(std::to_string(shop_.Scale(i).Port()));
        std::filesystem::create_directory(shop_ / "many");
        return Measure([&] { return std::make_unique<TProgramRun>(line, shop_ / "many"); });
    }

    // A run with these options, with nothing known of the scales.
    TMeasured Write(const std::vector<std::string>& options) {
        std::filesystem::remove_all(shop_.StateFolder());
        std::vector<std::string> line = {"write",      "--all",
                                         "--json",     "--no-progress",
                                         "--database", (shop_ / "shop.fdb").string()};
        line.insert(line.end(), options.begin(), options.end());
        return Measure([&] { return shop_.Start(line); });
    }

private:
    static TMeasured Measure(const std::function<std::unique_ptr<TProgramRun>()>& start) {
        TMeasured measured;
        const auto begin = steady_clock::now();
        const auto run = start();
        std::optional<TProgramEnd> end;
        while (!(end = run->WaitFor(kLook)) && steady_clock::now() - begin < kDeadline)
            measured.mostThreads = std::max(measured.mostThreads, ThreadsOf(*run));
        measured.seconds = TSeconds(steady_clock::now() - begin).count();
        const auto report = nlohmann::json::parse(run->Output(), nullptr, false);
        if (!end || !report.is_object()) {
            std::fprintf(stderr, "%s\n", run->Error().c_str());
            std::exit(1);
        }
        measured.end = *end;
        measured.scales = report.at("scales");
        return measured;
    }

    TScaleShop shop_;
};

// How many articles all scales have got, and how many scales have got all.
void PrintOutcome(const TMeasured& measured) {
    std::size_t written = 0;
    std::size_t done = 0;
    for (const auto& scale : measured.scales) {
        written += scale.at("written").get<std::size_t>();
        if (scale.at("outcome") == "done") ++done;
    }
    std::printf("    %zu articles written, %zu of %zu scales done\n", written, done,
                measured.scales.size());
}

// Answers how long the whole run took.
double PrintManyScales(std::size_t count, int articles) {
    TBench bench(count, articles);
    bench.Silence(count - 1);
    const TMeasured answering = bench.Write({"--scale", "1"});
    const TMeasured silent = bench.Write({"--scale", std::to_string(count)});
    const TMeasured whole = bench.Write({});
    const TMeasured again = bench.Write({"--scale", "1"});
    const double slowest = std::max({answering.seconds, silent.seconds, again.seconds});
    std::printf("%zu TCP scales, %d articles, one scale silent\n", count, articles);
    std::printf("  one answering scale alone  %8.2f s, %.2f s after the whole run\n",
                answering.seconds, again.seconds);
    std::printf("  the silent scale alone     %8.2f s\n", silent.seconds);
    std::printf("  the whole run              %8.2f s: %.3f times the slowest scale alone\n",
                whole.seconds, whole.seconds / slowest);
    PrintOutcome(whole);
    std::fflush(stdout);
    return whole.seconds;
}

void PrintOneAfterAnother(std::size_t count, int articles, double wholeRun) {
    TBench bench(count, articles);
    bench.Silence(count - 1);
    const TMeasured oneByOne = bench.Write({"--jobs", "1"});
    std::printf("The %zu scales one after another: %.2f s, %.1f times the whole run\n", count,
                oneByOne.seconds, oneByOne.seconds / wholeRun);
    PrintOutcome(oneByOne);
}

void PrintVeryMany(std::size_t count, int articles) {
    TBench bench(count, articles);
    const TMeasured alone = bench.WriteMany(1);
    const TMeasured whole = bench.WriteMany(count);
    std::printf("%zu TCP scales, %d articles, one process\n", count, articles);
    for (const TMeasured* each : {&alone, &whole}) {
        const double processor = TSeconds(each->end.processorTime).count();
        std::printf("  %-26s %8.2f s, %6.2f s of processor time, %4d threads, %6.1f MB\n",
                    each == &alone ? "one scale alone" : "all at once", each->seconds, processor,
                    each->mostThreads, static_cast<double>(each->end.mostMemoryKb) / 1024);
    }
    std::printf("  all at once takes          %8.3f times one scale alone\n",
                whole.seconds / alone.seconds);
    PrintOutcome(whole);
    std::fflush(stdout);
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    if (count > 4 && arguments[1] == std::string_view("--run"))
        return tolvane::bench::WriteManyScales(arguments[2], arguments[3],
                                               {arguments + 4, arguments + count});
    const bool quick = tolvane::bench::IsQuick(count, arguments);
    const auto number = [&](int index, int usual, int few) {
        if (quick) return few;
        return count > index ? std::atoi(arguments[index]) : usual;
    };
    const auto many = static_cast<std::size_t>(number(1, 20, 2));
    const auto veryMany = static_cast<std::size_t>(number(2, 200, 3));
    const int articles = number(3, 300, 5);
    const double wholeRun = tolvane::bench::PrintManyScales(many, articles);
    if (veryMany > 0) tolvane::bench::PrintVeryMany(veryMany, articles);
    tolvane::bench::PrintOneAfterAnother(many, articles, wholeRun);
}
