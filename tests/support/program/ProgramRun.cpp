#include "tests/support/program/ProgramRun.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include "tests/support/ScratchFolder.h"

extern char** environ;  // NOLINT: the system's name

namespace tolvane::test {
namespace {

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// The environment with these variables in place of those of the same names.
std::vector<std::string> With(const std::vector<std::string>& variables) {
    std::vector<std::string> all = variables;
    for (char** each = environ; *each != nullptr; ++each) {
        const std::string text = *each;
        const std::string name = text.substr(0, text.find('=') + 1);
        bool replaced = false;
        for (const std::string& variable : variables)
            replaced = replaced || variable.starts_with(name);
        if (!replaced) all.push_back(text);
    }
    return all;
}

void Check(int error) {
    if (error != 0) throw std::system_error(error, std::system_category());
}

}  // namespace

TProgramRun::TProgramRun(const std::vector<std::string>& command, std::filesystem::path folder,
                         const std::vector<std::string>& variables)
    : folder_(std::move(folder)) {
    std::vector<std::string> arguments = command;
    std::vector<std::string> environment = With(variables);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    const int flags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&files, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, 1, (folder_ / "out").c_str(), flags, 0666);
    posix_spawn_file_actions_addopen(&files, 2, (folder_ / "err").c_str(), flags, 0666);
    const int error = posix_spawn(&process_, arguments.front().c_str(), &files, nullptr,
                                  Pointers(arguments).data(), Pointers(environment).data());
    posix_spawn_file_actions_destroy(&files);
    Check(error);
    handle_ = static_cast<int>(syscall(SYS_pidfd_open, process_, 0));
    if (handle_ < 0) Check(errno);
}

TProgramRun::~TProgramRun() {
    if (!end_) {
        Signal(SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    close(handle_);
}

void TProgramRun::Signal(int signal) const {
    syscall(SYS_pidfd_send_signal, handle_, signal, nullptr, 0);
}

std::optional<TProgramEnd> TProgramRun::WaitFor(std::chrono::milliseconds time) {
    if (end_) return end_;
    pollfd ended{.fd = handle_, .events = POLLIN, .revents = 0};
    if (poll(&ended, 1, static_cast<int>(time.count())) != 1) return std::nullopt;
    int status = 0;
    rusage used{};
    if (wait4(process_, &status, 0, &used) != process_) return std::nullopt;
    const auto timeOf = [](const timeval& value) {
        return std::chrono::seconds(value.tv_sec) + std::chrono::microseconds(value.tv_usec);
    };
    end_ = {.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            .signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0,
            .processorTime = timeOf(used.ru_utime) + timeOf(used.ru_stime),
            .mostMemoryKb = used.ru_maxrss};
    return end_;
}

std::string TProgramRun::Output() const {
    return GetFile(folder_ / "out");
}

std::string TProgramRun::Error() const {
    return GetFile(folder_ / "err");
}

}  // namespace tolvane::test
