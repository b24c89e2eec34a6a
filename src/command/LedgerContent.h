#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "config/TypesUnit.h"
#include "upload/ArticleLine.h"

namespace tolvane {

// Texts are code page 1251; what has no meaning for a connection is empty or 0.

// "EVL", or the code of a model that has no name.
std::string ModelName(std::int32_t code);

// What decides, before a scale is asked, whether claims still hold for it.
struct TLedgerIdentity {
    std::int32_t number = 0;
    std::string connection;  // "serial", "tcp", "udp"
    std::string address;     // of a network scale, or the serial port's name
    std::int32_t port = 0;
    std::int32_t speed = 0;  // bits per second
    std::int32_t busAddress = 0;
    std::string model;
    std::int32_t encoding = 0;
    std::string price;  // "retail", "wholesale"
    std::int32_t name1 = 0;
    std::int32_t name2 = 0;

    friend bool operator==(const TLedgerIdentity&, const TLedgerIdentity&) = default;
};
TLedgerIdentity IdentityOf(const TScaleRec& scale, const TLineChoices& choices);

// What the scale answers to GetVersion.
struct TScaleReport {
    std::string version;
    std::int32_t maxPlu = 0;
    std::int32_t labelMode = 0;

    friend bool operator==(const TScaleReport&, const TScaleReport&) = default;
};

// The scale has acknowledged every command of an article. The digest is of those commands, by the
// caller: 64 bits, since two digests are only ever compared for one article, and a number cannot be
// malformed as a text can.
struct TClaim {
    std::uint64_t digest = 0;
    std::chrono::sys_seconds acknowledged{};

    friend bool operator==(const TClaim&, const TClaim&) = default;
};
// By the article's number in the scale.
using TClaims = std::map<std::int32_t, TClaim>;

enum class TRunOutcome : std::uint8_t {
    Running,  // or killed, when no run holds the scale's lock
    Done,
    Failed,
    Stopped,
    Locked,
    NotReached,
};
// As in the file: "running", "done", …; the same words as of TScaleOutcome.
std::string_view OutcomeName(TRunOutcome outcome);

struct TLastRun {
    std::chrono::sys_seconds start{};
    std::optional<std::chrono::sys_seconds> end;
    TRunOutcome outcome = TRunOutcome::Running;
    std::string error;
    std::int32_t written = 0;
    std::int32_t unchanged = 0;
    std::int32_t refused = 0;
    std::int32_t leftOut = 0;
    std::int32_t pending = 0;

    friend bool operator==(const TLastRun&, const TLastRun&) = default;
};

struct TLedgerContent {
    TLedgerIdentity identity;
    std::optional<TScaleReport> report;  // there is one when there are claims
    // The scale was told to go into programming mode and has not confirmed since that it weighs.
    bool mayBeProgramming = false;
    std::optional<TLastRun> lastRun;
    TClaims claims;
    // Without a claim, but the scale may hold something of them: they were begun and not
    // acknowledged, or the claim could not be trusted any more.
    std::set<std::int32_t> unsure{};
    std::optional<std::chrono::sys_seconds> saved;

    friend bool operator==(const TLedgerContent&, const TLedgerContent&) = default;
};

}  // namespace tolvane
