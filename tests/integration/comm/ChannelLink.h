#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "comm/DevCommBaseUnit.h"
#include "tests/support/RecordingClock.h"

namespace tolvane::test {

// A channel and the peer at the other end of its wire. The channel's clock moves only by the
// channel's own pauses and by what a test adds per look. The clock's onLook lets a test move the
// peer between two passes of a read.
class TChannelLink {
public:
    virtual ~TChannelLink() = default;

    virtual TDevComm& Channel() = 0;
    // Opens the channel and brings up its peer.
    virtual void Connect() = 0;
    // Sends one segment, one datagram or one write, which has arrived when this returns.
    virtual void PeerSends(const TCmdBuffer& bytes) = 0;
    // The next `count` bytes that the channel sent; fewer when they do not come within seconds.
    virtual TCmdBuffer PeerReceives(std::size_t count) = 0;

    // The channel's description, and how its failure texts begin.
    std::string description;
    std::string sendFailure;
    std::string readFailure;
    std::string notConnectedText;
    std::string timeoutText;
    // Whether bytes that came after an answer stay until the next request is sent.
    bool keepsBytesAfterTheEnd = false;
    // Whether what came before a request is thrown away when it is sent.
    bool purgesBeforeARequest = false;

    TRecordingClock clock;
};

std::unique_ptr<TChannelLink> MakeTcpLink();
std::unique_ptr<TChannelLink> MakeUdpLink();
std::unique_ptr<TChannelLink> MakeSerialLink();
std::unique_ptr<TChannelLink> MakeScriptedLink();

constexpr TMilliseconds kPeerPatience{5000};

}  // namespace tolvane::test
