#include "command/Settings.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <sstream>

#include "command/DefaultPaths.h"
#include "command/NamedFile.h"
#include "command/Nearest.h"
#include "command/OptionValues.h"
#include "command/UsageError.h"
#include "config/IniDocument.h"
#include "text/Cp1251.h"
#include "text/OneLine.h"

namespace tolvane {
namespace {

constexpr std::string_view kSection = "tolvane";

// Options with a value that is not about a single run.
const std::vector<std::string>& SettingNames() {
    static const std::vector<std::string> kNames = {"scale",
                                                    "ini",
                                                    "state",
                                                    "database",
                                                    "user",
                                                    "password-file",
                                                    "client-library",
                                                    "serial",
                                                    "jobs",
                                                    "price",
                                                    "deadline",
                                                    "lock-wait",
                                                    "log",
                                                    "trace",
                                                    "max-age",
                                                    "name1",
                                                    "name2",
                                                    "udp-local-port",
                                                    "report"};
    return kNames;
}

std::string VariableOf(std::string option) {
    for (char& letter : option)
        letter = letter == '-'
                     ? '_'
                     : static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    return "TOLVANE_" + option;
}

void CheckKeys(const TIniDocument& document, const std::string& file) {
    const std::vector<std::string>& names = SettingNames();
    for (const std::string& key : document.Keys(kSection)) {
        const bool isKnown = std::any_of(names.begin(), names.end(), [&](const std::string& name) {
            return EqualIgnoringCase(name, key);
        });
        if (isKnown) continue;
        const std::string near = Nearest(ToUtf8(key), names);
        throw TUsageError("The configuration file " + file +
                          " holds an unknown setting: " + OnOneLine(ToUtf8(key)) +
                          (near.empty() ? "." : ". Did you mean " + near + "?"));
    }
}

// Whether the file says anything, where it is not a comment.
bool SaysAnything(const std::string& bytes) {
    std::istringstream lines(bytes);
    for (std::string line; std::getline(lines, line);)
        if (const std::string_view text = Trim(line);
            !text.empty() && !text.starts_with(';') && !text.starts_with('#'))
            return true;
    return false;
}

TIniDocument ReadConfig(const TConfigName& config) {
    const auto bytes = ReadNamedFile("configuration file", PathOf(config.file));
    if (config.isNamed && !bytes)
        throw TUsageError("There is no configuration file " + config.file + ".");
    TIniDocument document(bytes.value_or(std::string()));
    if (!document.HasSection(kSection) && SaysAnything(bytes.value_or(std::string())))
        throw TUsageError("The configuration file " + config.file +
                          " has no section [tolvane], in which the settings stand.");
    CheckKeys(document, config.file);
    return document;
}

}  // namespace

TConfigName ConfigFile(const std::string& onLine, const TEnvironment& environment) {
    if (!onLine.empty()) return {.file = onLine};
    const std::string variable = environment(VariableOf("config")).value_or("");
    if (!variable.empty()) return {.file = variable};
    return {.file = DefaultConfigFile(environment), .isNamed = false};
}

std::vector<TSetting> ReadSettings(const TConfigName& config, const TEnvironment& environment) {
    const TIniDocument document = ReadConfig(config);
    std::vector<TSetting> settings;
    for (const std::string& name : SettingNames()) {
        const std::string variable = environment(VariableOf(name)).value_or("");
        const std::string configured = ToUtf8(document.ReadText(kSection, name, {}));
        if (!variable.empty())
            settings.push_back({.option = name, .value = variable, .source = VariableOf(name)});
        else if (!configured.empty())
            settings.push_back({.option = name, .value = configured, .source = config.file});
    }
    return settings;
}

}  // namespace tolvane
