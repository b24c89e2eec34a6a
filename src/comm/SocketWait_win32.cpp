#include "comm/SocketWait.h"

#include <winsock2.h>

namespace tolvane {

bool WaitReadable(std::uintptr_t socket, TMilliseconds limit) {
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(static_cast<SOCKET>(socket), &readable);
    const auto milliseconds = static_cast<long>(limit.count());
    timeval wait{milliseconds / 1000, milliseconds % 1000 * 1000};
    return select(0, &readable, nullptr, nullptr, &wait) != 0;
}

}  // namespace tolvane
