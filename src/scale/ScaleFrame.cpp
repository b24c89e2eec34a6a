#include "scale/ScaleFrame.h"

#include <cstddef>
#include <stdexcept>
#include <string>

namespace tolvane {
namespace {

constexpr std::uint8_t kOffset = 0x14;
constexpr std::uint8_t kLastOffsetable = 0xFF - kOffset;
constexpr std::size_t kFrameBytes = 2;     // start and end
constexpr std::size_t kBodyOverhead = 3;   // address, command, checksum
constexpr std::size_t kShortestReply = 4;  // on the wire
constexpr const char* kUnexpected = "Unexpected answer from scale. ";

// Writes body bytes, switching between the two ways of sending only where it must.
class TShiftEncoder {
public:
    explicit TShiftEncoder(std::uint8_t* out) : out_(out) {}

    void Put(std::uint8_t byte) {
        const bool mustOffset = byte <= kOffset;
        const bool cannotOffset = byte > kLastOffsetable;
        if (marker_ == 0)
            Switch(mustOffset ? kOffsetMarker : kPlainMarker);
        else if (marker_ == kOffsetMarker && cannotOffset)
            Switch(kPlainMarker);
        else if (marker_ == kPlainMarker && mustOffset)
            Switch(kOffsetMarker);
        *out_++ = static_cast<std::uint8_t>(byte + added_);
    }
    std::uint8_t* End() const { return out_; }

private:
    void Switch(std::uint8_t marker) {
        *out_++ = marker;
        marker_ = marker;
        added_ = marker == kOffsetMarker ? kOffset : 0;
    }

    std::uint8_t* out_;
    std::uint8_t marker_ = 0;
    std::uint8_t added_ = 0;
};

std::uint8_t Sum(std::span<const std::uint8_t> bytes) {
    unsigned sum = 0;
    for (const std::uint8_t byte : bytes)
        sum += byte;
    return static_cast<std::uint8_t>(sum);
}

std::string Hex(std::uint8_t byte) {
    constexpr const char* kHexDigits = "0123456789ABCDEF";
    return {kHexDigits[byte >> 4], kHexDigits[byte & 0x0F]};
}

[[noreturn]] void Fail(const std::string& reason) {
    throw std::runtime_error(kUnexpected + reason);
}

void Expect(std::uint8_t expected, std::uint8_t received, const char* what) {
    if (received != expected)
        Fail(std::string(what) + "Exp:" + Hex(expected) + " Rec:" + Hex(received) + ")");
}

}  // namespace

TCmdBuffer EncodeRequest(std::uint8_t address, std::uint8_t command,
                         std::span<const std::uint8_t> data) {
    TCmdBuffer frame(kFrameBytes + 2 * (data.size() + kBodyOverhead));
    frame[0] = kRequestStart;
    TShiftEncoder encoder(frame.data() + 1);
    encoder.Put(address);
    encoder.Put(command);
    for (const std::uint8_t byte : data)
        encoder.Put(byte);
    encoder.Put(static_cast<std::uint8_t>(address + command + Sum(data)));
    *encoder.End() = kFrameEnd;
    frame.resize(static_cast<std::size_t>(encoder.End() + 1 - frame.data()));
    return frame;
}

TCmdBuffer ShiftDecode(std::span<const std::uint8_t> encoded) {
    TCmdBuffer body(encoded.size());
    std::uint8_t* out = body.data();
    std::uint8_t added = 0;
    for (const std::uint8_t byte : encoded) {
        if (byte == kPlainMarker)
            added = 0;
        else if (byte == kOffsetMarker)
            added = kOffset;
        else
            *out++ = static_cast<std::uint8_t>(byte - added);
    }
    body.resize(static_cast<std::size_t>(out - body.data()));
    return body;
}

TCmdBuffer DecodeReply(std::span<const std::uint8_t> reply, std::uint8_t address,
                       std::uint8_t command) {
    if (reply.size() < kShortestReply) Fail("Answer is too short.");
    if (reply.front() != kReplyStart)
        Fail("Error STX byte (Exp:02 Rec:" + Hex(reply.front()) + ")");
    // The text says "ETX" but names the start byte that was expected; users know this text.
    if (reply.back() != kFrameEnd) Fail("Error ETX byte (Exp:02 Rec:" + Hex(reply.back()) + ")");
    TCmdBuffer body = ShiftDecode(reply.subspan(1, reply.size() - kFrameBytes));
    if (body.size() < kBodyOverhead) Fail("Answer is too short.");
    Expect(address, body[0], "Scale address does not match.");
    Expect(command, body[1], "Command does not match.");
    const std::uint8_t checksum = body.back();
    body.pop_back();
    Expect(Sum(body), checksum, "Invalid Checksum. ");
    body.erase(body.begin(), body.begin() + 2);
    return body;
}

}  // namespace tolvane
