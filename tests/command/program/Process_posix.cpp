#include "tests/command/program/Process.h"

#include <csignal>

#include "tests/support/program/ProgramRun.h"

namespace tolvane::test {
namespace {

std::vector<std::string> LineOf(const TStart& start) {
    std::vector<std::string> line = {start.program.string()};
    line.insert(line.end(), start.arguments.begin(), start.arguments.end());
    return line;
}

// The folder for the run's output; on Linux each write to /dev/full finds a full disk.
std::filesystem::path FolderOf(const TStart& start) {
    if (start.outIsFull) {
        std::filesystem::create_directories(start.folder);
        std::filesystem::remove(start.folder / "out");
        std::filesystem::create_symlink("/dev/full", start.folder / "out");
    }
    return start.folder;
}

std::vector<std::string> VariablesOf(const TStart& start) {
    std::vector<std::string> variables;
    for (const auto& [name, value] : start.environment)
        variables.push_back(name + "=" + value);
    return variables;
}

}  // namespace

struct TProcess::TState {
    TProgramRun run;
};

TProcess::TProcess(const TStart& start)
    : state_(new TState{{LineOf(start), FolderOf(start), VariablesOf(start)}}) {}

TProcess::~TProcess() = default;

std::optional<int> TProcess::WaitFor(std::chrono::milliseconds time) {
    const std::optional<TProgramEnd> end = state_->run.WaitFor(time);
    if (!end) return std::nullopt;
    return end->signal != 0 ? 128 + end->signal : end->exitCode;
}

void TProcess::Interrupt() {
    Signal(SIGINT);
}

void TProcess::Signal(int number) {
    state_->run.Signal(number);
}

}  // namespace tolvane::test
