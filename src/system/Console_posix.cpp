#include "system/Console.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string_view>

namespace tolvane {

struct TConsole::TBefore {};

// A reader that has gone, or a file that may not grow, is an error of the write.
TConsole::TConsole() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}
TConsole::~TConsole() = default;

bool TConsole::ErrorIsTerminal() const {
    const char* const kind = std::getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && kind != nullptr && std::string_view(kind) != "dumb";
}

std::size_t TConsole::ErrorColumns() const {
    winsize size{};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsualColumns;
    return size.ws_col;
}

std::vector<std::string> ProgramArguments(int argc, char** argv) {
    return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

std::optional<std::string> EnvironmentVariable(const std::string& name) {
    const char* const value = std::getenv(name.c_str());
    if (value == nullptr || *value == '\0') return std::nullopt;
    return value;
}

}  // namespace tolvane
