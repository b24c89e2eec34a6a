#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "command/Options.h"
#include "command/World.h"
#include "database/ClientLibrary.h"

namespace tolvane {

// While the database is read, a call may hang for as long as its server likes, and for ever when
// the network loses the answer. An interrupt, the deadline, or a call that lasts longer than
// world.longestAnswer then ends the process (world.leave) with a word about why; no scale has been
// touched yet. A server's client is left at once. The embedded engine gets world.longestEnding to
// end what it does: a process that goes amid it may leave locked what the engines of all processes
// share, and they would wait for it for ever. To be made before the client library is loaded.
class TDatabaseWatch {
public:
    // Both outlive the watch. Nobody else writes to world.err meanwhile, but by Tell.
    TDatabaseWatch(const TCommandOptions& options, TWorld& world);
    TDatabaseWatch(const TDatabaseWatch&) = delete;
    TDatabaseWatch& operator=(const TDatabaseWatch&) = delete;
    ~TDatabaseWatch();

    // Says something on world.err.
    void Tell(const std::string& text);
    // A new answer is waited for from here on. The library is at rest: a process that is being left
    // does not come back from here.
    void Expect();
    // The same, and a new one with each call that this count shows; null: the next one may take any
    // time, such as the building of an index.
    void Follow(TCallCount calls);

private:
    struct TEnd {
        TExitCode code;
        std::string text;
    };

    void Work();
    // Why the process is to be left: an answer has been waited for too long; another reason.
    std::optional<TEnd> Silence();
    std::optional<TEnd> Look() const;
    void Tell(const TEnd& end);

    const TCommandOptions& options_;
    TWorld& world_;
    std::mutex mutex_;
    std::condition_variable change_;
    bool ended_ = false;
    bool leaving_ = false;
    bool limited_ = true;
    TCallCount calls_;
    std::uint64_t seenCalls_ = 0;
    std::chrono::milliseconds silence_{};
    std::jthread thread_;
};

}  // namespace tolvane
