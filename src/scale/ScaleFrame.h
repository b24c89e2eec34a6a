#pragma once

#include <cstdint>
#include <span>

#include "comm/DevCommBaseUnit.h"

namespace tolvane {

// The frame of one request and of one reply:
//
//   start   body, shift encoded                        end
//   04|02   [address][command][data ...][checksum]     03
//
// The checksum is the sum, modulo 256, of the body bytes before it. In the encoded body a marker
// says how the bytes after it are sent: 0D with 14 added, 0C as they are. All numbers are
// hexadecimal.
inline constexpr std::uint8_t kRequestStart = 0x04;
inline constexpr std::uint8_t kReplyStart = 0x02;
inline constexpr std::uint8_t kFrameEnd = 0x03;
inline constexpr std::uint8_t kOffsetMarker = 0x0D;
inline constexpr std::uint8_t kPlainMarker = 0x0C;

// The bytes of a whole request on the wire.
TCmdBuffer EncodeRequest(std::uint8_t address, std::uint8_t command,
                         std::span<const std::uint8_t> data);

// The body bytes of an encoded body, without the markers.
TCmdBuffer ShiftDecode(std::span<const std::uint8_t> encoded);

// The data of a whole reply as it came over the wire, expected from this address to this command.
// Throws std::runtime_error with the reason when the reply is malformed or is not the expected one.
TCmdBuffer DecodeReply(std::span<const std::uint8_t> reply, std::uint8_t address,
                       std::uint8_t command);

}  // namespace tolvane
