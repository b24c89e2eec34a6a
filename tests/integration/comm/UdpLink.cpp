#include "comm/TDevCommUDP.h"
#include "tests/integration/comm/ChannelLink.h"
#include "tests/integration/comm/UdpPeer.h"
#include "tests/support/FreeUdpPort.h"

namespace tolvane::test {
namespace {

class TUdpLink : public TChannelLink {
public:
    TUdpLink() {
        channel_.SetHost("127.0.0.1");
        channel_.SetPort(peer_.Port());
        const std::string address = "(127.0.0.1:" + std::to_string(peer_.Port()) + ")";
        description = "UDP " + address;
        sendFailure = "[UDP] Fail send data " + address + " - ";
        readFailure = "[UDP] Fail read data " + address + " - ";
        notConnectedText = "Socket is not connected.";
        timeoutText = "Read timeout occured";
    }
    TDevComm& Channel() override { return channel_; }
    void Connect() override { channel_.Open(); }
    void PeerSends(const TCmdBuffer& bytes) override { peer_.Send(bytes, localPort_); }
    TCmdBuffer PeerReceives(std::size_t /*count*/) override { return peer_.Receive(); }

private:
    TUdpPeer peer_;
    std::uint16_t localPort_ = FreeUdpPort();
    TDevCommUDP channel_{clock, localPort_};
};

}  // namespace

std::unique_ptr<TChannelLink> MakeUdpLink() {
    return std::make_unique<TUdpLink>();
}

}  // namespace tolvane::test
