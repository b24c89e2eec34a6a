#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <system_error>

namespace tolvane {

// Takes one datagram from a socket that does not wait, as far as the buffer holds it; the rest is
// lost. Returns the length that the socket layer reports, 0 with an error.
std::size_t ReceiveDatagram(std::uintptr_t socket, std::span<std::uint8_t> buffer,
                            std::error_code& error);

}  // namespace tolvane
