#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <memory>
#include <utility>
#include <vector>

#include "simulator/StreamLink.h"
#include "simulator/Transport.h"

namespace tolvane::simulator {

namespace {

using asio::ip::tcp;

class TTcpSession : public TStreamLink<tcp::socket> {
public:
    using TStreamLink::TStreamLink;

    void Start() {
        std::error_code ignored;
        Stream().set_option(tcp::no_delay(true), ignored);
        Read();
    }

    void Close() {
        std::error_code ignored;
        Stream().close(ignored);
    }

protected:
    void End(TEnding ending) override {
        std::error_code ignored;
        if (ending == TEnding::HalfClose) {
            Stream().shutdown(tcp::socket::shutdown_send, ignored);
            return;
        }
        if (ending == TEnding::Reset)
            Stream().set_option(asio::socket_base::linger(true, 0), ignored);
        else
            Stream().shutdown(tcp::socket::shutdown_both, ignored);
        Stream().close(ignored);
    }
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
                if (!self->acceptor_.is_open()) return;
                if (error) {
                    self->AcceptLater();
                    return;
                }
                self->Serve(std::move(socket));
                self->Accept();
            });
    }

    void Close() override {
        std::error_code ignored;
        acceptor_.close(ignored);
        retry_.cancel();
        for (const auto& entry : sessions_) {
            if (const auto session = entry.lock()) session->Close();
        }
    }

    std::string Endpoint() const override {
        const tcp::endpoint endpoint = acceptor_.local_endpoint();
        return "tcp " + endpoint.address().to_string() + ":" + std::to_string(endpoint.port());
    }
    std::uint16_t Port() const override {
        return acceptor_.local_endpoint().port();
    }

private:
    void Serve(tcp::socket socket) {
        const auto session = std::make_shared<TTcpSession>(std::move(socket), answer_);
        std::erase_if(sessions_, [](const auto& entry) { return entry.expired(); });
        sessions_.push_back(session);
        session->Start();
    }

    // The system may be out of descriptors; trying again at once would only keep the processor
    // busy.
    void AcceptLater() {
        retry_.expires_after(std::chrono::milliseconds(100));
        retry_.async_wait([self = shared_from_this()](const std::error_code& error) {
            if (!error) self->Accept();
        });
    }

    tcp::acceptor acceptor_;
    asio::steady_timer retry_;
    TAnswer answer_;
    std::vector<std::weak_ptr<TTcpSession>> sessions_;
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
