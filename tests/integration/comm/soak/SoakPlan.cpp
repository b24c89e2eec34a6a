#include "tests/integration/comm/soak/SoakPlan.h"

#include "simulator/Hex.h"
#include "tests/support/Draw.h"

namespace tolvane::test {
namespace {

using simulator::TBytes;
using simulator::TFault;
using simulator::TFaultKind;
using std::chrono::milliseconds;

constexpr int kArticles = 5;
constexpr int kPerThousand = 50;

TFault Once(TFaultKind kind) {
    TFault fault;
    fault.kind = kind;
    fault.request = 1;
    return fault;
}
TFault Always(TFaultKind kind) {
    TFault fault;
    fault.kind = kind;
    return fault;
}
TFault Once(TFaultKind kind, const TBytes& bytes) {
    TFault fault = Once(kind);
    fault.bytes = bytes;
    return fault;
}
TFault Once(TFaultKind kind, milliseconds ms, int times = 1) {
    TFault fault = Once(kind);
    fault.ms = ms;
    fault.times = times;
    return fault;
}
TFault OnceCounted(TFaultKind kind, int count) {
    TFault fault = Once(kind, milliseconds(2));
    fault.count = count;
    return fault;
}
TFault Refusal() {
    TFault fault = Once(TFaultKind::Error);
    fault.code = 7;
    return fault;
}

std::array<TOnWire, 3> Everywhere(TResult result, int requests = 1) {
    const TOnWire on{result, TAfter::Nothing, requests};
    return {on, on, on};
}

std::vector<TSoakFault> MakeFaults() {
    using enum TResult;
    using enum TAfter;
    using K = TFaultKind;
    const TOnWire fine{};
    const TOnWire lost{Lost, Reopen};
    const TOnWire gone{Lost, Restart};
    const TOnWire hangsUp{Answered, HangUp};
    const TOnWire no{NotDrawn};
    const TOnWire silent{Timeout};
    const auto end = TSilence::AfterBytes;
    return {
        {"refusal", Refusal(), Everywhere(Refused), {}, false},
        {"no data", Once(K::Empty), Everywhere(NoData)},
        {"another address", Once(K::WrongAddress), Everywhere(Address)},
        {"another command", Once(K::WrongCommand), Everywhere(OtherCommand)},
        {"bad checksum", Once(K::BadChecksum), Everywhere(Checksum)},
        {"flipped data bit", Once(K::Raw), Everywhere(DataBit)},
        {"no start byte once", Once(K::NoStx), Everywhere(Answered, 2), {}, true, -1},
        {"never a start byte", Always(K::NoStx), Everywhere(WrongAnswer, 4), {}, true, -1},
        {"garbled end byte", Once(K::BadEtx), Everywhere(Timeout), end},
        {"last bytes missing", Once(K::Truncated), Everywhere(Timeout), end},
        {"only a marker", Once(K::Raw, {0x02, 0x0D, 0x03}), Everywhere(TooShort)},
        {"only an address", Once(K::Raw, {0x02, 0x0D, 0x14, 0x03}), Everywhere(TooShort)},
        {"end byte first, once", Once(K::EtxFirst), Everywhere(Answered, 2), {}, true, 1},
        {"end byte always first", Always(K::EtxFirst), Everywhere(WrongAnswer, 4), {}, true, 1},
        {"noise before", Once(K::NoiseBefore), Everywhere(Answered), {}, true, 3},
        // A datagram is cut to 100 bytes, and this one's first 120 are noise.
        {"much noise", OnceCounted(K::NoiseBefore, 40), {fine, silent, fine}, {}, true, 120},
        {"noise after", Once(K::NoiseAfter), Everywhere(Answered)},
        {"reply doubled", Once(K::Double), Everywhere(Answered)},
        {"stray datagram", Once(K::Stray, {0x55, 0xAA}), Everywhere(Answered)},
        // The request is repeated; the first reply answers the second request.
        {"stray end", Once(K::Stray, {0x55, 0x03}), {fine, TOnWire{Answered, Drain, 2}, fine}},
        {"stray reply",
         Once(K::Stray, {0x02, 0x0D, 0x14, 0x50, 0x14, 0x50, 0x03}),
         {fine, TOnWire{Foreign, Drain}, fine}},
        {"no reply", Once(K::NoReply), Everywhere(Timeout), {}, false},
        {"silence", Once(K::Silent), Everywhere(Timeout), {}, false},
        {"slow reply", Once(K::Slow, milliseconds(5)), Everywhere(Answered)},
        {"late and twice",
         Once(K::Late, milliseconds(3), 2),
         {TOnWire{Timeout, Reopen}, TOnWire{Timeout, Drain}, silent},
         TSilence::AtOnce},
        {"held back",
         Once(K::Held),
         {TOnWire{Timeout, Hold}, TOnWire{Timeout, Hold}, TOnWire{Timeout, Hold}}},
        {"byte by byte", Once(K::Split, milliseconds(1)), Everywhere(Answered)},
        {"in two parts", OnceCounted(K::SplitAt, 3), Everywhere(Answered)},
        {"disconnect", Once(K::Disconnect), {hangsUp, fine, no}},
        {"half close", Once(K::HalfClose), {hangsUp, fine, no}},
        {"drop", Once(K::Drop), {lost, silent, gone}},
        {"cut", Once(K::Cut), {lost, silent, gone}, end},
        {"reset", Once(K::Reset), {lost, silent, gone}},
    };
}

TSoakExchange DrawCommand(TDraw& draw) {
    TSoakExchange exchange;
    exchange.command = static_cast<TSoakCommand>(draw(6));
    exchange.plu = 1 + static_cast<int>(draw(kArticles));
    exchange.hundredths = 1 + static_cast<int>(draw(999'999));
    return exchange;
}

const TSoakFault* DrawFault(TDraw& draw, std::size_t wire) {
    if (draw(1000) >= kPerThousand) return nullptr;
    const auto& faults = SoakFaults();
    for (;;) {
        const TSoakFault& fault = faults[draw(faults.size())];
        if (fault.onWire[wire].result != TResult::NotDrawn) return &fault;
    }
}

}  // namespace

const std::vector<TSoakFault>& SoakFaults() {
    static const std::vector<TSoakFault> faults = MakeFaults();
    return faults;
}

std::uint8_t CodeOf(TSoakCommand command) {
    constexpr std::array<std::uint8_t, 6> kCodes = {0x48, 0x36, 0x49, 0x4A, 0x4B, 0x4C};
    return kCodes[static_cast<std::size_t>(command)];
}

std::vector<TSoakExchange> MakePlan(TWire wire, std::uint32_t seed, int count) {
    TDraw draw(seed);
    const auto onWire = static_cast<std::size_t>(wire);
    std::vector<TSoakExchange> plan;
    for (int i = 0; i < count; ++i) {
        TSoakExchange exchange = DrawCommand(draw);
        const TAfter before = plan.empty() ? TAfter::Nothing : plan.back().expected.after;
        if (before == TAfter::HangUp) {
            exchange.expected = {TResult::LostSend, TAfter::Reopen, 0};
        } else if (before == TAfter::Hold) {
            constexpr std::array kAfter = {TAfter::Reopen, TAfter::Drain, TAfter::Nothing};
            exchange.expected = {TResult::Stale, kAfter[onWire], 1};
            exchange.heldCommand = plan.back().command;
        } else if ((exchange.fault = DrawFault(draw, onWire)) != nullptr) {
            exchange.expected = exchange.fault->onWire[onWire];
        }
        plan.push_back(exchange);
    }
    return plan;
}

}  // namespace tolvane::test
