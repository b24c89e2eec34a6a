#pragma once

#include <algorithm>
#include <array>
#include <asio/error.hpp>
#include <asio/ip/address_v4.hpp>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <system_error>

#include "comm/DevCommBaseUnit.h"
#include "system/Clock.h"
#include "text/IpAddress.h"

namespace tolvane {

inline constexpr const char* kSocketNotConnected = "Socket is not connected.";
inline constexpr std::int32_t kLargestPort = 65535;

// The longest single wait on a socket before the clock and the stop are checked again.
inline constexpr TMilliseconds kLongestSocketWait{100};

// The socket library's form of an address and a port. Throws std::runtime_error with a text for the
// user when either is invalid.
template <class TProtocol>
typename TProtocol::endpoint EndpointOf(const std::string& host, std::int32_t port) {
    const auto address = ParseIpV4(host);
    if (!address) throw std::runtime_error("\"" + host + "\" is not an IP address.");
    if (port < 1 || port > kLargestPort)
        throw std::runtime_error(std::to_string(port) + " is not a port number.");
    return {asio::ip::address_v4(*address), static_cast<std::uint16_t>(port)};
}

// Whether the error of a read means that the connection is lost. A system that gives up a
// connection reports the last error that the network has sent it.
inline bool IsLostConnection(const std::error_code& error) {
    const std::array losses = {
        std::error_code(asio::error::eof),
        std::error_code(asio::error::connection_reset),
        std::error_code(asio::error::connection_aborted),
        std::error_code(asio::error::broken_pipe),
        std::error_code(asio::error::not_connected),
        std::error_code(asio::error::shut_down),
        std::error_code(asio::error::timed_out),
        std::error_code(asio::error::network_down),
        std::error_code(asio::error::network_unreachable),
        std::error_code(asio::error::network_reset),
        std::error_code(asio::error::host_unreachable),
    };
    return std::find(losses.begin(), losses.end(), error) != losses.end();
}

// The bytes of a datagram of the reported length; throws CommException when a socket layer reports
// more than the buffer holds.
inline std::span<const std::uint8_t> ReceivedDatagram(std::span<const std::uint8_t> buffer,
                                                      std::size_t length) {
    if (length > buffer.size()) throw CommException(kReadWrongAnswer, "Wrong answer. Too long.");
    return buffer.first(length);
}

}  // namespace tolvane
