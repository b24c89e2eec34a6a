#pragma once

#include <unistd.h>

#include <asio/ip/address_v4.hpp>
#include <cstdint>

namespace tolvane::test {

// One of eight loopback addresses, numbered from 0, that no other process uses: there it can have
// any port.
inline asio::ip::address_v4 OwnAddress(unsigned which) {
    const auto process = static_cast<std::uint32_t>(getpid());
    return asio::ip::address_v4(0x7F'80'00'00 + ((process * 8 + which % 8) & 0x3F'FF'FF));
}

}  // namespace tolvane::test
