#include "command/DatabaseWatch.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "database/Attachment.h"
#include "system/Interrupts.h"

namespace tolvane {
namespace {

constexpr std::chrono::milliseconds kPoll{50};

}  // namespace

TDatabaseWatch::TDatabaseWatch(const TCommandOptions& options, TWorld& world)
    : options_(options), world_(world) {
    if (const std::optional<TEnd> end = Look()) {
        Tell(*end);
        world_.leave(end->code);
        return;
    }
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
    std::unique_lock lock(mutex_);
    silence_ = {};
    if (!leaving_) return;
    ended_ = true;
    change_.notify_all();
    change_.wait(lock, [this] { return !leaving_; });
}

void TDatabaseWatch::Follow(TCallCount calls) {
    const std::lock_guard lock(mutex_);
    limited_ = calls != nullptr;
    calls_ = std::move(calls);
    silence_ = {};
}

void TDatabaseWatch::Work() {
    std::unique_lock lock(mutex_);
    while (!change_.wait_for(lock, kPoll, [this] { return ended_; })) {
        std::optional<TEnd> end = Look();
        if (!end) end = Silence();
        if (!end) continue;
        Tell(*end);
        leaving_ = true;
        if (IsEmbedded(options_.database))
            change_.wait_for(lock, world_.longestEnding, [this] { return ended_; });
        world_.leave(end->code);
        leaving_ = false;
        change_.notify_all();
        return;
    }
}

// Counts its own looks instead of the clock's time, as a process may be stopped for a while.
std::optional<TDatabaseWatch::TEnd> TDatabaseWatch::Silence() {
    const std::uint64_t calls = calls_ ? calls_->load() : 0;
    if (std::exchange(seenCalls_, calls) != calls) silence_ = {};
    silence_ += kPoll;
    if (!limited_ || silence_ < world_.longestAnswer) return {};
    const auto seconds = std::chrono::ceil<std::chrono::seconds>(world_.longestAnswer);
    return TEnd{TExitCode::Database, "The database has not answered for " +
                                         std::to_string(seconds.count()) +
                                         " seconds; no scale was touched."};
}

std::optional<TDatabaseWatch::TEnd> TDatabaseWatch::Look() const {
    if (world_.interrupts() > 0)
        return TEnd{TExitCode::Interrupted,
                    "Interrupted while the database was read; no scale was touched."};
    if (options_.deadline && world_.clock.Now() - world_.start >= *options_.deadline)
        return TEnd{TExitCode::Database,
                    "The deadline has passed while the database was read; no scale was touched."};
    return {};
}

void TDatabaseWatch::Tell(const TEnd& end) {
    world_.err << "tolvane: " << end.text << std::endl;
    LogEnd(world_.log, end.code, end.text);
    const std::string failure = world_.page.Write(end.code, end.text);
    if (!failure.empty()) world_.err << "tolvane: " << failure << std::endl;
}

}  // namespace tolvane
