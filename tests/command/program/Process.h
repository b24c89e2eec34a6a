#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tolvane::test {

// What a program is started with; texts are UTF-8.
struct TStart {
    std::filesystem::path program;
    std::vector<std::string> arguments{};
    // Added to the test's own; an empty value removes a variable.
    std::map<std::string, std::string> environment{};
    // Files that take standard output and error; standard input is empty.
    std::filesystem::path out;
    std::filesystem::path err;
};

// Another process. It is killed by the destructor at the latest.
class TProcess {
public:
    // Throws std::system_error.
    explicit TProcess(const TStart& start);
    TProcess(const TProcess&) = delete;
    TProcess& operator=(const TProcess&) = delete;
    ~TProcess();

    // The exit code; nothing when it has not ended within the time.
    std::optional<int> WaitFor(std::chrono::milliseconds time);
    // What Ctrl+C does to a program on a terminal.
    void Interrupt();
#ifndef _WIN32
    void Signal(int number);
#endif
    void Kill();

private:
    std::intptr_t process_ = 0;
    std::optional<int> exitCode_;
};

}  // namespace tolvane::test
