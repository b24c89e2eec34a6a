#include <string>
#include <string_view>
#include <vector>

#include "command/CommandLine.h"
#include "command/CommandText.h"

namespace tolvane {
namespace {

// A text as roff reads it.
std::string Roff(std::string_view text) {
    std::string out;
    bool beginsLine = true;
    for (const char letter : text) {
        if (letter == '\\') out += '\\';
        if (beginsLine && (letter == '.' || letter == '\'')) out += "\\&";
        if (letter == '-') out += '\\';
        out += letter;
        beginsLine = letter == '\n';
    }
    return out;
}

std::string Sentence(std::string_view text) {
    std::string out = Roff(text);
    if (!out.ends_with('.')) out += '.';
    return out;
}

void AppendOption(std::string& page, const CLI::Option& option) {
    std::string names;
    for (const std::string& name : option.get_snames())
        names += "-" + name + ", ";
    for (const std::string& name : option.get_lnames())
        names += "--" + name;
    if (names.empty()) names = option.get_name(true);
    page += ".TP\n.B " + Roff(names) + "\n";
    if (option.get_type_size() != 0 && !option.get_lnames().empty())
        page.insert(page.size() - 1, " \\fI" + Roff(option.get_type_name()) + "\\fR");
    page += Sentence(option.get_description()) + "\n";
}

// All but --help.
void AppendOptions(std::string& page, const CLI::App& app) {
    for (const CLI::Option* option : app.get_options())
        if (option != app.get_help_ptr()) AppendOption(page, *option);
}

void AppendCommand(std::string& page, const CLI::App& command, const std::string& name) {
    page += ".SS " + Roff(name) + "\n" + Sentence(command.get_description()) + "\n";
    AppendOptions(page, command);
    for (const CLI::App* under : command.get_subcommands([](const CLI::App*) { return true; }))
        AppendCommand(page, *under, name + " " + under->get_name());
}

void AppendCommands(std::string& page, const CLI::App& app) {
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        AppendCommand(page, *command, "tolvane " + command->get_name());
}

}  // namespace

std::string ManualPage() {
    const TCommandLine line;
    std::string page = ".TH TOLVANE 1 \"\" \"tolvane " TOLVANE_VERSION "\" \"User Commands\"\n";
    page += ".SH NAME\ntolvane \\- writes articles into label scales\n";
    page += ".SH SYNOPSIS\n.B tolvane\n.I COMMAND\n[\\fIOPTION\\fR]...\n";
    page += ".SH DESCRIPTION\n" + Roff(kSummary) + "\n";
    page += ".SH EXAMPLES\n.nf\n" + Roff(kExamples) + "\n.fi\n";
    page += ".SH COMMANDS\n";
    AppendCommands(page, line.App());
    page += ".SH OPTIONS\nOf all commands:\n";
    AppendOptions(page, line.App());
    page += ".SH ENVIRONMENT AND CONFIGURATION FILE\n" + Roff(kSettingsHelp) + "\n";
    page += ".SH EXIT STATUS\n";
    for (const TExitText& exit : kExitTexts)
        page += ".TP\n.B " + std::to_string(static_cast<int>(exit.code)) + "\n" +
                Sentence(exit.text) + "\n";
    page +=
        ".SH FILES\n.TP\n.I /etc/tolvane/tolvane.conf\nThe configuration file.\n"
        ".TP\n.I /etc/tolvane/Tolvane.ini\nThe list of scales.\n"
        ".TP\n.I ~/.local/state/tolvane\nThe ledgers and locks.\n";
    return page;
}

}  // namespace tolvane
