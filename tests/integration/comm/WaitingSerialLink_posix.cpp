#include "comm/TDevCommRS232.h"
#include "tests/integration/comm/SerialPeer.h"
#include "tests/integration/comm/WaitingLink.h"

namespace tolvane::test {
namespace {

class TWaitingSerial : public TWaitingLink {
public:
    TWaitingSerial() {
        channel_.SetPort(peer_.PortName());
        channel_.Open();
        readFailure = "[RS232] Fail receive data (" + peer_.PortName() + "): ";
        timeoutText = "Read timeour occured";
    }
    TDevComm& Channel() override { return channel_; }
    void Send(const TCmdBuffer& bytes) override { peer_.Send(bytes); }
    void Stream(const TCmdBuffer& bytes) override { peer_.Stream(bytes); }
    void Close() override { peer_.Close(); }

private:
    TSerialPeer peer_;
    TDevCommRS232 channel_{clock};
};

}  // namespace

std::unique_ptr<TWaitingLink> MakeWaitingSerial() {
    return std::make_unique<TWaitingSerial>();
}

}  // namespace tolvane::test
