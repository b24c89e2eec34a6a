#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tolvane {

inline constexpr std::size_t kUsualColumns = 80;

// Makes the console take and show UTF-8 while it lives. Output that cannot be written does not end
// the process.
class TConsole {
public:
    TConsole();
    ~TConsole();
    TConsole(const TConsole&) = delete;
    TConsole& operator=(const TConsole&) = delete;

    // Whether a person reads standard error, and a line can be drawn anew.
    bool ErrorIsTerminal() const;
    // How many columns that terminal has now; 80 when there is no telling.
    std::size_t ErrorColumns() const;

private:
    struct TBefore;  // what the console was like
    std::unique_ptr<const TBefore> before_;
};

// The words after the program's name, UTF-8.
std::vector<std::string> ProgramArguments(int argc, char** argv);
// A variable of the environment, UTF-8; nothing when it is not set or empty.
std::optional<std::string> EnvironmentVariable(const std::string& name);

}  // namespace tolvane
