// Prints what saving the scales into a foreign configuration file takes beside writing its bytes,
// by what the file is full of and by its size.

#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>

#include "config/IniFile.h"
#include "config/ScaleTable.h"
#include "system/TemporaryFile.h"
#include "tests/bench/measure/Quick.h"
#include "tests/bench/measure/Sides.h"
#include "text/Cp1251.h"

namespace tolvane::bench {
namespace {

constexpr std::size_t kMebibyte = 1U << 20U;

using TLineMaker = std::function<std::string(std::size_t)>;

std::string FullOf(const TLineMaker& line, std::size_t mebibytes) {
    std::string bytes = "[Foreign]\r\n";
    for (std::size_t number = 0; bytes.size() < mebibytes * kMebibyte; ++number)
        bytes += line(number) + "\r\n";
    return bytes;
}

void ChangeScales(TIniDocument& document) {
    TScaleTable table;
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        table[slot].ScaleNumb = slot;
        table[slot].ScaleName = "Везна"_cp1251;
        table[slot].TCPAddress = "10.0.0.1";
        table[slot].TCPPort = 1001;
    }
    table.Save(document);
}

void CompareSave(const std::filesystem::path& file, const char* name, const TLineMaker& line,
                 bool quick) {
    for (const std::size_t mebibytes : {1U, 4U}) {
        if (quick && mebibytes > 1) return;
        const std::string before = FullOf(line, mebibytes);
        TIniDocument document(before);
        ChangeScales(document);
        const std::string after = document.Bytes();
        std::printf("%zu MiB of %s\n", mebibytes, name);
        const auto prepare = [&] { ReplaceWholeFile(file, before); };
        Compare({"saving 20 scales", [&] { UpdateIniFile(file, ChangeScales); }, prepare},
                {"writing the bytes", [&] { ReplaceWholeFile(file, after); }, prepare});
        Compare({"reading, changing and joining in memory",
                 [&] {
                     TIniDocument changed(before);
                     ChangeScales(changed);
                     if (changed.Bytes() != after) std::printf("not the same bytes\n");
                 }},
                {"writing the bytes", [&] { ReplaceWholeFile(file, after); }});
    }
}

void Run(bool quick) {
    const std::filesystem::path file = std::filesystem::temp_directory_path() / "tolvane-bench.ini";
    CompareSave(
        file, "section headers",
        [](std::size_t number) { return "[S" + std::to_string(number) + ']'; }, quick);
    CompareSave(
        file, "keys", [](std::size_t number) { return 'k' + std::to_string(number) + "=1"; },
        quick);
    CompareSave(
        file, "comments", [](std::size_t number) { return "; note " + std::to_string(number); },
        quick);
    std::filesystem::remove(file);
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    tolvane::bench::Run(tolvane::bench::IsQuick(count, arguments));
}
