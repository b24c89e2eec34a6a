// Loads the articles of a database once, in a process of its own.
//
//   load_once DATABASE PASSWORD
//
// Prints milliseconds, the physical memory before the load, at its most and after it, and what the
// table takes of it, in bytes.

#include <cstdio>
#include <exception>

#include "database/Attachment.h"
#include "tests/bench/articles/Loading.h"
#include "tests/bench/measure/PhysicalMemory.h"
#include "tests/bench/measure/Sides.h"

namespace tolvane::bench {
namespace {

void Run(const char* database, const char* password) {
    TAttachment attachment({.database = database, .user = "SYSDBA", .password = password});
    TLoading loading(attachment.Library(), attachment.Handle());
    const std::size_t before = PhysicalMemory();
    const double time = MillisecondsOf([&] { loading.Load(); });
    std::printf("%.1f %zu %zu %zu %zu\n", time, before, PeakOfPhysicalMemory(), PhysicalMemory(),
                loading.Articles().MemoryUsed());
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    if (count != 3) return 2;
    try {
        tolvane::bench::Run(arguments[1], arguments[2]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
