#include "simulator/Frame.h"

#include <numeric>
#include <optional>
#include <utility>

namespace tolvane::simulator {

namespace {

std::uint8_t Sum(std::span<const std::uint8_t> bytes) {
    return std::accumulate(
        bytes.begin(), bytes.end(), std::uint8_t{0},
        [](std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>(a + b); });
}

// The logical bytes, or nothing when the body breaks the stuffing rule.
std::optional<TBytes> Unstuff(std::span<const std::uint8_t> body) {
    TBytes logical;
    std::uint8_t marker = 0;
    for (const std::uint8_t byte : body) {
        if (byte == kOffsetMarker || byte == kPlainMarker) {
            marker = byte;
        } else if (marker == kOffsetMarker && byte >= kOffset) {
            logical.push_back(static_cast<std::uint8_t>(byte - kOffset));
        } else if (marker == kPlainMarker && byte > kOffset) {
            logical.push_back(byte);
        } else {
            return std::nullopt;
        }
    }
    return logical;
}

void AppendStuffed(std::span<const std::uint8_t> body, TBytes& wire) {
    std::uint8_t marker = 0;
    for (const std::uint8_t byte : body) {
        const bool mustShift = byte <= kOffset;
        const bool mustNotShift = byte > 0xFF - kOffset;
        std::uint8_t wanted = marker;
        if (mustShift) wanted = kOffsetMarker;
        if (mustNotShift || wanted == 0) wanted = kPlainMarker;
        if (wanted != marker) wire.push_back(wanted);
        marker = wanted;
        wire.push_back(marker == kOffsetMarker ? static_cast<std::uint8_t>(byte + kOffset) : byte);
    }
}

}  // namespace

TRequest DecodeRequest(std::span<const std::uint8_t> frame) {
    TRequest request;
    if (frame.size() < 2 || frame.front() != kRequestStart || frame.back() != kFrameEnd) {
        request.defect = TDefect::TooShort;
        return request;
    }
    const std::optional<TBytes> body = Unstuff(frame.subspan(1, frame.size() - 2));
    if (!body) {
        request.defect = TDefect::Stuffing;
        return request;
    }
    if (body->size() < 3) {
        request.defect = TDefect::TooShort;
        return request;
    }
    request.address = (*body)[0];
    request.command = (*body)[1];
    request.data.assign(body->begin() + 2, body->end() - 1);
    if (Sum(std::span(*body).first(body->size() - 1)) != body->back())
        request.defect = TDefect::Checksum;
    return request;
}

TBytes EncodeReply(std::uint8_t address, std::uint8_t command, const TBytes& data,
                   std::uint8_t checksumError) {
    TBytes body{address, command};
    body.insert(body.end(), data.begin(), data.end());
    body.push_back(static_cast<std::uint8_t>(Sum(body) + checksumError));
    TBytes wire{kReplyStart};
    AppendStuffed(body, wire);
    wire.push_back(kFrameEnd);
    return wire;
}

std::vector<TBytes> TRequestParser::Feed(std::span<const std::uint8_t> bytes) {
    std::vector<TBytes> frames;
    for (const std::uint8_t byte : bytes) {
        if (byte == kRequestStart || frame_.size() >= kLongestFrame) {
            garbage_ += frame_.size();
            frame_.clear();
        }
        if (frame_.empty() && byte != kRequestStart) {
            ++garbage_;
            continue;
        }
        frame_.push_back(byte);
        if (byte == kFrameEnd) frames.push_back(std::exchange(frame_, {}));
    }
    return frames;
}

}  // namespace tolvane::simulator
