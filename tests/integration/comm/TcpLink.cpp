#include "comm/TDevCommTCP.h"
#include "tests/integration/comm/ChannelLink.h"
#include "tests/integration/comm/TcpPeer.h"

namespace tolvane::test {
namespace {

class TTcpLink : public TChannelLink {
public:
    TTcpLink() {
        channel_.SetHost("127.0.0.1");
        channel_.SetPort(peer_.Port());
        const std::string address = "(127.0.0.1:" + std::to_string(peer_.Port()) + ")";
        description = "TCP " + address;
        sendFailure = "[TCP] Fail send data " + address + " - ";
        readFailure = "[TCP] Fail read data " + address + " - ";
        notConnectedText = "Socket is not connected.";
        timeoutText = "Read timeout occured";
    }
    TDevComm& Channel() override { return channel_; }
    void Connect() override {
        if (channel_.Open()) peer_.Accept();
    }
    void PeerSends(const TCmdBuffer& bytes) override { peer_.Send(bytes); }
    TCmdBuffer PeerReceives(std::size_t count) override { return peer_.Receive(count); }

private:
    TTcpPeer peer_;
    TDevCommTCP channel_{clock};
};

}  // namespace

std::unique_ptr<TChannelLink> MakeTcpLink() {
    return std::make_unique<TTcpLink>();
}

}  // namespace tolvane::test
