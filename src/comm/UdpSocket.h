#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <system_error>

#include "system/Sockets.h"

namespace tolvane {

// The signature of ReceiveDatagram; tests give another.
using TDatagramReceive = std::function<TReceived(
    std::uintptr_t socket, std::span<std::uint8_t> buffer, std::error_code& error)>;

// ReceiveDatagram for a peer at a dotted IPv4 address: a datagram of any other sender is dropped,
// as if nothing had come. Of any sender when the host is no such address.
TDatagramReceive ReceiveOnlyFrom(const std::string& host);

// One UDP socket, for the channel to a scale and for the search for devices. Operations throw
// std::system_error with the system's error. One thread at a time.
class TUdpSocket {
public:
    // Tests that play the socket layer give another `receive`.
    explicit TUdpSocket(TDatagramReceive receive = &ReceiveDatagram);
    ~TUdpSocket();

    // Binds the local port on all addresses; 0 takes any free port. With `mayBroadcast` the socket
    // also sends to broadcast addresses. The socket must be closed; after a failure it may be open.
    void Open(std::uint16_t localPort, bool mayBroadcast);
    // These two never throw.
    void Close();
    bool IsOpen() const;
    // Sends one datagram to a dotted IPv4 address; waits until the system takes it. Throws
    // std::runtime_error for any other host and when the system has sent only a part of the
    // datagram.
    void Send(std::span<const std::uint8_t> data, const std::string& host, std::int32_t port);
    // Waits at most `limit` for one datagram; the socket must be open. Returns nothing when none
    // came, and when the system reports only that nobody received an earlier datagram of this
    // socket.
    std::optional<TReceived> Receive(std::span<std::uint8_t> buffer, TMilliseconds limit);

private:
    struct TSocket;
    std::unique_ptr<TSocket> socket_;
    TDatagramReceive receive_;
};

// Whether this computer knows a way to the network of an address (IPv4, most significant byte
// first). Sends nothing.
bool HasRoute(std::uint32_t address);

}  // namespace tolvane
