#include <array>
#include <asio/ip/udp.hpp>
#include <asio/steady_timer.hpp>
#include <map>
#include <utility>

#include "simulator/Transport.h"

namespace tolvane::simulator {

namespace {

using asio::ip::udp;

// A UDP socket that passes every datagram on.
class TUdpReceiver : public TTransport, public std::enable_shared_from_this<TUdpReceiver> {
public:
    TUdpReceiver(asio::io_context& io, const udp::endpoint& endpoint, bool shared)
        : socket_(std::make_shared<udp::socket>(io)), retry_(io) {
        socket_->open(endpoint.protocol());
        if (shared) socket_->set_option(asio::socket_base::reuse_address(true));
        socket_->bind(endpoint);
    }

    void Receive() {
        socket_->async_receive_from(
            asio::buffer(buffer_), sender_,
            [self = shared_from_this()](const std::error_code& error, std::size_t count) {
                if (!self->socket_->is_open()) return;
                if (error) {
                    self->ReceiveLater();
                    return;
                }
                self->Take(self->sender_, std::span(self->buffer_).first(count));
                self->Receive();
            });
    }

    void Close() override {
        std::error_code ignored;
        socket_->close(ignored);
        retry_.cancel();
    }
    std::uint16_t Port() const override { return socket_->local_endpoint().port(); }

protected:
    virtual void Take(const udp::endpoint& sender, std::span<const std::uint8_t> datagram) = 0;
    std::string Address() const {
        const udp::endpoint endpoint = socket_->local_endpoint();
        return endpoint.address().to_string() + ":" + std::to_string(endpoint.port());
    }
    const std::shared_ptr<udp::socket>& Socket() const { return socket_; }

private:
    // Windows reports a client that has gone as an error of the next receive.
    void ReceiveLater() {
        retry_.expires_after(std::chrono::milliseconds(1));
        retry_.async_wait([self = shared_from_this()](const std::error_code& error) {
            if (!error) self->Receive();
        });
    }

    std::shared_ptr<udp::socket> socket_;
    asio::steady_timer retry_;
    udp::endpoint sender_;
    std::array<std::uint8_t, 65536> buffer_{};
};

// One client, by its address and port. A datagram has no connection that could end.
class TUdpPeer : public TLink {
public:
    TUdpPeer(std::shared_ptr<udp::socket> socket, udp::endpoint peer)
        : TLink(socket->get_executor()), socket_(std::move(socket)), peer_(std::move(peer)) {}

protected:
    void Write(const TBytes& bytes, TDone done) override {
        socket_->async_send_to(
            asio::buffer(bytes), peer_,
            [done = std::move(done)](const std::error_code& error, std::size_t) { done(!error); });
    }

    void WriteStray(const TBytes& bytes) override {
        std::error_code ignored;
        udp::socket other(Executor(), peer_.protocol());
        other.bind({socket_->local_endpoint().address(), 0}, ignored);
        other.send_to(asio::buffer(bytes), peer_, 0, ignored);
    }

    void End(TEnding) override {}

private:
    std::shared_ptr<udp::socket> socket_;
    udp::endpoint peer_;
};

class TUdpListener : public TUdpReceiver {
public:
    TUdpListener(asio::io_context& io, const udp::endpoint& endpoint, TAnswer answer)
        : TUdpReceiver(io, endpoint, false), answer_(std::move(answer)) {}

    std::string Endpoint() const override { return "udp " + Address(); }

protected:
    void Take(const udp::endpoint& sender, std::span<const std::uint8_t> datagram) override {
        TRequestParser parser;
        for (const TBytes& frame : parser.Feed(datagram))
            Peer(sender).Perform(answer_(frame));
    }

private:
    TLink& Peer(const udp::endpoint& sender) {
        constexpr std::size_t kMostPeers = 256;
        const auto found = peers_.find(sender);
        if (found != peers_.end()) return *found->second;
        if (peers_.size() >= kMostPeers) peers_.clear();
        return *(peers_[sender] = std::make_shared<TUdpPeer>(Socket(), sender));
    }

    TAnswer answer_;
    std::map<udp::endpoint, std::shared_ptr<TUdpPeer>> peers_;
};

// Several scales on one machine may all answer one broadcast.
class TProbeResponder : public TUdpReceiver {
public:
    TProbeResponder(asio::io_context& io, const TProbeOptions& options)
        : TUdpReceiver(io, udp::endpoint(udp::v4(), options.Port()), true),
          options_(options),
          request_(ProbeRequest(options.probe)) {}

    std::string Endpoint() const override { return "discovery " + Address(); }

protected:
    void Take(const udp::endpoint& sender, std::span<const std::uint8_t> datagram) override {
        if (!std::equal(datagram.begin(), datagram.end(), request_.begin(), request_.end())) return;
        std::error_code ignored;
        for (int i = 0; i < options_.replies; ++i)
            Socket()->send_to(asio::buffer(options_.reply), sender, 0, ignored);
    }

private:
    const TProbeOptions options_;
    const TBytes request_;
};

}  // namespace

TBytes ProbeRequest(TProbe probe) {
    if (probe == TProbe::Character) return {'X'};
    if (probe == TProbe::Find) return {'F', 'I', 'N', 'D'};
    TBytes request{0x43, 0x21, 0x30, 0x39};
    request.resize(20, 0);
    return request;
}

std::shared_ptr<TTransport> ListenUdp(asio::io_context& io, const std::string& host,
                                      std::uint16_t port, TAnswer answer) {
    const udp::endpoint endpoint(asio::ip::make_address(host), port);
    const auto listener = std::make_shared<TUdpListener>(io, endpoint, std::move(answer));
    listener->Receive();
    return listener;
}

std::shared_ptr<TTransport> AnswerProbe(asio::io_context& io, const TProbeOptions& options) {
    const auto responder = std::make_shared<TProbeResponder>(io, options);
    responder->Receive();
    return responder;
}

}  // namespace tolvane::simulator
