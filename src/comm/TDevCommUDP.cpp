#include "comm/TDevCommUDP.h"

#include <algorithm>
#include <array>
#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <span>
#include <utility>

#include "comm/AnswerReader.h"
#include "comm/SocketLibrary.h"
#include "comm/SocketSupport.h"
#include "comm/SocketWait.h"
#include "comm/SystemError.h"
#include "comm/UdpOptions.h"

namespace tolvane {
namespace {

using asio::ip::udp;

constexpr TMilliseconds kSlice{100};
constexpr std::size_t kDatagramSize = 100;

// Errors that tell of a datagram sent before, not of the one to be received.
bool IsOfAnEarlierDatagram(const std::error_code& error) {
    return error == asio::error::connection_reset || error == asio::error::connection_refused ||
           error == asio::error::network_reset;
}

}  // namespace

class TDevCommUDP::TSocket : public TByteReceiver {
public:
    explicit TSocket(TDatagramReceive receive) : receive_(std::move(receive)) {}

    bool IsOpen() const { return socket_.is_open(); }

    void Open(std::uint16_t localPort) {
        socket_.open(udp::v4());
        IgnoreUnreachablePeers(Handle());
        socket_.bind(udp::endpoint(udp::v4(), localPort));
    }

    void Close() {
        std::error_code ignored;
        socket_.close(ignored);
    }

    void Send(const TCmdBuffer& data, const udp::endpoint& endpoint) {
        socket_.non_blocking(false);
        if (socket_.send_to(asio::buffer(data), endpoint) != data.size())
            throw std::runtime_error("The datagram was not sent whole.");
    }

    void CheckConnected() override {
        if (!IsOpen()) throw CommException(kReadNotConnected, kSocketNotConnected);
    }

    std::span<const std::uint8_t> Receive(TMilliseconds limit) override {
        if (!WaitReadable(Handle(), std::min(limit, kSlice))) return {};
        // A datagram that is dropped after it was announced must not make this wait.
        socket_.non_blocking(true);
        std::error_code error;
        const std::size_t length = receive_(Handle(), received_, error);
        if (IsOfAnEarlierDatagram(error) || error == asio::error::would_block) return {};
        if (error) throw std::system_error(error);
        return ReceivedDatagram(received_, length);
    }

private:
    std::uintptr_t Handle() { return static_cast<std::uintptr_t>(socket_.native_handle()); }

    TSocketLibrary library_;
    asio::io_context io_{1};
    udp::socket socket_{io_};
    TDatagramReceive receive_;
    std::array<std::uint8_t, kDatagramSize> received_;
};

TDevCommUDP::TDevCommUDP(TClock& clock, std::uint16_t localPort, TDatagramReceive receive)
    : clock_(clock),
      localPort_(localPort),
      socket_(std::make_unique<TSocket>(std::move(receive))) {}

TDevCommUDP::~TDevCommUDP() = default;

std::string TDevCommUDP::GetDescription() const {
    return "UDP (" + host_ + ":" + std::to_string(port_) + ")";
}

bool TDevCommUDP::IsConnected() const {
    return socket_->IsOpen();
}

bool TDevCommUDP::Open() {
    Close();
    try {
        socket_->Open(localPort_);
        return true;
    } catch (const std::exception& failure) {
        Close();
        LastError = Failure("open", FailureText(failure));
        return false;
    }
}

void TDevCommUDP::Close() {
    socket_->Close();
}

bool TDevCommUDP::SendData(const TCmdBuffer& Data) {
    try {
        socket_->CheckConnected();
        socket_->Send(Data, EndpointOf<udp>(host_, port_));
        return true;
    } catch (const std::exception& failure) {
        LastError = Failure("send data", FailureText(failure));
        return false;
    }
}

std::int32_t TDevCommUDP::ReadAnswer(TCmdBuffer& Reply, std::uint8_t StartByte,
                                     std::uint8_t EndByte, std::int32_t TimeoutMs) {
    std::string failure;
    const std::int32_t code = ReadByRule(*socket_, {StartByte, EndByte, TimeoutMs, kSocketTimeout},
                                         clock_, Reply, failure);
    if (code != kReadOk) LastError = Failure("read data", failure);
    return code;
}

std::string TDevCommUDP::Failure(const char* operation, const std::string& message) const {
    return "[UDP] Fail " + std::string(operation) + " (" + host_ + ":" + std::to_string(port_) +
           ") - " + message;
}

}  // namespace tolvane
