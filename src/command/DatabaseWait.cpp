#include "command/DatabaseWait.h"

#include <chrono>
#include <string>

namespace tolvane {
namespace {

constexpr std::chrono::seconds kLongestUse{30};
constexpr TMilliseconds kUsePause{150};

}  // namespace

void TDatabaseWait::Pause(const TDatabaseInUse& error) {
    const TTimePoint now = world_.clock.Now();
    const std::string seconds = std::to_string(kLongestUse.count()) + " seconds";
    if (!end_) {
        end_ = now + kLongestUse;
        if (!options_.quiet)
            watch_.Tell("Another program has the database open; waiting up to " + seconds +
                        " for it.");
    }
    if (now >= *end_)
        throw TDatabaseInUse(
            std::string(error.what()) + "\nIt was still open after " + seconds + ".",
            error.Status(), error.SqlCode());
    world_.clock.Sleep(kUsePause);
    watch_.Expect();
}

}  // namespace tolvane
