#pragma once

#include <memory>
#include <string>

#include "comm/DevCommBaseUnit.h"
#include "tests/support/RealTime.h"

namespace tolvane::test {

// An open channel with the system's clock, and the peer at the other end of its wire.
class TWaitingLink {
public:
    virtual ~TWaitingLink() = default;
    virtual TDevComm& Channel() = 0;
    // The bytes have arrived when this returns.
    virtual void Send(const TCmdBuffer& bytes) = 0;
    // For another thread, while the channel reads.
    virtual void Stream(const TCmdBuffer& bytes) { Send(bytes); }
    // The peer goes away: in an orderly way, or abruptly where the wire has such a thing.
    virtual void Close() = 0;
    virtual void Reset() { Close(); }

    std::string readFailure;  // how the text of a failed read begins
    std::string timeoutText = "Read timeout occured";
    TWatchedClock clock;
};

std::unique_ptr<TWaitingLink> MakeWaitingTcp();
std::unique_ptr<TWaitingLink> MakeWaitingUdp();
std::unique_ptr<TWaitingLink> MakeWaitingSerial();

}  // namespace tolvane::test
