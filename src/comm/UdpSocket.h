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

// What ReceiveDatagram does.
using TDatagramReceive = std::function<TReceived(
    std::uintptr_t socket, std::span<std::uint8_t> buffer, std::error_code& error)>;

// One UDP socket, for the channel to a scale and for the search for devices. Operations throw
// std::system_error with the system's error. One thread at a time.
class TUdpSocket {
public:
    // Another `receive` than the system's is for tests that play the socket layer.
    explicit TUdpSocket(TDatagramReceive receive = &ReceiveDatagram);
    ~TUdpSocket();

    // Takes the local port on all addresses; 0: any free one. A socket that may broadcast reaches
    // broadcast addresses, too.
    void Open(std::uint16_t localPort, bool mayBroadcast);
    void Close();
    bool IsOpen() const;
    // One datagram to a dotted IPv4 address. Throws std::runtime_error for anything else, and when
    // the datagram was not sent whole.
    void Send(std::span<const std::uint8_t> data, const std::string& host, std::int32_t port);
    // Waits at most `limit` for one datagram. Nothing when none came, or only the system's word
    // that an earlier one that was sent had reached nobody.
    std::optional<TReceived> Receive(std::span<std::uint8_t> buffer, TMilliseconds limit);

private:
    struct TSocket;
    std::unique_ptr<TSocket> socket_;
    TDatagramReceive receive_;
};

}  // namespace tolvane
