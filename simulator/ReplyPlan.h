#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <vector>

#include "simulator/Faults.h"
#include "simulator/Frame.h"

namespace tolvane::simulator {

// What a link does to answer one request: the steps in order, each `delay` after the one before,
// then the ending. A detached plan runs beside the plans of later requests; all others run one
// after another. A plan without steps sends nothing.
struct TSendStep {
    std::chrono::milliseconds delay{0};
    TBytes bytes{};      // one segment or datagram; an empty one matters to UDP only
    bool stray = false;  // over UDP from another socket, elsewhere not sent at all
};

enum class TEnding { Keep, Close, HalfClose, Reset };

struct TReplyPlan {
    std::vector<TSendStep> steps{};
    bool detached = false;
    TEnding ending = TEnding::Keep;
};

struct TReply {
    std::uint8_t address = 0;
    std::uint8_t command = 0;
    TBytes data{};
};

// Applies the faults in the order of their kinds: first to the frame's contents, then to its bytes,
// then to the time and the connection. The caller handles Held and the faults that keep the scale
// from obeying (Error, NoReply, Silent).
TReplyPlan BuildPlan(const TReply& reply, std::span<const TFault> faults);

}  // namespace tolvane::simulator
