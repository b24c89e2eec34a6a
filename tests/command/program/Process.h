#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tolvane::test {

// What a program is started with; texts are UTF-8.
struct TStart {
    std::filesystem::path program;
    std::vector<std::string> arguments{};
    // In place of the test's own of the same names.
    std::map<std::string, std::string> environment{};
    // Standard output and error go to its files "out" and "err"; standard input is empty.
    std::filesystem::path folder;
    bool outIsFull = false;  // nothing can be written to standard output
};

// Another process. It is killed by the destructor at the latest.
class TProcess {
public:
    // Throws std::system_error.
    explicit TProcess(const TStart& start);
    TProcess(const TProcess&) = delete;
    TProcess& operator=(const TProcess&) = delete;
    ~TProcess();

    // The exit code, 128 and the signal for one that a signal has ended (Linux); nothing when it
    // has not ended within the time.
    std::optional<int> WaitFor(std::chrono::milliseconds time);
    // What Ctrl+C does to a program on a terminal.
    void Interrupt();
#ifndef _WIN32
    void Signal(int number);
#endif

private:
    struct TState;
    std::unique_ptr<TState> state_;
};

}  // namespace tolvane::test
