// Prints what loading and unloading the module takes beside an empty DLL with the same imports, and
// the module's size. Both lie as run.sh puts them. --quick takes fewer rounds.

#include <windows.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "tests/bench/measure/Quick.h"
#include "tests/bench/measure/Sides.h"

namespace tolvane::bench {
namespace {

constexpr double kMebibyte = 1024.0 * 1024.0;

using std::filesystem::path;

path Folder() {
    std::wstring program(MAX_PATH, L'\0');
    program.resize(GetModuleFileNameW(nullptr, program.data(), MAX_PATH));
    return path(program).parent_path();
}

void LoadAndFree(const path& file) {
    const HMODULE module = LoadLibraryW(file.c_str());
    if (module == nullptr) throw std::runtime_error(file.string() + " does not load");
    FreeLibrary(module);
}

void Run(bool quick) {
    const path module = Folder() / "Operations" / "Tolvane.dll";
    const path empty = Folder() / "empty.dll";
    std::printf("%-44s %9.2f ms\n", "an empty DLL for the first time",
                MillisecondsOf([&] { LoadAndFree(empty); }));
    std::printf("%-44s %9.2f ms\n\n", "the module for the first time",
                MillisecondsOf([&] { LoadAndFree(module); }));
    Compare({"LoadLibrary and FreeLibrary of the module", [&] { LoadAndFree(module); }},
            {"  an empty DLL with the same imports", [&] { LoadAndFree(empty); }}, {},
            quick ? 3 : 51);
    std::printf("%-44s %9.2f MiB, at most 2\n", "size of the module",
                static_cast<double>(file_size(module)) / kMebibyte);
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    try {
        tolvane::bench::Run(tolvane::bench::IsQuick(count, arguments));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
