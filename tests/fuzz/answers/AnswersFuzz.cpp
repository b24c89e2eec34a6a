#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "comm/AnswerReader.h"
#include "comm/DeviceDiscovery.h"
#include "tests/fuzz/Fuzz.h"

namespace tolvane {
namespace {

using fuzz::Must;
using fuzz::TInput;

constexpr TMilliseconds kSlice{100};

class TInputClock : public TClock {
public:
    TTimePoint Now() const override { return now_; }
    void Sleep(TMilliseconds pause) override { now_ += pause; }

private:
    TTimePoint now_{};
};

// How a stream ends after its last bytes.
enum class TEnd : std::uint8_t { Silence, NoLink, Failure };

struct TChunk {
    TMilliseconds after{};  // the chunk before
    TCmdBuffer bytes;
};

struct TStream {
    std::vector<TChunk> chunks;
    TEnd end = TEnd::Silence;
};

// The bytes of the stream, cut and delayed.
class TChunkReceiver : public TByteReceiver {
public:
    TChunkReceiver(const TStream& stream, TInputClock& clock) : stream_(stream), clock_(clock) {
        if (!stream.chunks.empty()) left_ = stream.chunks[0].after;
    }

    void CheckConnected() override {}
    std::span<const std::uint8_t> Receive(TMilliseconds limit) override {
        Must(limit > TMilliseconds(0), "each wait has a limit");
        // Bytes of an earlier call must not be looked at any more.
        given_.clear();
        given_.shrink_to_fit();
        const TMilliseconds longest = std::min(limit, kSlice);
        if (next_ == stream_.chunks.size()) {
            if (stream_.end == TEnd::NoLink)
                throw CommException(kReadNotConnected, "the link is down");
            if (stream_.end == TEnd::Failure) throw std::runtime_error("something else");
            clock_.Sleep(longest);
            return {};
        }
        if (left_ > longest) {
            left_ -= longest;
            clock_.Sleep(longest);
            return {};
        }
        clock_.Sleep(left_);
        given_ = stream_.chunks[next_++].bytes;
        if (next_ < stream_.chunks.size()) left_ = stream_.chunks[next_].after;
        return given_;
    }

private:
    const TStream& stream_;
    TInputClock& clock_;
    std::size_t next_ = 0;
    TMilliseconds left_{};
    TCmdBuffer given_;
};

struct TAnswer {
    std::int32_t code = kReadOk;
    TCmdBuffer reply;

    bool operator==(const TAnswer&) const = default;
};

// The rule, read in the plainest way: from all the bytes that come in time.
TAnswer PlainAnswer(const TStream& stream, const TReadRequest& request) {
    TMilliseconds time{};
    const TMilliseconds deadline(request.timeoutMs);
    TCmdBuffer bytes;
    bool inTime = true;
    for (const TChunk& chunk : stream.chunks) {
        inTime = inTime && time < deadline && time + chunk.after <= deadline;
        if (!inTime) break;
        time += chunk.after;
        bytes.insert(bytes.end(), chunk.bytes.begin(), chunk.bytes.end());
    }
    auto from = bytes.begin();
    if (request.startByte != 0) {
        while (from != bytes.end() && *from != request.startByte) {
            if (request.endByte != 0 && *from == request.endByte) return {kReadWrongAnswer, {}};
            ++from;
        }
    }
    if (request.endByte != 0) {
        const auto end = std::find(from, bytes.end(), request.endByte);
        if (end != bytes.end()) return {kReadOk, TCmdBuffer(from, end + 1)};
    }
    const TCmdBuffer reply(from, bytes.end());
    if (inTime && time < deadline) {
        if (stream.end == TEnd::NoLink) return {kReadNotConnected, reply};
        if (stream.end == TEnd::Failure) return {kReadOtherFailure, reply};
    }
    const bool isWhole = request.endByte == 0 && !reply.empty();
    return {isWhole ? kReadOk : kReadTimeout, reply};
}

TAnswer ReadAnswer(const TStream& stream, const TReadRequest& request) {
    TInputClock clock;
    TChunkReceiver receiver(stream, clock);
    TAnswer answer{.code = 0, .reply = {1, 2, 3}};
    std::string failure;
    answer.code = ReceiveAnswer(receiver, request, clock, answer.reply, failure);
    Must(clock.Now() <= TTimePoint() + TMilliseconds(request.timeoutMs), "the deadline holds");
    Must(failure.empty() == (answer.code == kReadOk), "a failure has words");
    return answer;
}

// The same bytes in any chunks make the same answer.
void TryAnswer(TInput& input) {
    TStream stream;
    const std::uint8_t flags = input.Byte();
    const TReadRequest request{.startByte = (flags & 1) != 0 ? input.Byte() : std::uint8_t{2},
                               .endByte = (flags & 2) != 0 ? input.Byte() : std::uint8_t{3},
                               .timeoutMs = input.Byte() * 10,
                               .timeoutText = "time-out"};
    stream.end = static_cast<TEnd>((flags >> 2) % 3);
    const bool isSlow = (flags & 0x10) != 0;
    while (!input.IsEmpty()) {
        TChunk chunk;
        if (isSlow) chunk.after = TMilliseconds(input.Byte());
        const auto bytes = input.Bytes(1 + input.Below(16));
        chunk.bytes.assign(bytes.begin(), bytes.end());
        stream.chunks.push_back(chunk);
    }
    const TAnswer answer = ReadAnswer(stream, request);
    Must(answer == PlainAnswer(stream, request), "an answer is what it plainly is");
    if (isSlow) return;
    TStream whole{.chunks = {TChunk{}}, .end = stream.end};
    TStream bytes{.chunks = {}, .end = stream.end};
    for (const TChunk& chunk : stream.chunks) {
        for (const std::uint8_t byte : chunk.bytes) {
            whole.chunks[0].bytes.push_back(byte);
            bytes.chunks.push_back({.bytes = {byte}});
        }
    }
    Must(ReadAnswer(whole, request) == answer, "one chunk makes the same answer");
    Must(ReadAnswer(bytes, request) == answer, "single bytes make the same answer");
}

// One probe of a search: what its socket delivers, and what is expected of it.
struct TProbeScript {
    struct TEvent {
        std::uint8_t kind =
            0;  // 0: a pause, 1: a failure, 2: the search is stopped, else an answer
        TProbeSocket::TDatagram datagram;
    };
    bool opens = true;
    std::uint8_t sends = 0;  // how many of its targets cannot be sent to
    std::vector<TEvent> events;
};

class TScriptSocket : public TProbeSocket {
public:
    TScriptSocket(const TProbeScript& script, TInputClock& clock, std::atomic<bool>& stop)
        : script_(script), clock_(clock), stop_(stop) {}

