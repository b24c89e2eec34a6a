#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "command/Options.h"
#include "command/World.h"

namespace tolvane {

// While the database is read, a call may hang for as long as its server likes. An interrupt or the
// deadline then ends the process at once (world.leave) with a word about why; no scale has been
// touched yet. To be made before the client library is loaded.
class TDatabaseWatch {
public:
    // Both outlive the watch. Nobody else writes to world.err meanwhile, but by Tell.
    TDatabaseWatch(const TCommandOptions& options, TWorld& world);
    TDatabaseWatch(const TDatabaseWatch&) = delete;
    TDatabaseWatch& operator=(const TDatabaseWatch&) = delete;
    ~TDatabaseWatch();

    // Says something on world.err.
    void Tell(const std::string& text);

private:
    void Work();
    // Whether the process is being left.
    bool Look();
    void Leave(TExitCode code, const char* text);

    const TCommandOptions& options_;
    TWorld& world_;
    std::mutex mutex_;
    std::condition_variable change_;
    bool ended_ = false;
    std::jthread thread_;
};

}  // namespace tolvane
