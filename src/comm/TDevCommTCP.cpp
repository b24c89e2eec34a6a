#include "comm/TDevCommTCP.h"

#include <algorithm>
#include <array>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/write.hpp>
#include <optional>
#include <span>

#include "comm/SocketSupport.h"
#include "system/Sockets.h"

namespace tolvane {
namespace {

using asio::ip::tcp;

constexpr TMilliseconds kConnectTimeout{3000};
constexpr std::size_t kReceiveSize = 32768;

[[noreturn]] void FailNotConnected() {
    throw CommException(kReadNotConnected, kSocketNotConnected);
}

}  // namespace

class TDevCommTCP::TConnection : public TByteReceiver {
public:
    bool IsConnected() noexcept {
        if (!socket_.is_open()) return false;
        try {
            if (!WaitReadable(Handle(), TMilliseconds(0))) return true;
        } catch (const std::exception&) {
            return false;
        }
        std::uint8_t next = 0;
        std::error_code error;
        socket_.receive(asio::buffer(&next, 1), tcp::socket::message_peek, error);
        return !error;
    }

    void Connect(const tcp::endpoint& endpoint, TClock& clock) {
        std::optional<std::error_code> outcome;
        socket_.async_connect(endpoint, [&](const std::error_code& error) { outcome = error; });
        const TTimePoint deadline = clock.Now() + kConnectTimeout;
        io_.restart();
        for (TTimePoint now = clock.Now(); !outcome && now < deadline; now = clock.Now())
            io_.run_one_for(std::min<TTimePoint::duration>(kLongestSocketWait, deadline - now));
        if (!outcome) {
            Close();
            io_.run();  // the abandoned attempt ends
            throw std::runtime_error("Connect timed out.");
        }
        if (*outcome) throw std::system_error(*outcome);
        socket_.set_option(tcp::no_delay(true));
    }

    void Close() {
        std::error_code ignored;
        socket_.shutdown(tcp::socket::shutdown_both, ignored);
        socket_.close(ignored);
    }

    void Send(const TCmdBuffer& data) { asio::write(socket_, asio::buffer(data)); }

    void CheckConnected() override {
        if (!socket_.is_open()) FailNotConnected();
    }

    std::span<const std::uint8_t> Receive(TMilliseconds limit) override {
        if (!WaitReadable(Handle(), std::min(limit, kLongestSocketWait))) return {};
        std::error_code error;
        const std::size_t count = socket_.receive(asio::buffer(received_), 0, error);
        if (IsLostConnection(error)) FailNotConnected();
        if (error) throw std::system_error(error);
        return {received_.data(), count};
    }

private:
    std::uintptr_t Handle() { return static_cast<std::uintptr_t>(socket_.native_handle()); }

    TSocketLibrary library_;
    asio::io_context io_{1};
    tcp::socket socket_{io_};
    std::array<std::uint8_t, kReceiveSize> received_;
};

TDevCommTCP::TDevCommTCP(TClock& clock)
    : TSocketChannel("TCP", 0, clock), connection_(std::make_unique<TConnection>()) {}

TDevCommTCP::~TDevCommTCP() {
    connection_->Close();
}

bool TDevCommTCP::IsConnected() const {
    return connection_->IsConnected();
}

void TDevCommTCP::OpenSocket() {
    connection_->Connect(EndpointOf<tcp>(Host(), Port()), Clock());
    // A peer may hang up at once; Open then fails with a text.
    if (!IsConnected()) FailNotConnected();
}

void TDevCommTCP::Close() {
    connection_->Close();
}

void TDevCommTCP::SendBytes(const TCmdBuffer& data) {
    connection_->Send(data);
}

TByteReceiver& TDevCommTCP::Receiver() {
    return *connection_;
}

}  // namespace tolvane
