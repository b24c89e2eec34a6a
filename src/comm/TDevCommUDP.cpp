#include "comm/TDevCommUDP.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "comm/AnswerReader.h"
#include "comm/SocketSupport.h"
#include "system/SystemError.h"

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
    : clock_(clock),
      localPort_(localPort),
      receiver_(std::make_unique<TReceiver>(std::move(receive))) {}

TDevCommUDP::~TDevCommUDP() = default;

std::string TDevCommUDP::GetDescription() const {
    return "UDP (" + host_ + ":" + std::to_string(port_) + ")";
}

bool TDevCommUDP::IsConnected() const {
    return receiver_->socket.IsOpen();
}

bool TDevCommUDP::Open() {
    Close();
    try {
        receiver_->socket.Open(localPort_, false);
        return true;
    } catch (const std::exception& failure) {
        Close();
        LastError = Failure("open", FailureText(failure));
        return false;
    }
}

void TDevCommUDP::Close() {
    receiver_->socket.Close();
}

bool TDevCommUDP::SendData(const TCmdBuffer& Data) {
    try {
        receiver_->CheckConnected();
        receiver_->socket.Send(Data, host_, port_);
        return true;
    } catch (const std::exception& failure) {
        LastError = Failure("send data", FailureText(failure));
        return false;
    }
}

std::int32_t TDevCommUDP::ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte,
                                     std::uint8_t EndByte, std::int32_t TimeoutMs) {
    std::string failure;
    const std::int32_t code = ReceiveAnswer(*receiver_,
                                            {.startByte = StartByte,
                                             .endByte = EndByte,
                                             .timeoutMs = TimeoutMs,
                                             .timeoutText = kSocketTimeout},
                                            clock_, Reply, failure);
    if (code != kReadOk) LastError = Failure("read data", failure);
    return code;
}

std::string TDevCommUDP::Failure(const char* operation, const std::string& message) const {
    return "[UDP] Fail " + std::string(operation) + " (" + host_ + ":" + std::to_string(port_) +
           ") - " + message;
}

}  // namespace tolvane
