#include "tests/integration/comm/WaitingLink.h"

#include "comm/TDevCommTCP.h"
#include "comm/TDevCommUDP.h"
#include "tests/integration/comm/TcpPeer.h"
#include "tests/integration/comm/UdpPeer.h"
#include "tests/support/FreeUdpPort.h"

namespace tolvane::test {
namespace {

class TWaitingTcp : public TWaitingLink {
public:
    TWaitingTcp() {
        channel_.SetHost("127.0.0.1");
        channel_.SetPort(peer_.Port());
        if (channel_.Open()) peer_.Accept();
        readFailure = "[TCP] Fail read data (127.0.0.1:" + std::to_string(peer_.Port()) + ") - ";
    }
    TDevComm& Channel() override { return channel_; }
    void Send(const TCmdBuffer& bytes) override { peer_.Send(bytes); }
    void Close() override { peer_.Close(); }
    void Reset() override { peer_.Reset(); }

private:
    TTcpPeer peer_;
    TDevCommTCP channel_{clock};
};

class TWaitingUdp : public TWaitingLink {
public:
    TWaitingUdp() {
        channel_.SetHost("127.0.0.1");
        channel_.SetPort(peer_.Port());
        channel_.Open();
        readFailure = "[UDP] Fail read data (127.0.0.1:" + std::to_string(peer_.Port()) + ") - ";
    }
    TDevComm& Channel() override { return channel_; }
    void Send(const TCmdBuffer& bytes) override { peer_.Send(bytes, port_); }
    // From then on nobody has the port that the channel sends to.
    void Close() override { peer_.Close(); }

private:
    TUdpPeer peer_;
    std::uint16_t port_ = FreeUdpPort();
    TDevCommUDP channel_{clock, port_};
};

}  // namespace

std::unique_ptr<TWaitingLink> MakeWaitingTcp() {
    return std::make_unique<TWaitingTcp>();
}

std::unique_ptr<TWaitingLink> MakeWaitingUdp() {
    return std::make_unique<TWaitingUdp>();
}

}  // namespace tolvane::test
