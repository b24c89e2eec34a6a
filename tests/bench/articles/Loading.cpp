#include "tests/bench/articles/Loading.h"

#include <cstdio>
#include <cstdlib>

#include "text/Cp1251.h"

namespace tolvane::bench {

void TNoWindow::ShowError(std::string_view text) {
    std::fprintf(stderr, "%s\n", ToUtf8(text).c_str());
    std::exit(1);
}

TLoading::TLoading(const TClientLibrary& library, void* database)
    : transaction_(library, database),
      query_(transaction_),
      loader_({transaction_, query_, articles_, sort_, SystemLocalClock(),
               [] { return TRegionalSettings(); }, window_, window_}) {}

}  // namespace tolvane::bench
