#include "command/DatabaseWatch.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <system_error>

#include "system/Interrupts.h"

namespace tolvane {
namespace {

constexpr std::chrono::milliseconds kPoll{50};

}  // namespace

TDatabaseWatch::TDatabaseWatch(const TCommandOptions& options, TWorld& world)
    : options_(options), world_(world) {
    if (Look()) return;
    // The library replaces the handlers for a while, and must not be called on this thread.
    const TInterruptsBlocked blocked;
    try {
        thread_ = std::jthread([this] { Work(); });
    } catch (const std::system_error&) {
        // A system without threads: an interrupt waits until the library returns.
    }
}

TDatabaseWatch::~TDatabaseWatch() {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    change_.notify_all();
}

void TDatabaseWatch::Tell(const std::string& text) {
    const std::lock_guard lock(mutex_);
    world_.err << text << std::endl;
}

void TDatabaseWatch::Work() {
    std::unique_lock lock(mutex_);
    while (!change_.wait_for(lock, kPoll, [this] { return ended_; }))
        if (Look()) return;
}

bool TDatabaseWatch::Look() {
    if (world_.interrupts() > 0) {
        Leave(TExitCode::Interrupted,
              "Interrupted while the database was read; no scale was touched.");
        return true;
    }
    if (options_.deadline && world_.clock.Now() - world_.start >= *options_.deadline) {
        Leave(TExitCode::Database,
              "The deadline has passed while the database was read; no scale was touched.");
        return true;
    }
    return false;
}

void TDatabaseWatch::Leave(TExitCode code, const char* text) {
    world_.err << "tolvane: " << text << std::endl;
    LogEnd(world_.log, code, text);
    world_.leave(code);
}

}  // namespace tolvane
