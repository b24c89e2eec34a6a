#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "comm/DevCommBaseUnit.h"
#include "system/Clock.h"

namespace tolvane {

// How one transport delivers what its peer sends. ReceiveAnswer does the rest.
class TByteReceiver {
public:
    virtual ~TByteReceiver() = default;
    // Throws CommException when the channel is closed. Whether its peer is still there shows when
    // something is received.
    virtual void CheckConnected() = 0;
    // Waits for the next bytes, at most for one slice of the transport's own length and never
    // longer than `limit`. The result is empty when no bytes came; its bytes stay valid until the
    // next call. Throws CommException when the link is down, another exception for another failure.
    virtual std::span<const std::uint8_t> Receive(TMilliseconds limit) = 0;
};

// What one read waits for, and the transport's own texts.
struct TReadRequest {
    std::uint8_t startByte = 0;  // 0: the reply begins with the first byte
    std::uint8_t endByte = 0;    // 0: collect until the time-out
    std::int32_t timeoutMs = 0;
    std::string_view timeoutText;
};

// Adds one received byte to the reply, or drops it as noise before the start byte. Returns whether
// it was the end byte. Throws CommException when the end byte comes before the start byte.
bool TakeByte(std::uint8_t byte, const TReadRequest& request, TCmdBuffer& reply);

// The reading rule of every channel: empties `reply` and reads one answer into it. Returns a result
// code of ReadAnswer; when that is not kReadOk, `failure` holds the reason. The bytes read before a
// failure stay in `reply`, which holds at most 1 MiB. Never throws; blocks up to the time-out.
std::int32_t ReceiveAnswer(TByteReceiver& receiver, const TReadRequest& request, TClock& clock,
                           TCmdBuffer& reply, std::string& failure);

}  // namespace tolvane
