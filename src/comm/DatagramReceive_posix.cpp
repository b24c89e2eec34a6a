#include "comm/DatagramReceive.h"

#include <sys/socket.h>

#include <asio/error.hpp>
#include <cerrno>

namespace tolvane {

std::size_t ReceiveDatagram(std::uintptr_t socket, std::span<std::uint8_t> buffer,
                            std::error_code& error) {
    const ssize_t count = recv(static_cast<int>(socket), buffer.data(), buffer.size(), 0);
    if (count < 0) {
        error.assign(errno, asio::error::get_system_category());
        return 0;
    }
    error.clear();
    return static_cast<std::size_t>(count);
}

}  // namespace tolvane
