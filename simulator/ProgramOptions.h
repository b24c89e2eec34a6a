#pragma once

#include <optional>
#include <string>

#include "simulator/PageServer.h"
#include "simulator/VirtualScale.h"

namespace tolvane::simulator {

struct TProgramOptions {
    TScaleOptions scale{};
    std::optional<TPageOptions> page{};  // the page, when it is wanted
    std::string savePath{};
    bool saveOnWeighing = false;
    std::string readyPath{};
    std::string showPath{};
    bool print = false;
    bool trace = false;
    std::optional<int> exitCode{};  // set when the program has to end now
};

// Reads the command line; prints the help and its errors itself. Throws std::runtime_error for a
// file that cannot be read and for a bad fault.
TProgramOptions ParseProgramOptions(int argc, const char* const* argv);

}  // namespace tolvane::simulator
