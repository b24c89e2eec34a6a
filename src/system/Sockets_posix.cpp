#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <asio/error.hpp>
#include <cerrno>
#include <memory>
#include <system_error>

#include "system/Sockets.h"

namespace tolvane {

TSocketLibrary::TSocketLibrary() = default;
TSocketLibrary::~TSocketLibrary() = default;

bool WaitReadable(std::uintptr_t socket, TMilliseconds limit) {
    pollfd entry{static_cast<int>(socket), POLLIN, 0};
    const int ready = poll(&entry, 1, static_cast<int>(limit.count()));
    if (ready < 0 && errno != EINTR) throw std::system_error(errno, std::system_category());
    return ready > 0;
}

TReceived ReceiveDatagram(std::uintptr_t socket, std::span<std::uint8_t> buffer,
                          std::error_code& error) {
    sockaddr_in sender{};
    socklen_t length = sizeof sender;
    const ssize_t count = recvfrom(static_cast<int>(socket), buffer.data(), buffer.size(), 0,
                                   reinterpret_cast<sockaddr*>(&sender), &length);
    if (count < 0) {
        error.assign(errno, asio::error::get_system_category());
        return {};
    }
    error.clear();
    return {static_cast<std::size_t>(count), ntohl(sender.sin_addr.s_addr)};
}

std::vector<std::uint32_t> BroadcastAddresses() {
    ifaddrs* list = nullptr;
    if (getifaddrs(&list) != 0) return {};
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(list, &freeifaddrs);
    std::vector<std::uint32_t> addresses;
    for (const ifaddrs* each = list; each != nullptr; each = each->ifa_next) {
        constexpr unsigned kNeeded = IFF_UP | IFF_BROADCAST;
        if ((each->ifa_flags & kNeeded) != kNeeded || each->ifa_addr == nullptr ||
            each->ifa_addr->sa_family != AF_INET || each->ifa_broadaddr == nullptr)
            continue;
        const auto* const address = reinterpret_cast<const sockaddr_in*>(each->ifa_broadaddr);
        addresses.push_back(ntohl(address->sin_addr.s_addr));
    }
    return addresses;
}

// Here the system does not report them to a socket that is not connected to one peer.
void IgnoreUnreachablePeers(std::uintptr_t /*socket*/) {}

}  // namespace tolvane
