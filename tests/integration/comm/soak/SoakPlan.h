#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "simulator/Faults.h"

namespace tolvane::test {

// What a soak sends, which faults the scale shows, and what must come of it. Everything follows
// from the seed, and nothing is taken from the code under test.

enum class TWire { Tcp, Udp, Serial };

enum class TResult {
    NotDrawn,  // nothing definite follows from the fault on this wire
    Answered,
    Timeout,
    WrongAnswer,   // after all repeats
    Lost,          // the link broke during the read
    LostSend,      // the link was found broken before the request
    Refused,       // with code 7
    NoData,        // a reply without an error code
    TooShort,      // a frame without room for a body
    Address,       // of another scale
    OtherCommand,  // one more than the right one
    Checksum,      // one more than the right one
    DataBit,       // a frame that is right except for one bit of its data
    Foreign,       // another sender's reply to another command
    Stale          // the reply to the exchange before; accepted when that was of the same command
};

// What has to be done before the next exchange, because of the fault.
enum class TAfter {
    Nothing,
    Reopen,   // the channel
    Drain,    // replies wait in the socket: read them
    Restart,  // the scale, whose port is gone, and then open the channel
    HangUp,   // the scale ends the connection: wait for that; the next exchange finds it lost
    Hold      // the scale withholds its reply: the next exchange gets it
};

// How time passes in a read that ends in a time-out.
enum class TSilence {
    Wait,       // really waits for the last 10 ms of it
    AtOnce,     // without another look at the wire
    AfterBytes  // when all that the scale sends has been read
};

struct TOnWire {
    TResult result = TResult::Answered;
    TAfter after = TAfter::Nothing;
    int requests = 1;
};

struct TSoakFault {
    const char* name;
    simulator::TFault fault;
    std::array<TOnWire, 3> onWire;  // by TWire
    TSilence silence = TSilence::Wait;
    bool obeys = true;
    // Bytes that the channel drops before the reply, per faulty reply; -1: all of it.
    int dropped = 0;
};

const std::vector<TSoakFault>& SoakFaults();

enum class TSoakCommand { Version, PrgMode, Price, PriceWeight, PriceC, Param };

std::uint8_t CodeOf(TSoakCommand command);

struct TSoakExchange {
    TSoakCommand command = TSoakCommand::Version;
    int plu = 1;
    int hundredths = 0;
    const TSoakFault* fault = nullptr;  // null: the scale does everything right
    TOnWire expected{};
    TSoakCommand heldCommand = TSoakCommand::Version;  // with Stale: whose reply it is
};

// `count` exchanges, of which each draws a fault with a chance of 5 %.
std::vector<TSoakExchange> MakePlan(TWire wire, std::uint32_t seed, int count);

// What LastError must be after the exchange, empty when it must succeed. `address` is the
// channel's: "127.0.0.1:1001" or a port's name.
std::string ExpectedText(const TSoakExchange& exchange, TWire wire, const std::string& address);

inline constexpr const char* kSoakText = "Soak";
inline constexpr int kSoakParameter = 5;

}  // namespace tolvane::test
