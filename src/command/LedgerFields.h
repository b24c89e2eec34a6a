#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "command/LedgerContent.h"

namespace tolvane {

// One part of a ledger's identity: how the file holds it, and what a person calls it.
struct TLedgerField {
    std::string_view section;
    std::string_view key;
    std::string_view words;
    std::variant<std::int32_t TLedgerIdentity::*, std::string TLedgerIdentity::*> member;
    bool isTheScale = true;  // not only how the same scale is written to
};

inline constexpr std::string_view kScaleSection = "scale";
inline constexpr std::string_view kChoicesSection = "choices";

// In the order in which differences are told. The file and the comparison both follow this table.
inline constexpr auto kLedgerFields = std::to_array<TLedgerField>({
    {kScaleSection, "number", "number", &TLedgerIdentity::number},
    {kScaleSection, "connection", "connection", &TLedgerIdentity::connection},
    {kScaleSection, "address", "address", &TLedgerIdentity::address},
    {kScaleSection, "port", "port", &TLedgerIdentity::port},
    {kScaleSection, "speed", "speed", &TLedgerIdentity::speed, false},
    {kScaleSection, "busAddress", "bus address", &TLedgerIdentity::busAddress},
    {kScaleSection, "model", "model", &TLedgerIdentity::model},
    {kScaleSection, "encoding", "code table", &TLedgerIdentity::encoding, false},
    {kChoicesSection, "price", "choice of the price", &TLedgerIdentity::price, false},
    {kChoicesSection, "name1", "choice of the first name", &TLedgerIdentity::name1, false},
    {kChoicesSection, "name2", "choice of the second name", &TLedgerIdentity::name2, false},
});

struct TLedgerDifference {
    std::string text{};         // "the address differs: 10.0.0.6, before 10.0.0.5": the first one
    bool isOtherScale = false;  // which has never held what the former one held
};
// Nothing when there is none.
std::optional<TLedgerDifference> DifferenceOf(const TLedgerIdentity& now,
                                              const TLedgerIdentity& before);
std::optional<TLedgerDifference> DifferenceOf(const TScaleReport& now, const TScaleReport& before);

// In the order of TRunOutcome.
inline constexpr auto kOutcomeNames = std::to_array<std::string_view>(
    {"running", "done", "failed", "stopped", "locked", "not reached"});
// The last one in older files.
inline constexpr std::string_view kOldNotReached = "dead";

}  // namespace tolvane
