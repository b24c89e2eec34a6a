#pragma once

#include <cstdint>
#include <memory>

#include "comm/SocketChannel.h"
#include "comm/UdpSocket.h"

namespace tolvane {

// Both the scale's port and the channel's own.
inline constexpr std::uint16_t kScaleUdpPort = 1001;

// The channel to a scale that answers UDP datagrams. It holds its local port while it is open, so
// one such channel can be open on a computer at a time. Datagrams from any sender are taken; of
// each, the first 100 bytes. One answer may span several datagrams.
class TDevCommUDP : public TSocketChannel {
public:
    // Tests that play both sides on one address give another local port; tests that play the socket
    // layer give another `receive`.
    explicit TDevCommUDP(TClock& clock, std::uint16_t localPort = kScaleUdpPort,
                         TDatagramReceive receive = &ReceiveDatagram);
    ~TDevCommUDP() override;

    bool IsConnected() const override;
    void Close() override;

protected:
    // Binds the local port.
    void OpenSocket() override;
    // Sends one datagram.
    void SendBytes(const TCmdBuffer& data) override;
    TByteReceiver& Receiver() override;

private:
    class TReceiver;

    std::uint16_t localPort_;
    std::unique_ptr<TReceiver> receiver_;
};

}  // namespace tolvane
