#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "comm/DevCommBaseUnit.h"
#include "comm/UdpSocket.h"
#include "system/Clock.h"

namespace tolvane {

// Both the scale's port and the channel's own.
inline constexpr std::uint16_t kScaleUdpPort = 1001;

// The channel to a scale that answers UDP datagrams. It holds its local port while it is open, so
// one such channel can be open on a computer at a time. Datagrams from any sender are taken; of
// each, the first 100 bytes.
class TDevCommUDP : public TDevComm {
public:
    // Tests that play both sides on one address give another local port; tests that play the socket
    // layer give another `receive`.
    explicit TDevCommUDP(TClock& clock, std::uint16_t localPort = kScaleUdpPort,
                         TDatagramReceive receive = &ReceiveDatagram);
    ~TDevCommUDP() override;

    // A dotted IPv4 address; anything else makes SendData fail.
    void SetHost(std::string host) { host_ = std::move(host); }
    void SetPort(std::int32_t port) { port_ = port; }

    std::string GetDescription() const override;
    bool IsConnected() const override;
    bool Open() override;
    void Close() override;
    // Sends one datagram.
    bool SendData(const TCmdBuffer& Data) override;
    // One answer may span several datagrams.
    std::int32_t ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte, std::uint8_t EndByte,
                            std::int32_t TimeoutMs) override;

private:
    class TReceiver;

    std::string Failure(const char* operation, const std::string& message) const;

    TClock& clock_;
    std::uint16_t localPort_;
    std::string host_;
    std::int32_t port_ = kScaleUdpPort;
    std::unique_ptr<TReceiver> receiver_;
};

}  // namespace tolvane
