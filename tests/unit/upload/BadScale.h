#pragma once

#include <cstdint>
#include <string>

#include "simulator/Faults.h"

namespace tolvane::test {

// A fault at the `request`-th request of a command, or at each of them when that is 0.
inline simulator::TFault Fault(simulator::TFaultKind kind, std::uint8_t command, int request,
                               int code = 0) {
    simulator::TFault fault;
    fault.kind = kind;
    fault.command = command;
    fault.request = request;
    fault.code = code;
    return fault;
}

inline constexpr int kEveryTime = 0;

inline constexpr std::uint8_t kWeight = 0x3C;
inline constexpr std::uint8_t kPrg = 0x36;
inline constexpr std::uint8_t kVersion = 0x48;
inline constexpr std::uint8_t kListedPrice = 0x49;
inline constexpr std::uint8_t kPrice = 0x4A;
inline constexpr std::uint8_t kPiecePrice = 0x4B;
inline constexpr std::uint8_t kParam = 0x4C;

// How the driver reports a bad reply.
inline const std::string kSilence =
    "[ReadResponce][SCRIPT] Fail read data (peer) - Read timeout occured";
inline const std::string kMisheard =
    "[ReadResponce][SCRIPT] Fail read data (peer) - Wrong answer. No STX byte.";
inline const std::string kNoCode = "Unexpected answer from scale. No error code";
inline const std::string kNotTheAddress =
    "Unexpected answer from scale. Scale address does not match.Exp:00 Rec:01)";
inline const std::string kNotTheSum = "Unexpected answer from scale. Invalid Checksum. ";
inline const std::string kNotTheCommand = "Unexpected answer from scale. Command does not match.";

// How a command reports that no good reply came.
inline const std::string kPrgFails = "[SetPrgMode] ErrCode: 1000, Fail set Weight mode: ";
inline const std::string kVersionFails = "[GetVersion] ErrCode: 0, Fail get version: ";
inline const std::string kPriceFails = "[SetPrice] ErrCode: 0, Fail set PLU price: ";

// Names a parameterised test after its row.
inline constexpr auto kRowName = [](const auto& row) { return row.param.name; };

}  // namespace tolvane::test
