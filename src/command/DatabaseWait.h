#pragma once

#include <optional>

#include "command/DatabaseWatch.h"
#include "command/Options.h"
#include "command/World.h"
#include "database/Attachment.h"

namespace tolvane {

// Waits for a database file that another program has, such as a run that reads it now.
class TDatabaseWait {
public:
    // All outlive the wait; the watch hears an interrupt and the deadline meanwhile.
    TDatabaseWait(const TCommandOptions& options, TWorld& world, TDatabaseWatch& watch)
        : options_(options), world_(world), watch_(watch) {}

    // What `attach` returns. It is called again while it throws TDatabaseInUse, for half a minute,
    // after which that is thrown, with a word about the wait.
    template <class Attach>
    auto WhenFree(Attach attach) {
        for (;;) {
            try {
                return attach();
            } catch (const TDatabaseInUse& error) {
                Pause(error);
            }
        }
    }

private:
    // Throws when the time is over.
    void Pause(const TDatabaseInUse& error);

    const TCommandOptions& options_;
    TWorld& world_;
    TDatabaseWatch& watch_;
    std::optional<TTimePoint> end_{};
};

}  // namespace tolvane
