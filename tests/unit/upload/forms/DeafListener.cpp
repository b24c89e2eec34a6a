#include "DeafListener.h"

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <vector>

namespace tolvane::test {

using asio::ip::tcp;

struct TDeafListener::TSockets {
    asio::io_context io;
    tcp::acceptor listener{io};
    std::vector<tcp::socket> fillers;
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

std::uint16_t TDeafListener::Port() const {
    return sockets_->listener.local_endpoint().port();
}

}  // namespace tolvane::test
