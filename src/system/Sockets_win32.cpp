#include "system/Sockets.h"

#include <winsock2.h>

#include <asio/error.hpp>

namespace tolvane {

TSocketLibrary::TSocketLibrary() {
    WSADATA data{};
    const int failure = WSAStartup(MAKEWORD(2, 2), &data);
    if (failure != 0) throw std::system_error(failure, std::system_category());
}

TSocketLibrary::~TSocketLibrary() {
    WSACleanup();
}

bool WaitReadable(std::uintptr_t socket, TMilliseconds limit) {
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(static_cast<SOCKET>(socket), &readable);
    const auto milliseconds = static_cast<long>(limit.count());
    timeval wait{milliseconds / 1000, milliseconds % 1000 * 1000};
    return select(0, &readable, nullptr, nullptr, &wait) != 0;
}

TReceived ReceiveDatagram(std::uintptr_t socket, std::span<std::uint8_t> buffer,
                          std::error_code& error) {
    error.clear();
    sockaddr_in sender{};
    int length = sizeof sender;
    const int count =
        recvfrom(static_cast<SOCKET>(socket), reinterpret_cast<char*>(buffer.data()),
                 static_cast<int>(buffer.size()), 0, reinterpret_cast<sockaddr*>(&sender), &length);
    const int failure = count < 0 ? WSAGetLastError() : 0;
    // The datagram was longer than the buffer; the system does not report its length.
    if (failure == WSAEMSGSIZE) return {buffer.size(), ntohl(sender.sin_addr.s_addr)};
    if (failure != 0) {
        error.assign(failure, asio::error::get_system_category());
        return {};
    }
    return {static_cast<std::size_t>(count), ntohl(sender.sin_addr.s_addr)};
}

void IgnoreUnreachablePeers(std::uintptr_t socket) {
    // SIO_UDP_CONNRESET, which not every set of headers defines. On a system without it such a
    // receive fails, and TUdpSocket treats that error as nothing received.
    constexpr DWORD kConnectionReset = IOC_IN | IOC_VENDOR | 12;
    BOOL report = FALSE;
    DWORD returned = 0;
    WSAIoctl(static_cast<SOCKET>(socket), kConnectionReset, &report, sizeof(report), nullptr, 0,
             &returned, nullptr, nullptr);
}

}  // namespace tolvane
