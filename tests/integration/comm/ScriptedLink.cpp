#include "tests/integration/comm/ChannelLink.h"
#include "tests/support/scales/ScriptedChannel.h"

namespace tolvane::test {
namespace {

class TScriptedLink : public TChannelLink {
public:
    TScriptedLink() {
        description = "SCRIPT (peer)";
        sendFailure = "[SCRIPT] Fail send data (peer) - ";
        readFailure = "[SCRIPT] Fail read data (peer) - ";
        notConnectedText = "Peer is not connected.";
        timeoutText = "Read timeout occured";
    }
    TDevComm& Channel() override { return channel_; }
    void Connect() override { channel_.Open(); }
    void PeerSends(const TCmdBuffer& bytes) override { channel_.PeerSends(bytes); }
    TCmdBuffer PeerReceives(std::size_t count) override {
        TCmdBuffer all;
        for (const TCmdBuffer& request : channel_.sent)
            all.insert(all.end(), request.begin(), request.end());
        all.resize(std::min(all.size(), count));
        channel_.sent.clear();
        return all;
    }

private:
    TScriptedChannel channel_{clock};
};

}  // namespace

std::unique_ptr<TChannelLink> MakeScriptedLink() {
    return std::make_unique<TScriptedLink>();
}

}  // namespace tolvane::test
