#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <system_error>
#include <vector>

#include "system/Clock.h"

namespace tolvane {

// What differs between systems in sockets. `socket` is the system's own handle.

// Keeps the system's socket library ready while it lives. The system counts the users of the
// library, so each channel holds an object of its own. The constructor throws std::system_error
// when the library does not start.
class TSocketLibrary {
public:
    TSocketLibrary();
    // NOLINTNEXTLINE(performance-trivially-destructible): one system has something to do here.
    ~TSocketLibrary();
    TSocketLibrary(const TSocketLibrary&) = delete;
    TSocketLibrary& operator=(const TSocketLibrary&) = delete;
};

// Waits at most `limit` until the socket has something to read: bytes, the end of the connection,
// or an error, which the next receive then reports. False when the time is over or a signal came.
// Throws std::system_error when the system cannot wait. Any thread.
bool WaitReadable(std::uintptr_t socket, TMilliseconds limit);

// One received datagram.
struct TReceived {
    std::size_t length = 0;    // as the system reports it; 0 with an error
    std::uint32_t sender = 0;  // IPv4, most significant byte first; 0: unknown
};

// Takes one datagram from a non-blocking socket; bytes that do not fit into the buffer are lost,
// and the length may then be the buffer's. `error` is in Asio's system category, and cleared on
// success.
TReceived ReceiveDatagram(std::uintptr_t socket, std::span<std::uint8_t> buffer,
                          std::error_code& error);

// The broadcast addresses (IPv4, most significant byte first) of the networks that this computer is
// in, but for loopback. Empty when the system does not tell.
std::vector<std::uint32_t> BroadcastAddresses();

// Keeps "port unreachable" answers to earlier datagrams from ending a receive, on a system that
// reports them there.
void IgnoreUnreachablePeers(std::uintptr_t socket);

}  // namespace tolvane
