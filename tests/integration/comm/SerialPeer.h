#pragma once

#include <string>

#include "tests/integration/comm/ChannelLink.h"

namespace tolvane::test {

// The far end of a pseudo-terminal; the near end is a path that a channel opens as its serial port.
class TSerialPeer {
public:
    TSerialPeer();
    ~TSerialPeer();
    TSerialPeer(const TSerialPeer&) = delete;
    TSerialPeer& operator=(const TSerialPeer&) = delete;

    const std::string& PortName() const { return name_; }
    // Returns when all bytes have arrived in the port.
    void Send(const TCmdBuffer& bytes) const;
    // Returns at once, for a read on another thread.
    void Stream(const TCmdBuffer& bytes) const;
    TCmdBuffer Receive(std::size_t count);
    int BytesWaitingInPort() const;
    // From now on the far end gets notices of purges and no bytes.
    void NoticePurges() const;
    // Which of the port's buffers were purged since the last call: TIOCPKT_FLUSHREAD and -WRITE.
    int PurgesNoticed() const;
    // Pulls the cable.
    void Close();
    // A descriptor of the near end, to look at the line settings.
    int PortDescriptor() const { return port_; }

private:
    int far_ = -1;
    int port_ = -1;
    std::string name_;
};

}  // namespace tolvane::test
