#include "comm/UdpSocket.h"

#include <asio/error.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <stdexcept>
#include <utility>

#include "comm/SocketSupport.h"
#include "text/IpAddress.h"

namespace tolvane {

using asio::ip::udp;

struct TUdpSocket::TSocket {
    std::uintptr_t Handle() { return static_cast<std::uintptr_t>(socket.native_handle()); }

    TSocketLibrary library;
    asio::io_context io{1};
    udp::socket socket{io};
};

TUdpSocket::TUdpSocket(TDatagramReceive receive)
    : socket_(std::make_unique<TSocket>()), receive_(std::move(receive)) {}

TUdpSocket::~TUdpSocket() = default;

void TUdpSocket::Open(std::uint16_t localPort, bool mayBroadcast) {
    socket_->socket.open(udp::v4());
    IgnoreUnreachablePeers(socket_->Handle());
    if (mayBroadcast) socket_->socket.set_option(asio::socket_base::broadcast(true));
    socket_->socket.bind(udp::endpoint(udp::v4(), localPort));
    // The system may announce a datagram and then drop it; receiving must not wait then. Sending
    // does.
    socket_->socket.native_non_blocking(true);
}

void TUdpSocket::Close() {
    std::error_code ignored;
    socket_->socket.close(ignored);
}

bool TUdpSocket::IsOpen() const {
    return socket_->socket.is_open();
}

void TUdpSocket::Send(std::span<const std::uint8_t> data, const std::string& host,
                      std::int32_t port) {
    const udp::endpoint endpoint = EndpointOf<udp>(host, port);
    if (socket_->socket.send_to(asio::buffer(data.data(), data.size()), endpoint) != data.size())
        throw std::runtime_error("The datagram was not sent whole.");
}

std::optional<TReceived> TUdpSocket::Receive(std::span<std::uint8_t> buffer, TMilliseconds limit) {
    if (!WaitReadable(socket_->Handle(), limit)) return std::nullopt;
    std::error_code error;
    const TReceived received = receive_(socket_->Handle(), buffer, error);
    const bool isOfAnEarlierDatagram = error == asio::error::connection_reset ||
                                       error == asio::error::connection_refused ||
                                       error == asio::error::network_reset;
    if (isOfAnEarlierDatagram || error == asio::error::would_block) return std::nullopt;
    if (error) throw std::system_error(error);
    return received;
}

TDatagramReceive ReceiveOnlyFrom(const std::string& host) {
    return [peer = ParseIpV4(host)](std::uintptr_t socket, std::span<std::uint8_t> buffer,
                                    std::error_code& error) -> TReceived {
        const TReceived received = ReceiveDatagram(socket, buffer, error);
        if (error || !peer || received.sender == 0 || received.sender == *peer) return received;
        error = asio::error::would_block;
        return {};
    };
}

bool HasRoute(std::uint32_t address) {
    constexpr std::uint16_t kAnyPort = 9;
    const TSocketLibrary library;
    asio::io_context io{1};
    udp::socket socket(io, udp::v4());
    // To connect a datagram socket chooses the way and sends nothing.
    std::error_code error;
    socket.connect({asio::ip::address_v4(address), kAnyPort}, error);
    return !error;
}

}  // namespace tolvane
