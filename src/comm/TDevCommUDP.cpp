#include "comm/TDevCommUDP.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "comm/SocketSupport.h"

namespace tolvane {
namespace {

constexpr std::size_t kDatagramSize = 100;

}  // namespace

class TDevCommUDP::TReceiver : public TByteReceiver {
public:
    explicit TReceiver(TDatagramReceive receive) : socket(std::move(receive)) {}

    void CheckConnected() override {
        if (!socket.IsOpen()) throw CommException(kReadNotConnected, kSocketNotConnected);
    }

    std::span<const std::uint8_t> Receive(TMilliseconds limit) override {
        const auto datagram = socket.Receive(received_, std::min(limit, kLongestSocketWait));
        if (!datagram) return {};
        return ReceivedDatagram(received_, datagram->length);
    }

    TUdpSocket socket;

private:
    std::array<std::uint8_t, kDatagramSize> received_;
};

TDevCommUDP::TDevCommUDP(TClock& clock, std::uint16_t localPort, TDatagramReceive receive)
    : TSocketChannel("UDP", kScaleUdpPort, clock),
      localPort_(localPort),
      receiver_(std::make_unique<TReceiver>(std::move(receive))) {}

TDevCommUDP::~TDevCommUDP() = default;

bool TDevCommUDP::IsConnected() const {
    return receiver_->socket.IsOpen();
}

void TDevCommUDP::OpenSocket() {
    receiver_->socket.Open(localPort_, false);
}

void TDevCommUDP::Close() {
    receiver_->socket.Close();
}

void TDevCommUDP::SendBytes(const TCmdBuffer& data) {
    receiver_->socket.Send(data, Host(), Port());
}

TByteReceiver& TDevCommUDP::Receiver() {
    return *receiver_;
}

}  // namespace tolvane
