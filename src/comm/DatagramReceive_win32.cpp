#include "comm/DatagramReceive.h"

#include <winsock2.h>

#include <asio/error.hpp>

namespace tolvane {

std::size_t ReceiveDatagram(std::uintptr_t socket, std::span<std::uint8_t> buffer,
                            std::error_code& error) {
    error.clear();
    const int count = recvfrom(static_cast<SOCKET>(socket), reinterpret_cast<char*>(buffer.data()),
                               static_cast<int>(buffer.size()), 0, nullptr, nullptr);
    if (count >= 0) return static_cast<std::size_t>(count);
    const int failure = WSAGetLastError();
    // A longer datagram has filled the buffer; its own length is not told.
    if (failure == WSAEMSGSIZE) return buffer.size();
    error.assign(failure, asio::error::get_system_category());
    return 0;
}

}  // namespace tolvane
