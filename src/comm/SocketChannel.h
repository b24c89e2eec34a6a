#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "comm/AnswerReader.h"
#include "comm/DevCommBaseUnit.h"
#include "system/Clock.h"

namespace tolvane {

// What the TCP and the UDP channel have in common: the scale's address, the order in which they
// open, send and read, and the texts of their failures. The derived class owns the socket.
class TSocketChannel : public TDevComm {
public:
    // A dotted IPv4 address; with any other text Open (TCP) or SendData (UDP) fails.
    void SetHost(std::string host) { host_ = std::move(host); }
    void SetPort(std::int32_t port) { port_ = port; }

    std::string GetDescription() const override;
    bool Open() override;
    bool SendData(const TCmdBuffer& Data) override;
    std::int32_t ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte, std::uint8_t EndByte,
                            std::int32_t TimeoutMs) override;

protected:
    // `protocol` is how the texts name the channel: "TCP". The clock outlives the channel.
    TSocketChannel(std::string protocol, std::int32_t port, TClock& clock)
        : protocol_(std::move(protocol)), port_(port), clock_(clock) {}

    const std::string& Host() const { return host_; }
    std::int32_t Port() const { return port_; }
    TClock& Clock() const { return clock_; }

    // These three throw what has failed. OpenSocket finds the socket closed; after a failure it may
    // be open. SendBytes writes all bytes at once.
    virtual void OpenSocket() = 0;
    virtual void SendBytes(const TCmdBuffer& data) = 0;
    virtual TByteReceiver& Receiver() = 0;

private:
    bool Fail(const char* operation, const std::string& reason);

    std::string protocol_;
    std::string host_;
    std::int32_t port_;
    TClock& clock_;
};

}  // namespace tolvane
