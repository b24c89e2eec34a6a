#include "system/Sockets.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <array>
#include <asio/error.hpp>
#include <system_error>

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
    const int ready = select(0, &readable, nullptr, nullptr, &wait);
    if (ready == SOCKET_ERROR) throw std::system_error(WSAGetLastError(), std::system_category());
    return ready > 0;
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

std::vector<std::uint32_t> BroadcastAddresses() {
    const TSocketLibrary library;
    const SOCKET socket = ::socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    if (socket == INVALID_SOCKET) return {};
    std::array<INTERFACE_INFO, 64> list{};
    DWORD size = 0;
    if (WSAIoctl(socket, SIO_GET_INTERFACE_LIST, nullptr, 0, list.data(),
                 static_cast<DWORD>(sizeof(list)), &size, nullptr, nullptr) != 0)
        size = 0;
    closesocket(socket);
    std::vector<std::uint32_t> addresses;
    for (std::size_t i = 0; i < size / sizeof(INTERFACE_INFO); ++i) {
        constexpr u_long kNeeded = IFF_UP | IFF_BROADCAST;
        if ((list[i].iiFlags & kNeeded) != kNeeded || (list[i].iiFlags & IFF_LOOPBACK) != 0)
            continue;
        // The list's own broadcast addresses are 255.255.255.255.
        const std::uint32_t mask = ntohl(list[i].iiNetmask.AddressIn.sin_addr.s_addr);
        addresses.push_back(ntohl(list[i].iiAddress.AddressIn.sin_addr.s_addr) | ~mask);
    }
    return addresses;
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
