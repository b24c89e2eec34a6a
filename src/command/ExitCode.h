#pragma once

namespace tolvane {

// What the command ends with; docs/command.md explains each.
enum class TExitCode : int {
    Done = 0,
    Internal = 1,
    Usage = 2,  // also the configuration
    SomeFailed = 3,
    Database = 4,
    NoScaleReached = 5,
    ProblemsFound = 6,
    Locked = 11,
    Interrupted = 130,
};

}  // namespace tolvane
