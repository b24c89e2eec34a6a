#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tolvane::simulator {

using TBytes = std::vector<std::uint8_t>;

// The scale's side of the frame. On the wire a request is 04 <stuffed body> 03 and a reply is
// 02 <stuffed body> 03; a body is address, command, data, checksum (sum of the bytes before it,
// modulo 256). Inside a stuffed body 0D starts a run of bytes sent with 0x14 added, 0C a run of
// bytes sent as they are.
inline constexpr std::uint8_t kRequestStart = 0x04;
inline constexpr std::uint8_t kReplyStart = 0x02;
inline constexpr std::uint8_t kFrameEnd = 0x03;
inline constexpr std::uint8_t kOffsetMarker = 0x0D;
inline constexpr std::uint8_t kPlainMarker = 0x0C;
inline constexpr std::uint8_t kOffset = 0x14;

enum class TDefect {
    None,
    Stuffing,  // a byte before the first marker, or one that cannot stand in its run
    TooShort,  // fewer than address, command and checksum
    Checksum
};

struct TRequest {
    TDefect defect = TDefect::None;
    std::uint8_t address = 0;  // this and the rest: only with defect None or Checksum
    std::uint8_t command = 0;
    TBytes data;
};

// Takes a request frame apart, start and end byte included. Never fails; see `defect`.
TRequest DecodeRequest(std::span<const std::uint8_t> frame);

// Encodes address, command, data and a checksum, which is wrong by `checksumError`, between 02 and
// 03.
TBytes EncodeReply(std::uint8_t address, std::uint8_t command, const TBytes& data,
                   std::uint8_t checksumError = 0);

// A text's length is one byte: five data bytes in front of at most 255. Each body byte may have a
// marker of its own.
inline constexpr std::size_t kLongestBody = 1 + 1 + (5 + 255) + 1;

// Cuts a stream of bytes into request frames. Drops and counts bytes outside a frame and frames
// longer than kLongestFrame. A start byte inside a frame begins a new frame, because no body
// contains it.
class TRequestParser {
public:
    static constexpr std::size_t kLongestFrame = 1 + 2 * kLongestBody + 1;

    // The frames that end within `bytes`, start and end byte included.
    std::vector<TBytes> Feed(std::span<const std::uint8_t> bytes);
    std::size_t GarbageCount() const { return garbage_; }

private:
    TBytes frame_;
    std::size_t garbage_ = 0;
};

}  // namespace tolvane::simulator
