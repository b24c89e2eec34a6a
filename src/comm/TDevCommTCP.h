#pragma once

#include <memory>

#include "comm/SocketChannel.h"

namespace tolvane {

// The channel to a scale, or a converter in front of one, that listens as a TCP server.
class TDevCommTCP : public TSocketChannel {
public:
    explicit TDevCommTCP(TClock& clock);
    ~TDevCommTCP() override;

    // False as soon as the peer has closed or reset the connection and its last bytes are read.
    bool IsConnected() const override;
    void Close() override;

protected:
    // Connects within 3000 ms or fails.
    void OpenSocket() override;
    void SendBytes(const TCmdBuffer& data) override;
    TByteReceiver& Receiver() override;

private:
    class TConnection;

    std::unique_ptr<TConnection> connection_;
};

}  // namespace tolvane
