#pragma once

#ifdef __linux__
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#endif

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/write.hpp>

#include "system/Sockets.h"
#include "tests/integration/comm/ChannelLink.h"

namespace tolvane::test {

// A TCP server on loopback with one connection at a time; blocking, driven by the test itself.
class TTcpPeer {
public:
    using TProtocol = asio::ip::tcp;

    explicit TTcpPeer(int backlog = TProtocol::acceptor::max_listen_connections) : acceptor_(io_) {
        Listen(0, backlog);
    }
    std::uint16_t Port() const { return acceptor_.local_endpoint().port(); }
    void Accept() {
        connection_ = acceptor_.accept();
        connection_.set_option(TProtocol::no_delay(true));
    }
    void Send(const TCmdBuffer& bytes) { asio::write(connection_, asio::buffer(bytes)); }
    TCmdBuffer Receive(std::size_t count) {
        TCmdBuffer bytes(count);
        std::size_t got = 0;
        while (got < count && WaitReadable(Handle(), kPeerPatience)) {
            std::error_code error;
            got += connection_.read_some(asio::buffer(bytes.data() + got, count - got), error);
            if (error) break;
        }
        bytes.resize(got);
        return bytes;
    }
    void Close() { connection_.close(); }
    void Reset() {
        connection_.set_option(asio::socket_base::linger(true, 0));
        connection_.close();
    }
#ifdef __linux__
    // Drops the connection without telling the other side. Returns false when this user may not do
    // that.
    bool Vanish() {
        const int repair = 1;
        const int handle = connection_.native_handle();
        if (setsockopt(handle, IPPROTO_TCP, TCP_REPAIR, &repair, sizeof(repair)) != 0) return false;
        connection_.close();
        return true;
    }
#endif
    void StopListening() {
        acceptor_.close();
    }
    void ListenAgain(std::uint16_t port) {
        Listen(port, TProtocol::acceptor::max_listen_connections);
    }

private:
    void Listen(std::uint16_t port, int backlog) {
        acceptor_.open(TProtocol::v4());
#ifndef _WIN32
        // Connections that ended a moment ago still hold the port otherwise.
        acceptor_.set_option(asio::socket_base::reuse_address(true));
#endif
        acceptor_.bind({asio::ip::address_v4::loopback(), port});
        acceptor_.listen(backlog);
    }
    std::uintptr_t Handle() {
        return static_cast<std::uintptr_t>(connection_.native_handle());
    }

    asio::io_context io_;
    TProtocol::acceptor acceptor_;
    TProtocol::socket connection_{io_};
};

}  // namespace tolvane::test
