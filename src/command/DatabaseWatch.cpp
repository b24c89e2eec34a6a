#include "command/DatabaseWatch.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <system_error>
#include <utility>

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

void TDatabaseWatch::Expect() {
    const std::lock_guard lock(mutex_);
    silence_ = {};
}

void TDatabaseWatch::Follow(TCallCount calls) {
    const std::lock_guard lock(mutex_);
    limited_ = calls != nullptr;
    calls_ = std::move(calls);
    silence_ = {};
}

void TDatabaseWatch::Work() {
    std::unique_lock lock(mutex_);
    while (!change_.wait_for(lock, kPoll, [this] { return ended_; }))
        if (Look() || IsSilent()) return;
}

// Counts its own looks instead of the clock's time, as a process may be stopped for a while.
bool TDatabaseWatch::IsSilent() {
    const std::uint64_t calls = calls_ ? calls_->load() : 0;
    if (std::exchange(seenCalls_, calls) != calls) silence_ = {};
    silence_ += kPoll;
    if (!limited_ || silence_ < world_.longestAnswer) return false;
    const auto seconds = std::chrono::ceil<std::chrono::seconds>(world_.longestAnswer);
    Leave(TExitCode::Database, "The database has not answered for " +
                                   std::to_string(seconds.count()) +
                                   " seconds; no scale was touched.");
    return true;
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

void TDatabaseWatch::Leave(TExitCode code, const std::string& text) {
    world_.err << "tolvane: " << text << std::endl;
    LogEnd(world_.log, code, text);
    const std::string failure = world_.page.Write(code, text);
    if (!failure.empty()) world_.err << "tolvane: " << failure << std::endl;
    world_.leave(code);
}

}  // namespace tolvane
