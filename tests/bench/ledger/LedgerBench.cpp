// Prints what a save and a load of a scale's ledger take, and how large its file is, by the number
// of articles: the median of some, in a folder of the temporary folder.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <vector>

#include "command/Ledger.h"
#include "command/LedgerText.h"
#include "tests/bench/measure/Quick.h"

namespace tolvane::bench {
namespace {

using std::chrono::steady_clock;
using std::filesystem::path;

constexpr int kTimes = 21;
constexpr std::chrono::sys_seconds kNow = std::chrono::sys_days(std::chrono::May / 1 / 2024);

double MedianMs(const std::function<void()>& work) {
    std::vector<double> times;
    for (int i = 0; i < kTimes; ++i) {
        const auto start = steady_clock::now();
        work();
        times.push_back(
            std::chrono::duration<double, std::milli>(steady_clock::now() - start).count());
    }
    std::ranges::sort(times);
    return times[kTimes / 2];
}

TLedger Load(const path& folder) {
    return TLedger::Load(folder, TScaleRec(), {}, kNow, std::chrono::days(7));
}

void Measure(const path& folder, std::int32_t articles) {
    std::filesystem::remove_all(folder);
    TLedger ledger = Load(folder);
    ledger.Confirm({.version = "1.04", .maxPlu = articles, .labelMode = 1});
    TLedgerContent content;
    content.report = ledger.Report();
    content.saved = kNow;
    for (std::int32_t number = 1; number <= articles; ++number)
        ledger.Claim(number, static_cast<std::uint64_t>(number) * 0x9E3779B97F4A7C15U,
                     kNow - std::chrono::seconds(number % 3600));
    content.claims = ledger.Claims();
    const double text = MedianMs([&] { LedgerText(content); });
    const double save = MedianMs([&] { ledger.Save(kNow); });
    const double load = MedianMs([&] { Load(folder); });
    std::printf("%8d %10.2f %10.2f %10.2f %10llu\n", articles, save, text, load,
                static_cast<unsigned long long>(file_size(ledger.File())));
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    const bool quick = tolvane::bench::IsQuick(count, arguments);
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / "tolvane-bench-ledger";
    std::printf("articles    save ms    text ms    load ms      bytes\n");
    for (const std::int32_t articles : {1000, 4000, 20'000, 100'000})
        if (!quick || articles <= 1000) tolvane::bench::Measure(folder, articles);
    std::filesystem::remove_all(folder);
}
