#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace tolvane::test {

constexpr std::size_t kTerminalRows = 24;

// What a terminal of kTerminalRows would show of these bytes: it knows the new line, the carriage
// return and the escapes of a progress display. Other escapes are failures of the test, and so is
// one that would go to a row that has left the terminal.
class TScreen {
public:
    explicit TScreen(std::string_view bytes);

    // The rows, those that have left the terminal included, without the spaces at their ends.
    std::vector<std::string> Rows() const;
    // Every row that was ever ended, as it was then.
    const std::vector<std::string>& Ended() const { return ended_; }
    // The columns of the widest row that was ever shown.
    std::size_t Widest() const { return widest_; }

private:
    using TRow = std::vector<std::string>;  // letters
    void Escape(std::string_view& bytes);
    void Letter(std::string_view& bytes);
    TRow& Row();

    std::vector<TRow> rows_{};
    std::size_t top_ = 0;  // the first row that has not left the terminal
    std::size_t row_ = 0;
    std::size_t column_ = 0;
    std::vector<std::string> ended_{};
    std::size_t widest_ = 0;
};

// A terminal with kTerminalRows for a program's output, whose device is `Device`.
class TTerminal {
public:
    explicit TTerminal(unsigned short columns);
    TTerminal(const TTerminal&) = delete;
    TTerminal& operator=(const TTerminal&) = delete;
    ~TTerminal();

    const std::filesystem::path& Device() const { return device_; }
    // Reads from now on; the program has been started.
    void Listen();
    // All that has come, when the program has ended.
    std::string Text();

private:
    void Read();

    int master_;
    std::filesystem::path device_;
    std::string text_{};
    std::thread reader_{};
};

}  // namespace tolvane::test
