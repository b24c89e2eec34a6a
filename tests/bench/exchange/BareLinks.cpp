#include "tests/bench/exchange/BareLinks.h"

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/ip/udp.hpp>
#include <asio/serial_port.hpp>
#include <asio/write.hpp>
#include <cstddef>

#include "system/Clock.h"
#include "system/SerialDriver.h"
#include "system/Sockets.h"

namespace tolvane::bench {
namespace {

using asio::serial_port_base;
using asio::ip::tcp;
using asio::ip::udp;

constexpr TMilliseconds kSerialStep{10};
constexpr TMilliseconds kSocketStep{100};
constexpr unsigned kBitsPerSecond = 115200;

template <class TSocket>
void WaitFor(TSocket& socket, TBareWait wait) {
    if (wait == TBareWait::Block) return;
    while (!WaitReadable(static_cast<std::uintptr_t>(socket.native_handle()), kSocketStep)) {
    }
}

class TBareTcp : public TBareLink {
public:
    TBareTcp(std::uint16_t port, TBareWait wait) : wait_(wait) {
        socket_.connect({asio::ip::address_v4::loopback(), port});
        socket_.set_option(tcp::no_delay(true));
    }
    void Exchange(std::span<const std::uint8_t> request, std::span<std::uint8_t> reply) override {
        asio::write(socket_, asio::buffer(request.data(), request.size()));
        for (std::size_t taken = 0; taken < reply.size();) {
            WaitFor(socket_, wait_);
            const std::span<std::uint8_t> rest = reply.subspan(taken);
            taken += socket_.receive(asio::buffer(rest.data(), rest.size()));
        }
    }

private:
    asio::io_context io_{1};
    tcp::socket socket_{io_};
    TBareWait wait_;
};

class TBareUdp : public TBareLink {
public:
    TBareUdp(std::uint16_t port, TBareWait wait)
        : peer_(asio::ip::address_v4::loopback(), port), wait_(wait) {}
    void Exchange(std::span<const std::uint8_t> request, std::span<std::uint8_t> reply) override {
        socket_.send_to(asio::buffer(request.data(), request.size()), peer_);
        WaitFor(socket_, wait_);
        udp::endpoint sender;
        socket_.receive_from(asio::buffer(reply.data(), reply.size()), sender);
    }

private:
    asio::io_context io_{1};
    udp::endpoint peer_;
    udp::socket socket_{io_, udp::endpoint(udp::v4(), 0)};
    TBareWait wait_;
};

class TBareSerial : public TBareLink {
public:
    TBareSerial(const std::string& name, TBareWait wait) : port_(io_, name), wait_(wait) {
        if (wait_ == TBareWait::InSteps) SetUpSerialDriver(Handle());
        port_.set_option(serial_port_base::baud_rate(kBitsPerSecond));
        port_.set_option(serial_port_base::character_size(8U));
        port_.set_option(serial_port_base::stop_bits(serial_port_base::stop_bits::one));
        port_.set_option(serial_port_base::parity(serial_port_base::parity::none));
        port_.set_option(serial_port_base::flow_control(serial_port_base::flow_control::none));
        PurgeSerialBuffers(Handle());
    }
    void Exchange(std::span<const std::uint8_t> request, std::span<std::uint8_t> reply) override {
        asio::write(port_, asio::buffer(request.data(), request.size()));
        for (std::size_t taken = 0; taken < reply.size();) {
            if (wait_ == TBareWait::InSteps && SerialBytesWaiting(Handle()) == 0) {
                SystemClock().Sleep(kSerialStep);
                continue;
            }
            const std::span<std::uint8_t> rest = reply.subspan(taken);
            taken += port_.read_some(asio::buffer(rest.data(), rest.size()));
        }
    }

private:
    std::intptr_t Handle() {
        return (std::intptr_t)port_.native_handle();
    }  // NOLINT: int or pointer

    asio::io_context io_{1};
    asio::serial_port port_;
    TBareWait wait_;
};

}  // namespace

std::unique_ptr<TBareLink> OpenBareTcp(std::uint16_t port, TBareWait wait) {
    return std::make_unique<TBareTcp>(port, wait);
}

std::unique_ptr<TBareLink> OpenBareUdp(std::uint16_t port, TBareWait wait) {
    return std::make_unique<TBareUdp>(port, wait);
}

std::unique_ptr<TBareLink> OpenBareSerial(const std::string& name, TBareWait wait) {
    return std::make_unique<TBareSerial>(name, wait);
}

}  // namespace tolvane::bench
