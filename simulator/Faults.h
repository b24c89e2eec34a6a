#pragma once

#include <chrono>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Frame.h"

namespace tolvane::simulator {

// What a scale does wrong. The name in JSON and on the command line is beside each.
enum class TFaultKind {
    Error,         // "error": refuses with `code` and does nothing
    Empty,         // "empty": a reply without data
    WrongAddress,  // "wrong-address": one more than the right one
    WrongCommand,  // "wrong-command": one more than the right one
    BadChecksum,   // "bad-checksum": one more than the right one
    NoStx,         // "no-stx": without the start byte
    BadEtx,        // "bad-etx": 0x55 (or the first of `bytes`) in place of the end byte
    Truncated,     // "truncated": without the last `count` bytes (2)
    Raw,           // "raw": `bytes` in place of the reply
    EtxFirst,      // "etx-first": an end byte in front of the reply
    NoiseBefore,   // "noise-before": `bytes` (55 AA 55), `count` times, in front of the reply
    NoiseAfter,    // "noise-after": the same after it
    Double,        // "double": the reply twice in one segment
    Stray,         // "stray": over UDP, `bytes` from another socket before the reply
    NoReply,       // "no-reply": this request is not answered, nor obeyed
    Silent,        // "silent": no request is answered or obeyed for `ms`, or ever again
    Slow,          // "slow": the reply, and all after it, wait `ms` (500)
    Late,          // "late": the reply comes after `ms` (1500), `times` times, and later requests
                   // are answered in the meantime
    Held,          // "held": the reply comes just before the reply to the next request
    Split,         // "split": byte by byte, `ms` (2) apart
    SplitAt,       // "split-at": in two parts, the first of `count` bytes, `ms` (20) apart
    Disconnect,    // "disconnect": closes the connection after the reply
    Drop,          // "drop": obeys and closes the connection instead of the reply
    Cut,           // "cut": closes it after the first half of the reply
    HalfClose,     // "half-close": after the reply closes its own direction only
    Reset          // "reset": obeys and resets the connection instead of the reply
};

// One fault and the requests that it applies to. Requests are numbered from 1 as they arrive; with
// a `command`, only its requests are counted. `request` selects a single request; otherwise `from`
// and `to` bound a range. With `percent` below 100 the fault hits that share of them at random.
struct TFault {
    TFaultKind kind = TFaultKind::NoReply;
    int request = 0;  // 0: not set, and so for `from` and `to`
    int from = 0;
    int to = 0;
    std::optional<std::uint8_t> command{};
    double percent = 100;
    int code = 1;
    std::optional<std::chrono::milliseconds> ms{};
    std::optional<int> count{};
    int times = 1;
    TBytes bytes{};
};

struct TFaultScript {
    std::vector<TFault> faults{};
    std::uint32_t seed = 1;
};

std::string_view FaultName(TFaultKind kind);

// Read a list of faults, or an object with "faults" and "seed". Throw std::runtime_error that names
// the fault and the key.
TFaultScript FaultsFromJson(const nlohmann::json& json);
TFaultScript LoadFaults(const std::string& path);
// "KIND,key=value,...", as on the command line: "error,command=SetPrice,from=3,code=7".
TFault FaultFromText(std::string_view text);

}  // namespace tolvane::simulator
