#include <array>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>
#include <utility>

#include "simulator/Transport.h"

namespace tolvane::simulator {

namespace {

using asio::ip::tcp;

class TTcpSession : public TLink {
public:
    TTcpSession(tcp::socket socket, TAnswer answer)
        : TLink(socket.get_executor()), socket_(std::move(socket)), answer_(std::move(answer)) {}

    void Start() {
        std::error_code ignored;
        socket_.set_option(tcp::no_delay(true), ignored);
        Read();
    }

protected:
    void Write(const TBytes& bytes, TDone done) override {
        asio::async_write(
            socket_, asio::buffer(bytes),
            [done = std::move(done)](const std::error_code& error, std::size_t) { done(!error); });
    }

    void End(TEnding ending) override {
        std::error_code ignored;
        if (ending == TEnding::HalfClose) {
            socket_.shutdown(tcp::socket::shutdown_send, ignored);
            return;
        }
        if (ending == TEnding::Reset)
            socket_.set_option(asio::socket_base::linger(true, 0), ignored);
        else
            socket_.shutdown(tcp::socket::shutdown_both, ignored);
        socket_.close(ignored);
    }

private:
    // A client that goes away ends the reading, and with it the session.
    void Read() {
        const auto self = std::static_pointer_cast<TTcpSession>(shared_from_this());
        socket_.async_read_some(asio::buffer(buffer_),
                                [self](const std::error_code& error, std::size_t count) {
                                    if (!error) self->Take(count);
                                });
    }

    void Take(std::size_t count) {
        for (const TBytes& frame : parser_.Feed(std::span(buffer_).first(count)))
            Perform(answer_(frame));
        if (socket_.is_open()) Read();
    }

    tcp::socket socket_;
    TAnswer answer_;
    TRequestParser parser_;
    std::array<std::uint8_t, 4096> buffer_{};
};

class TTcpListener : public TTransport, public std::enable_shared_from_this<TTcpListener> {
public:
    TTcpListener(asio::io_context& io, const tcp::endpoint& endpoint, TAnswer answer)
        : acceptor_(io), retry_(io), answer_(std::move(answer)) {
        acceptor_.open(endpoint.protocol());
#ifndef _WIN32
        // On Windows this option would let two programs share the port.
        acceptor_.set_option(asio::socket_base::reuse_address(true));
#endif
        acceptor_.bind(endpoint);
        acceptor_.listen();
    }

    void Accept() {
        acceptor_.async_accept(
            [self = shared_from_this()](const std::error_code& error, tcp::socket socket) {
                if (error == asio::error::operation_aborted) return;
                if (error) {
                    self->AcceptLater();
                    return;
                }
                std::make_shared<TTcpSession>(std::move(socket), self->answer_)->Start();
                self->Accept();
            });
    }

    std::string Endpoint() const override {
        const tcp::endpoint endpoint = acceptor_.local_endpoint();
        return "tcp " + endpoint.address().to_string() + ":" + std::to_string(endpoint.port());
    }
    std::uint16_t Port() const override {
        return acceptor_.local_endpoint().port();
    }

private:
    // Out of descriptors, perhaps: trying again at once would only keep the processor busy.
    void AcceptLater() {
        retry_.expires_after(std::chrono::milliseconds(100));
        retry_.async_wait([self = shared_from_this()](const std::error_code& error) {
            if (!error) self->Accept();
        });
    }

    tcp::acceptor acceptor_;
    asio::steady_timer retry_;
    TAnswer answer_;
};

}  // namespace

std::shared_ptr<TTransport> ListenTcp(asio::io_context& io, const std::string& host,
                                      std::uint16_t port, TAnswer answer) {
    const tcp::endpoint endpoint(asio::ip::make_address(host), port);
    const auto listener = std::make_shared<TTcpListener>(io, endpoint, std::move(answer));
    listener->Accept();
    return listener;
}

}  // namespace tolvane::simulator
