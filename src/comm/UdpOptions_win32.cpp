#include "comm/UdpOptions.h"

#include <winsock2.h>

namespace tolvane {

void IgnoreUnreachablePeers(std::uintptr_t socket) {
    // SIO_UDP_CONNRESET; not every header set names it. A system without it answers such a receive
    // with an error, which the channel takes as nothing received.
    constexpr DWORD kConnectionReset = IOC_IN | IOC_VENDOR | 12;
    BOOL report = FALSE;
    DWORD returned = 0;
    WSAIoctl(static_cast<SOCKET>(socket), kConnectionReset, &report, sizeof(report), nullptr, 0,
             &returned, nullptr, nullptr);
}

}  // namespace tolvane
