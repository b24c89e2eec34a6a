#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/TypesUnit.h"
#include "upload/ProgrammingMode.h"

namespace tolvane {

enum class TScaleOutcome : std::uint8_t {
    Done,        // everything that was asked for, or there was nothing to do
    Failed,      // the scale answered, but not everything could be done
    NotReached,  // no connection, or no answer to the first commands
    Locked,      // another run works on the scale
    Stopped,     // interrupted, or the deadline has passed
};

// The word for an outcome in data that programs read.
std::string_view OutcomeName(TScaleOutcome outcome);

// An article that the scale does not hold as it should, and why.
struct TRefusedArticle {
    std::int32_t number = 0;  // in the database, not cut
    std::string name{};       // code page 1251
    std::string reason{};     // code page 1251
};

// An article that a scale has acknowledged; in a plan, one that would be sent.
struct TSentArticle {
    std::int32_t number = 0;  // in the scale
    std::string name{};       // code page 1251; of one that is deleted nobody knows it
    bool isDeleted = false;
};

// What became of one scale. Texts are code page 1251.
struct TScaleResult {
    TScaleRec rec{};
    TScaleOutcome outcome = TScaleOutcome::Done;
    std::string error{};
    std::string ledgerNote{};  // why nothing was known of the scale
    std::optional<TScaleVersion> version{};
    std::optional<std::chrono::microseconds> exchange{};  // of one command and its reply
    std::size_t written = 0;
    std::size_t unchanged = 0;
    std::size_t deleted = 0;
    std::size_t pending = 0;                 // still to be written
    std::vector<TRefusedArticle> refused{};  // by the scale, or they cannot be sent
    std::vector<TRefusedArticle> leftOut{};  // not fit to be written into this scale
    // Numbers that the scale holds by the ledger, and that are not in its list any more.
    std::vector<std::int32_t> strays{};
    std::vector<TSentArticle> sent{};  // by a run that writes, for its page
    bool mayBeProgramming = false;     // the scale may not be weighing
    bool usable = true;                // false: its section in the scale list has a fault
    std::chrono::milliseconds duration{};
};

}  // namespace tolvane
