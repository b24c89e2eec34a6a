#include "command/CommandLine.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "command/DefaultPaths.h"
#include "command/Nearest.h"
#include "command/OptionValues.h"

namespace tolvane {
namespace {

std::chrono::seconds DurationOf(const std::string& option, const std::string& text) {
    if (const auto duration = ParseDuration(text)) return *duration;
    throw CLI::ValidationError(option, "\"" + text + "\" is not a time; write 90s, 30m, 2h or 7d");
}

}  // namespace

void TCommandLine::ReadLine(std::vector<std::string> arguments) {
    CheckForEmptyValues(arguments);
    std::reverse(arguments.begin(), arguments.end());
    app_.parse(std::move(arguments));
}

std::vector<std::string> TCommandLine::Words(const std::vector<TSetting>& settings) const {
    std::vector<std::string> words;
    for (const TSetting& setting : settings) {
        if (options_.verb == TVerb::Discover && setting.option == "scale") continue;
        const std::string name = "--" + setting.option;
        for (const CLI::App* app : Chosen())
            if (const CLI::Option* option = app->get_option_no_throw(name);
                option != nullptr && option->count() == 0)
                words.push_back(name + "=" + setting.value);
    }
    return words;
}

TCommandOptions TCommandLine::Take(const TEnvironment& environment) {
    TakeValues();
    TakeNumbers();
    if (options_.ini.empty()) options_.ini = PathOf(DefaultScaleList(environment));
    if (options_.state.empty()) options_.state = PathOf(DefaultStateFolder(environment));
    if (options_.verb == TVerb::Delete) CheckDelete();
    if (options_.verb == TVerb::Discover) CheckDiscover();
    return options_;
}

std::string TCommandLine::Help() const {
    const std::string help = app_.help();
    return Chosen().size() == 1 ? help : help + "\nOptions of all commands: tolvane --help\n";
}

std::string TCommandLine::Message(const CLI::ParseError& error) const {
    const std::vector<std::string> left = app_.remaining(true);
    if (left.empty()) return error.what();
    // What follows the sign may be a secret.
    const std::string word = left.front().substr(0, left.front().find('='));
    const std::vector<std::string> known = KnownWords(Chosen());
    const std::string near = Nearest(word, known);
    const std::vector<std::string> all = KnownWords(All());
    if (std::find(all.begin(), all.end(), word) != all.end())
        return word + " does not belong to " + Chosen().back()->get_name();
    return word + " is unknown" + (near.empty() ? "" : "; did you mean " + near + "?");
}

void TCommandLine::CheckForEmptyValues(const std::vector<std::string>& arguments) {
    std::string before;
    for (const std::string& word : arguments) {
        const bool endsEmpty = word.starts_with("--") && word.find('=') == word.size() - 1;
        if (word.empty() || endsEmpty)
            throw CLI::ValidationError(word.empty() ? before : word.substr(0, word.size() - 1),
                                       "its value is empty");
        before = word;
    }
}

void TCommandLine::TakeValues() {
    if (!raw_.deadline.empty()) options_.deadline = DurationOf("--deadline", raw_.deadline);
    if (!raw_.lockWait.empty()) options_.lockWait = DurationOf("--lock-wait", raw_.lockWait);
    if (!raw_.maxAge.empty()) options_.maxAge = DurationOf("--max-age", raw_.maxAge);
    if (!raw_.price.empty()) options_.price = kPrices.at(raw_.price);
    if (!raw_.name1.empty()) options_.name1 = kNames.at(raw_.name1);
    if (!raw_.name2.empty()) options_.name2 = kNames.at(raw_.name2);
    for (const std::string& port : raw_.serial)
        TakeSerialPort(port);
    if (raw_.json) options_.format = TFormat::Json;
    if (raw_.csv) options_.format = TFormat::Csv;
    options_.progress = !raw_.noProgress && !options_.quiet;
}

void TCommandLine::TakeNumbers() {
    for (const std::int32_t number : raw_.numbers)
        if (number < 1) throw CLI::ValidationError("--plu", std::to_string(number) + " is below 1");
    if (!raw_.numbers.empty()) options_.numbers.emplace(raw_.numbers.begin(), raw_.numbers.end());
}

void TCommandLine::CheckDelete() const {
    if (!options_.everything && !options_.numbers)
        throw CLI::ValidationError("delete", "say which articles: --plu N, or --everything --yes");
    if (options_.everything && !raw_.yes)
        throw CLI::ValidationError(
            "delete", "--everything deletes every article of the scales; say --yes, too");
}

void TCommandLine::CheckDiscover() const {
    if (!options_.scales.empty())
        throw CLI::ValidationError(
            "discover", "it asks everybody in the network, whatever is listed; leave out --scale");
}

void TCommandLine::TakeSerialPort(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0 || equals + 1 == text.size())
        throw CLI::ValidationError("--serial",
                                   "\"" + text + "\" is not of the form COM1=/dev/ttyUSB0");
    std::string name = text.substr(0, equals);
    for (char& letter : name)
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    options_.serialPorts[name] = text.substr(equals + 1);
}

std::vector<const CLI::App*> TCommandLine::Chosen() const {
    std::vector<const CLI::App*> chosen = {&app_};
    while (!chosen.back()->get_subcommands().empty())
        chosen.push_back(chosen.back()->get_subcommands().front());
    return chosen;
}

std::vector<const CLI::App*> TCommandLine::All() const {
    const auto any = [](const CLI::App*) { return true; };
    std::vector<const CLI::App*> all = {&app_};
    for (std::size_t i = 0; i < all.size(); ++i) {
        const std::vector<const CLI::App*> under = all[i]->get_subcommands(any);
        all.insert(all.end(), under.begin(), under.end());
    }
    return all;
}

std::vector<std::string> TCommandLine::KnownWords(const std::vector<const CLI::App*>& apps) {
    std::vector<std::string> words;
    for (const CLI::App* app : apps) {
        for (const CLI::Option* option : app->get_options())
            for (const std::string& name : option->get_lnames())
                words.push_back("--" + name);
        for (const CLI::App* under : app->get_subcommands([](const CLI::App*) { return true; }))
            words.push_back(under->get_name());
    }
    return words;
}

}  // namespace tolvane
