#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <cstdint>

namespace tolvane::test {

// A loopback port that was free a moment ago.
inline std::uint16_t FreeUdpPort() {
    asio::io_context io;
    const asio::ip::udp::socket socket(io, {asio::ip::address_v4::loopback(), 0});
    return socket.local_endpoint().port();
}

}  // namespace tolvane::test
