#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tolvane::test {

// How a program ended.
struct TProgramEnd {
    int exitCode = -1;  // -1: by a signal
    int signal = 0;
    std::chrono::microseconds processorTime{};
    long mostMemoryKb = 0;
};

// A program that runs beside the test (Linux). Never outlives the test.
class TProgramRun {
public:
    // Starts it. Standard output and error go to the files "out" and "err" of the folder.
    // `variables` ("NAME=value") are added to the environment. Throws std::system_error.
    TProgramRun(const std::vector<std::string>& command, std::filesystem::path folder,
                const std::vector<std::string>& variables = {});
    TProgramRun(const TProgramRun&) = delete;
    TProgramRun& operator=(const TProgramRun&) = delete;
    // Kills a program that still runs.
    ~TProgramRun();

    // Sends a signal; does nothing when the program has ended. Any thread.
    void Signal(int signal) const;
    // Waits for its end; nothing when the time has passed.
    std::optional<TProgramEnd> WaitFor(std::chrono::milliseconds time);
    int Process() const { return process_; }
    std::string Output() const;
    std::string Error() const;

private:
    std::filesystem::path folder_;
    int process_ = 0;
    int handle_ = -1;  // of the process, not of its number, which may be given to another one
    std::optional<TProgramEnd> end_;
};

}  // namespace tolvane::test
