#include "command/DefaultPaths.h"

#include <optional>

namespace tolvane {
namespace {

// An empty variable is none.
std::optional<std::string> Given(const TEnvironment& environment, const std::string& name) {
    std::optional<std::string> value = environment(name);
    return value && !value->empty() ? value : std::nullopt;
}

// In the configuration's folder.
std::string Configured(const TEnvironment& environment, const std::string& file) {
    if (const auto shared = Given(environment, "ProgramData"))
        return *shared + "\\Tolvane\\" + file;
    return "/etc/tolvane/" + file;
}

}  // namespace

std::string DefaultConfigFile(const TEnvironment& environment) {
    return Configured(environment, "tolvane.conf");
}

std::string DefaultScaleList(const TEnvironment& environment) {
    return Configured(environment, "Tolvane.ini");
}

std::string DefaultStateFolder(const TEnvironment& environment) {
    if (const auto shared = Given(environment, "ProgramData")) return *shared + "\\Tolvane\\state";
    if (const auto given = Given(environment, "STATE_DIRECTORY")) return *given;
    if (const auto states = Given(environment, "XDG_STATE_HOME")) return *states + "/tolvane";
    return environment("HOME").value_or("") + "/.local/state/tolvane";
}

}  // namespace tolvane
