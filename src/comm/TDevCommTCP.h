#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "comm/DevCommBaseUnit.h"
#include "system/Clock.h"

namespace tolvane {

// The channel to a scale, or a converter in front of one, that listens as a TCP server.
class TDevCommTCP : public TDevComm {
public:
    explicit TDevCommTCP(TClock& clock);
    ~TDevCommTCP() override;

    // A dotted IPv4 address; anything else makes Open fail.
    void SetHost(std::string host) { host_ = std::move(host); }
    void SetPort(std::int32_t port) { port_ = port; }

    std::string GetDescription() const override;
    // False as soon as the peer has closed or reset the connection and its last bytes are read.
    bool IsConnected() const override;
    // Connects within 3000 ms or fails.
    bool Open() override;
    void Close() override;
    bool SendData(const TCmdBuffer& Data) override;
    std::int32_t ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte, std::uint8_t EndByte,
                            std::int32_t TimeoutMs) override;

private:
    class TConnection;

    std::string Failure(const char* operation, const std::string& message) const;

    TClock& clock_;
    std::string host_;
    std::int32_t port_ = 0;
    std::unique_ptr<TConnection> connection_;
};

}  // namespace tolvane
