#pragma once

#include <string>

#include "command/Options.h"

namespace tolvane {

// Where things are when nobody says otherwise, UTF-8: on Windows in %ProgramData%\Tolvane;
// elsewhere the configuration in /etc/tolvane, and the state where the service manager wants it
// ($STATE_DIRECTORY) or in the user's folder for states.
std::string DefaultConfigFile(const TEnvironment& environment);
std::string DefaultScaleList(const TEnvironment& environment);
std::string DefaultStateFolder(const TEnvironment& environment);

}  // namespace tolvane
