#include <algorithm>
#include <string>
#include <vector>

#include "command/CommandLine.h"

namespace tolvane {
namespace {

std::string Joined(const std::vector<std::string>& words, const char* separator) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : separator) + word;
    return text;
}

std::vector<const CLI::App*> CommandsOf(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App*) { return true; });
}

std::string CommandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : CommandsOf(app))
        names.push_back(command->get_name());
    return Joined(names, " ");
}

std::string OptionNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options())
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    return Joined(names, " ");
}

// The options of a kind of value, of the program and of its commands, as a pattern.
std::string OptionsOf(const CLI::App& app, const std::string& type) {
    std::vector<const CLI::App*> apps = CommandsOf(app);
    apps.insert(apps.begin(), &app);
    std::vector<std::string> names;
    for (const CLI::App* one : apps)
        for (const CLI::Option* option : one->get_options()) {
            if (option->get_type_name() != type) continue;
            const std::string name = "--" + option->get_lnames().front();
            if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
        }
    return Joined(names, " | ");
}

std::string NamesOf(const std::map<std::string, int>& values) {
    std::vector<std::string> names;
    names.reserve(values.size());
    for (const auto& [name, value] : values)
        names.push_back(name);
    return Joined(names, " ");
}

// A case of the option before the word, whose value is completed by compgen with `how`.
std::string ValueCase(const std::string& options, const std::string& how) {
    return "        " + options +
           ")\n"
           "            mapfile -t COMPREPLY < <(compgen " +
           how +
           " -- \"$now\")\n"
           "            return ;;\n";
}

std::string ValueCases(const CLI::App& app) {
    return ValueCase(OptionsOf(app, "FILE"), "-f") + ValueCase(OptionsOf(app, "FOLDER"), "-d") +
           ValueCase("--price", "-W '" + NamesOf(kPrices) + "'") +
           ValueCase("--name1 | --name2", "-W '" + NamesOf(kNames) + "'");
}

// What may follow each command.
std::string CommandCases(const CLI::App& app) {
    std::string text;
    for (const CLI::App* command : CommandsOf(app))
        text += "            " + command->get_name() + ") words='" + CommandNames(*command) + " " +
                OptionNames(*command) + "' ;;\n";
    return text;
}

}  // namespace

std::string BashCompletion() {
    const TCommandLine line;
    const CLI::App& app = line.App();
    return "# Completes the command lines of tolvane in bash.\n"
           "_tolvane() {\n"
           "    local now=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}\n"
           "    local word words='" +
           CommandNames(app) +
           "'\n"
           "    case $before in\n" +
           ValueCases(app) +
           "    esac\n"
           "    for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
           "        case $word in\n" +
           CommandCases(app) +
           "        esac\n"
           "    done\n"
           "    mapfile -t COMPREPLY < <(compgen -W \"$words " +
           OptionNames(app) +
           "\" -- \"$now\")\n"
           "}\n"
           "complete -F _tolvane tolvane\n";
}

}  // namespace tolvane
