#include "tests/command/program/Process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <thread>

namespace tolvane::test {
namespace {

constexpr std::chrono::milliseconds kPoll{5};

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> EnvironmentWith(const std::map<std::string, std::string>& changes) {
    std::vector<std::string> all;
    for (char** each = environ; *each != nullptr; ++each) {
        const std::string entry = *each;
        if (!changes.contains(entry.substr(0, entry.find('=')))) all.push_back(entry);
    }
    for (const auto& [name, value] : changes)
        if (!value.empty()) all.push_back(name + "=" + value);
    return all;
}

}  // namespace

TProcess::TProcess(const TStart& start) {
    std::vector<std::string> words = {start.program.string()};
    words.insert(words.end(), start.arguments.begin(), start.arguments.end());
    std::vector<std::string> variables = EnvironmentWith(start.environment);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&files, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, 1, start.out.c_str(), kFlags, 0600);
    posix_spawn_file_actions_addopen(&files, 2, start.err.c_str(), kFlags, 0600);
    pid_t process = 0;
    const int error = posix_spawn(&process, start.program.c_str(), &files, nullptr,
                                  Pointers(words).data(), Pointers(variables).data());
    posix_spawn_file_actions_destroy(&files);
    if (error != 0) throw std::system_error(error, std::system_category(), words.front());
    process_ = process;
}

TProcess::~TProcess() {
    Kill();
}

std::optional<int> TProcess::WaitFor(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (!exitCode_) {
        int status = 0;
        if (waitpid(static_cast<pid_t>(process_), &status, WNOHANG) == process_)
            exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        else if (std::chrono::steady_clock::now() > end)
            return std::nullopt;
        else
            std::this_thread::sleep_for(kPoll);
    }
    return exitCode_;
}

void TProcess::Interrupt() {
    Signal(SIGINT);
}

void TProcess::Signal(int number) {
    if (!exitCode_) kill(static_cast<pid_t>(process_), number);
}

void TProcess::Kill() {
    if (exitCode_) return;
    kill(static_cast<pid_t>(process_), SIGKILL);
    WaitFor(std::chrono::seconds(10));
}

}  // namespace tolvane::test
