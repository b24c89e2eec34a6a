#include "DeafListener.h"

#include <array>
#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <vector>

namespace tolvane::test {

using asio::ip::tcp;

struct TDeafListener::TSockets {
    asio::io_context io;
    tcp::acceptor listener{io};
    std::vector<tcp::socket> fillers;

    // The next connection that waits; nothing when none does.
    std::optional<tcp::socket> Accept() {
        std::error_code none;
        tcp::socket peer = listener.accept(none);
        if (none) return std::nullopt;
        return peer;
    }
};

TDeafListener::TDeafListener() : sockets_(std::make_unique<TSockets>()) {
    constexpr int kFillers = 8;
    tcp::acceptor& listener = sockets_->listener;
    listener.open(tcp::v4());
    listener.bind({asio::ip::make_address("127.0.0.1"), 0});
    listener.listen(1);
    for (int i = 0; i < kFillers; ++i) {
        tcp::socket& filler = sockets_->fillers.emplace_back(sockets_->io);
        filler.async_connect(listener.local_endpoint(), [](const std::error_code&) {});
    }
    sockets_->io.poll();
}

TDeafListener::~TDeafListener() {
    for (tcp::socket& filler : sockets_->fillers) {
        std::error_code ignored;
        filler.close(ignored);
    }
    sockets_->io.run();
}

void TDeafListener::Hear() {
    for (tcp::socket& filler : sockets_->fillers) {
        std::error_code ignored;
        filler.close(ignored);
    }
    sockets_->listener.non_blocking(true);
    while (sockets_->Accept()) {
    }
}

std::optional<std::size_t> TDeafListener::BytesReceived() {
    std::optional<std::size_t> bytes;
    while (std::optional<tcp::socket> peer = sockets_->Accept()) {
        bytes = bytes.value_or(0);
        std::array<char, 256> buffer{};
        std::error_code ended;
        peer->non_blocking(false);
        while (!ended)
            *bytes += peer->read_some(asio::buffer(buffer), ended);
    }
    return bytes;
}

std::uint16_t TDeafListener::Port() const {
    return sockets_->listener.local_endpoint().port();
}

}  // namespace tolvane::test
