#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>

#include "system/Sockets.h"
#include "tests/integration/comm/ChannelLink.h"

namespace tolvane::test {

// A UDP socket on loopback with a port of its own.
class TUdpPeer {
public:
    using TProtocol = asio::ip::udp;

    std::uint16_t Port() const { return socket_.local_endpoint().port(); }
    void Send(const TCmdBuffer& datagram, std::uint16_t port) {
        socket_.send_to(asio::buffer(datagram), {asio::ip::address_v4::loopback(), port});
    }
    // The next datagram; empty when none comes within seconds.
    TCmdBuffer Receive() {
        TCmdBuffer datagram(65536);
        if (!WaitReadable(static_cast<std::uintptr_t>(socket_.native_handle()), kPeerPatience))
            return {};
        datagram.resize(socket_.receive(asio::buffer(datagram)));
        return datagram;
    }
    void Close() { socket_.close(); }

private:
    asio::io_context io_;
    TProtocol::socket socket_{io_, {asio::ip::address_v4::loopback(), 0}};
};

}  // namespace tolvane::test