    void Open(std::uint16_t) override {
        if (!script_.opens) throw std::runtime_error("the port is taken");
    }
    void Broadcast(std::span<const std::uint8_t> request, const std::string&,
                   std::uint16_t) override {
        Must(!request.empty(), "a probe has bytes");
        if (sent_++ < script_.sends) throw std::runtime_error("no route");
    }
    std::optional<TDatagram> Receive(TMilliseconds limit) override {
        Must(limit > TMilliseconds(0) && limit <= TMilliseconds(100), "each wait is short");
        if (next_ == script_.events.size()) {
            clock_.Sleep(limit);
            return std::nullopt;
        }
        const TProbeScript::TEvent& event = script_.events[next_++];
        if (event.kind == 1) throw std::runtime_error("the socket failed");
        if (event.kind == 2) stop_ = true;
        if (event.kind > 2) return event.datagram;
        clock_.Sleep(limit);
        return std::nullopt;
    }

private:
    const TProbeScript& script_;
    TInputClock& clock_;
    std::atomic<bool>& stop_;
    std::size_t next_ = 0;
    std::size_t sent_ = 0;
};

constexpr std::size_t kOtherTargets = 2;

// What a probe finds, and whether it fails.
struct TExpected {
    std::vector<TFoundDevice> found;
    bool fails = false;
};

TExpected PlainSearch(const TProbeScript& script, TDeviceKind kind, bool& stopped) {
    TExpected expected;
    if (!script.opens || script.sends > kOtherTargets) return {.found = {}, .fails = true};
    int pauses = 0;
    for (const TProbeScript::TEvent& event : script.events) {
        if (pauses == 10 || stopped) break;
        if (event.kind == 1) {
            expected.fails = true;
            break;
        }
        stopped = event.kind == 2;
        if (event.kind <= 2) {
            ++pauses;
            continue;
        }
        const TFoundDevice device{.address = event.datagram.sender, .kind = kind};
        const bool isNew =
            std::find(expected.found.begin(), expected.found.end(), device) == expected.found.end();
        if (event.datagram.size > 0 && !device.address.empty() && isNew)
            expected.found.push_back(device);
    }
    return expected;
}

void TrySearch(TInput& input) {
    constexpr std::array kKinds = {TDeviceKind::UdpModule, TDeviceKind::UdpModule,
                                   TDeviceKind::TcpModule};
    std::array<TProbeScript, 3> scripts;
    for (TProbeScript& script : scripts) {
        const std::uint8_t start = input.Byte();
        script.opens = start % 8 != 1;
        script.sends = start / 8 % 4;
        script.events.resize(input.Below(40));
        for (TProbeScript::TEvent& event : script.events) {
            event.kind = input.Byte();
            if (event.kind <= 2) continue;
            event.datagram.size = event.kind % 4;
            if (event.kind % 8 != 7)
                event.datagram.sender = "10.0.0." + std::to_string(event.kind / 8);
        }
    }
    TInputClock clock;
    std::atomic<bool> stop = false;
    std::size_t next = 0;
    std::vector<TFoundDevice> found;
    int failures = 0;
    FindDevices(
        clock, stop,
        [&](const std::vector<TFoundDevice>& devices) {
            Must(!devices.empty(), "only what was found is reported");
            found.insert(found.end(), devices.begin(), devices.end());
        },
        {.otherwise = std::vector<std::string>(kOtherTargets, "10.0.0.255")},
        [&] { return std::make_unique<TScriptSocket>(scripts.at(next++), clock, stop); },
        [&](const TProbeFailure& failure) {
            Must(!failure.text.empty(), "a failure has words");
            ++failures;
        });
    std::vector<TFoundDevice> expected;
    int expectedFailures = 0;
    bool stopped = false;
    for (std::size_t i = 0; i < scripts.size() && !stopped; ++i) {
        const TExpected probe = PlainSearch(scripts.at(i), kKinds.at(i), stopped);
        expected.insert(expected.end(), probe.found.begin(), probe.found.end());
        expectedFailures += probe.fails ? 1 : 0;
    }
    Must(found == expected, "each sender is found once for each probe, in the order of answers");
    Must(failures == expectedFailures, "each probe that fails is told once");
    Must(clock.Now() <= TTimePoint() + TMilliseconds(3000), "a search takes three seconds");
}

}  // namespace
}  // namespace tolvane

// A letter for the subject, then its input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tolvane::fuzz::TInput input(data, size);
    switch (input.Byte()) {
        case 'a':
            tolvane::TryAnswer(input);
            break;
        case 's':
            tolvane::TrySearch(input);
            break;
        default:
            return -1;
    }
    return 0;
}
