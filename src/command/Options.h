#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "command/ExitCode.h"

namespace tolvane {

enum class TVerb : std::uint8_t {
    Check,
    Write,
    Delete,
    Test,
    Release,
    Status,
    Articles,
    Lines,
    Scales,
    Discover,
    LedgerForget,
};

// How data is printed on standard output.
enum class TFormat : std::uint8_t { Table, Csv, Json };

// What the command line, the environment and the configuration file say together; a choice that
// none of them names keeps its default. Texts are UTF-8.
struct TCommandOptions {
    TVerb verb = TVerb::Check;

    // Each a scale's number or name, or several of them with commas between; none: the checked
    // scales.
    std::vector<std::string> scales{};
    std::filesystem::path ini{};
    std::filesystem::path state{};  // the folder of the ledgers and locks
    std::string database{};
    std::string user{};
    std::filesystem::path passwordFile{};
    std::filesystem::path clientLibrary{};
    std::map<std::string, std::string> serialPorts{};  // "COM1": "/dev/ttyUSB0"
    std::uint16_t udpPort = 1001;                      // the local one; 0: any
    std::size_t jobs = 0;                              // links at once; 0: all
    std::optional<std::chrono::seconds> deadline{};
    std::chrono::seconds lockWait{};
    TFormat format = TFormat::Table;
    std::filesystem::path log{};
    std::filesystem::path trace{};
    std::filesystem::path report{};
    bool progress = true;
    bool quiet = false;
    bool verbose = false;  // each article has a line, and there are no bars

    std::optional<int> price{};  // as in TLineChoices; nothing: the configuration's
    std::optional<int> name1{};
    std::optional<int> name2{};
    std::optional<std::set<std::int32_t>> numbers{};
    std::optional<std::int32_t> show{};
    bool changedOnly = false;
    bool dryRun = false;
    bool prune = false;
    bool everything = false;
    bool createIndex = false;
    std::chrono::seconds maxAge = std::chrono::days(7);
    std::string forget{};  // a scale's number or name
};

// Whether a scale may be in programming mode while this goes on.
bool WorksOnScales(const TCommandOptions& options);

// What reading the options has come to: options to work with, or a text and the code to end with.
struct TParsedOptions {
    std::optional<TCommandOptions> options{};
    TExitCode exitCode = TExitCode::Done;
    std::string output{};  // help and version: for standard output
    std::string error{};   // for standard error
};

// A variable of the environment, UTF-8; nothing when it is not set.
using TEnvironment = std::function<std::optional<std::string>(const std::string& name)>;

// Reads the arguments without the program's name. A flag beats a variable ("TOLVANE_LOCK_WAIT" for
// --lock-wait), which beats the configuration file ("lock-wait = 5" in its section [tolvane]).
TParsedOptions ParseOptions(std::vector<std::string> arguments, const TEnvironment& environment);

// The manual page (roff), from the same texts as the help.
std::string ManualPage();
// What completes a command line in bash.
std::string BashCompletion();

}  // namespace tolvane
