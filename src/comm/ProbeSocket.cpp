#include "comm/DeviceDiscovery.h"

#include <array>
#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>

#include "comm/SocketLibrary.h"
#include "comm/SocketSupport.h"
#include "comm/SocketWait.h"
#include "comm/UdpOptions.h"

namespace tolvane {
namespace {

using asio::ip::udp;

// Room for any datagram: where one is longer than the room, systems differ in what they report.
constexpr std::size_t kReceiveSize = 65536;

// Errors that tell of the datagram that was sent: nobody listens at one of the places it went to.
bool IsOfTheRequest(const std::error_code& error) {
    return error == asio::error::connection_reset || error == asio::error::connection_refused ||
           error == asio::error::network_reset;
}

class TUdpProbeSocket : public TProbeSocket {
public:
    void Open(std::uint16_t localPort) override {
        socket_.open(udp::v4());
        IgnoreUnreachablePeers(Handle());
        socket_.set_option(asio::socket_base::broadcast(true));
        socket_.bind(udp::endpoint(udp::v4(), localPort));
        // A datagram that is dropped after it was announced must not make Receive wait.
        socket_.non_blocking(true);
    }

    void Broadcast(std::span<const std::uint8_t> request, const std::string& address,
                   std::uint16_t port) override {
        socket_.send_to(asio::buffer(request.data(), request.size()),
                        EndpointOf<udp>(address, port));
    }

    std::optional<TDatagram> Receive(TMilliseconds limit) override {
        if (!WaitReadable(Handle(), limit)) return std::nullopt;
        udp::endpoint sender;
        std::error_code error;
        const std::size_t size = socket_.receive_from(asio::buffer(received_), sender, 0, error);
        if (IsOfTheRequest(error) || error == asio::error::would_block) return std::nullopt;
        if (error) throw std::system_error(error);
        if (sender.address().is_unspecified()) return TDatagram{{}, size};
        return TDatagram{sender.address().to_string(), size};
    }

private:
    std::uintptr_t Handle() { return static_cast<std::uintptr_t>(socket_.native_handle()); }

    TSocketLibrary library_;
    asio::io_context io_{1};
    udp::socket socket_{io_};
    std::array<std::uint8_t, kReceiveSize> received_;
};

}  // namespace

std::unique_ptr<TProbeSocket> MakeProbeSocket() {
    return std::make_unique<TUdpProbeSocket>();
}

}  // namespace tolvane
