#pragma once

#include <string>
#include <vector>

#include "command/Options.h"

namespace tolvane {

// The value of an option that the command line does not give.
struct TSetting {
    std::string option;  // without its dashes
    std::string value;   // UTF-8
    std::string source;  // "TOLVANE_JOBS", "/etc/tolvane/tolvane.conf"
};

// The configuration file that --config, TOLVANE_CONFIG or the default names.
struct TConfigName {
    std::string file;     // UTF-8
    bool isNamed = true;  // it has to be there
};
TConfigName ConfigFile(const std::string& onLine, const TEnvironment& environment);

// What variables and the configuration file say, a variable first; a value that is empty says
// nothing. Throws TUsageError for a file that is missing though it is named, that cannot be read,
// that has no section [tolvane] though it says something, or that holds an unknown setting.
std::vector<TSetting> ReadSettings(const TConfigName& config, const TEnvironment& environment);

}  // namespace tolvane
