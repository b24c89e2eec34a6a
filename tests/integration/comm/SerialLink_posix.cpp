#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>
#include <thread>

#include "comm/TDevCommRS232.h"
#include "tests/integration/comm/ChannelLink.h"
#include "tests/integration/comm/SerialPeer.h"

namespace tolvane::test {

TSerialPeer::TSerialPeer() {
    if (openpty(&far_, &port_, nullptr, nullptr, nullptr) != 0)
        throw std::runtime_error("no pair of terminals");
    name_ = ttyname(port_);
}

TSerialPeer::~TSerialPeer() {
    Close();
    close(port_);
}

void TSerialPeer::Close() {
    if (far_ >= 0) close(far_);
    far_ = -1;
}

int TSerialPeer::BytesWaitingInPort() const {
    int count = 0;
    return ioctl(port_, FIONREAD, &count) == 0 ? count : -1;
}

void TSerialPeer::Send(const TCmdBuffer& bytes) const {
    const int expected = BytesWaitingInPort() + static_cast<int>(bytes.size());
    Stream(bytes);
    const auto deadline = std::chrono::steady_clock::now() + kPeerPatience;
    while (BytesWaitingInPort() < expected) {
        if (std::chrono::steady_clock::now() > deadline)
            throw std::runtime_error("the bytes did not reach the port");
        std::this_thread::yield();
    }
}

void TSerialPeer::Stream(const TCmdBuffer& bytes) const {
    if (write(far_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
        throw std::runtime_error("the terminal did not take everything");
}

void TSerialPeer::NoticePurges() const {
    const int packets = 1;
    if (ioctl(far_, TIOCPKT, &packets) != 0)
        throw std::runtime_error("the terminal does not tell of purges");
}

int TSerialPeer::PurgesNoticed() const {
    pollfd entry{far_, POLLPRI, 0};
    std::uint8_t notice = 0;
    if (poll(&entry, 1, 0) <= 0 || read(far_, &notice, 1) != 1) return 0;
    return notice & (TIOCPKT_FLUSHREAD | TIOCPKT_FLUSHWRITE);
}

TCmdBuffer TSerialPeer::Receive(std::size_t count) {
    TCmdBuffer bytes(count);
    std::size_t got = 0;
    pollfd entry{far_, POLLIN, 0};
    while (got < count && poll(&entry, 1, static_cast<int>(kPeerPatience.count())) > 0) {
        const ssize_t part = read(far_, bytes.data() + got, count - got);
        if (part <= 0) break;
        got += static_cast<std::size_t>(part);
    }
    bytes.resize(got);
    return bytes;
}

namespace {

class TSerialLink : public TChannelLink {
public:
    TSerialLink() {
        channel_.SetPort(peer_.PortName());
        description = "RS232 (" + peer_.PortName() + ")";
        sendFailure = "[RS232] Fail send data (" + peer_.PortName() + "): ";
        readFailure = "[RS232] Fail receive data (" + peer_.PortName() + "): ";
        notConnectedText = "Com port is not connected.";
        timeoutText = "Read timeour occured";
        keepsBytesAfterTheEnd = true;
        purgesBeforeARequest = true;
    }
    TDevComm& Channel() override { return channel_; }
    void Connect() override { channel_.Open(); }
    void PeerSends(const TCmdBuffer& bytes) override { peer_.Send(bytes); }
    TCmdBuffer PeerReceives(std::size_t count) override { return peer_.Receive(count); }

private:
    TSerialPeer peer_;
    TDevCommRS232 channel_{clock};
};

}  // namespace

std::unique_ptr<TChannelLink> MakeSerialLink() {
    return std::make_unique<TSerialLink>();
}

}  // namespace tolvane::test
