#include "command/Options.h"

#include <utility>

#include "command/CommandLine.h"
#include "command/UsageError.h"

namespace tolvane {
namespace {

TParsedOptions Refused(const std::string& text) {
    return {.exitCode = TExitCode::Usage, .error = "tolvane: " + text + "\nTry: tolvane --help\n"};
}

// Where the value came from that an error names, in parentheses; empty for the command line.
std::string SourceOf(const std::string& error, const std::vector<TSetting>& settings) {
    for (const TSetting& setting : settings)
        if (error.starts_with("--" + setting.option + ":")) return " (" + setting.source + ")";
    return {};
}

// Reads the line and everything that the settings add to it.
TParsedOptions WithSettings(std::vector<std::string> arguments, const TEnvironment& environment,
                            const TCommandLine& line) {
    std::vector<TSetting> settings;
    try {
        settings = ReadSettings(ConfigFile(line.Config(), environment), environment);
        const std::vector<std::string> words = line.Words(settings);
        arguments.insert(arguments.end(), words.begin(), words.end());
        TCommandLine all;
        all.ReadLine(std::move(arguments));
        return {.options = all.Take(environment)};
    } catch (const TUsageError& error) {
        return Refused(error.what());
    } catch (const CLI::ParseError& error) {
        return Refused(error.what() + SourceOf(error.what(), settings));
    }
}

}  // namespace

bool WorksOnScales(const TCommandOptions& options) {
    switch (options.verb) {
        case TVerb::Write:
            return !options.dryRun;
        case TVerb::Delete:
        case TVerb::Test:
        case TVerb::Release:
            return true;
        default:
            return false;
    }
}

TParsedOptions ParseOptions(std::vector<std::string> arguments, const TEnvironment& environment) {
    TCommandLine line;
    try {
        line.ReadLine(arguments);
        line.Take(environment);
    } catch (const CLI::CallForHelp&) {
        return {.output = line.Help()};
    } catch (const CLI::CallForVersion& version) {
        return {.output = std::string(version.what()) + "\n"};
    } catch (const CLI::ParseError& error) {
        return Refused(line.Message(error));
    }
    return WithSettings(std::move(arguments), environment, line);
}

}  // namespace tolvane
