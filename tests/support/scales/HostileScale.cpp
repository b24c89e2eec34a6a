#include "tests/support/scales/HostileScale.h"

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>
#include <thread>
#include <utility>

namespace tolvane::test {
namespace {

using asio::ip::tcp;
using TBytes = std::vector<unsigned char>;

const TBytes kDone3C = {0x02, 0x0D, 0x14, 0x50, 0x14, 0x50, 0x03};

}  // namespace

const std::vector<THostility>& Hostilities() {
    static const std::vector<THostility> kAll = {
        {"a flood without an end", TBytes(4096, 0x55), std::chrono::milliseconds(1)},
        {"a byte each second", {0x02}, std::chrono::seconds(1)},
        {"answers before the requests", kDone3C, std::chrono::milliseconds(10)},
        {"a listener that says nothing", {}, std::chrono::seconds(1)},
        {"a reset", {}, {}, true},
    };
    return kAll;
}

struct THostileScale::TState {
    struct TVictim {
        explicit TVictim(tcp::socket taken)
            : socket(std::move(taken)), timer(socket.get_executor()) {}
        tcp::socket socket;
        asio::steady_timer timer;
    };

    explicit TState(THostility kind) : hostility(std::move(kind)) {
        Accept();
        thread = std::thread([this] { io.run(); });
    }
    TState(const TState&) = delete;
    TState& operator=(const TState&) = delete;
    ~TState() {
        io.stop();
        thread.join();
    }

    void Accept() {
        acceptor.async_accept([this](const std::error_code& error, tcp::socket socket) {
            if (error) return;
            auto victim = std::make_shared<TVictim>(std::move(socket));
            if (hostility.resets)
                victim->socket.set_option(asio::socket_base::linger(true, 0));
            else
                Annoy(victim);
            kept.push_back(victim);
            if (hostility.resets) victim->socket.close();
            Accept();
        });
    }
    void Annoy(const std::shared_ptr<TVictim>& victim) {
        asio::async_write(
            victim->socket, asio::buffer(hostility.bytes),
            [this, victim](const std::error_code& error, std::size_t) {
                if (error) return;
                victim->timer.expires_after(hostility.every);
                victim->timer.async_wait([this, victim](const std::error_code&) { Annoy(victim); });
            });
    }

    const THostility hostility;
    asio::io_context io;
    tcp::acceptor acceptor{io, {asio::ip::address_v4::loopback(), 0}};
    std::vector<std::shared_ptr<TVictim>> kept;
    std::thread thread;
};

THostileScale::THostileScale(const THostility& hostility)
    : state_(std::make_unique<TState>(hostility)) {}

THostileScale::~THostileScale() = default;

std::uint16_t THostileScale::Port() const {
    return state_->acceptor.local_endpoint().port();
}

}  // namespace tolvane::test
