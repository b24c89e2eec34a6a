#include "comm/SocketWait.h"

#include <poll.h>

#include <cerrno>

namespace tolvane {

bool WaitReadable(std::uintptr_t socket, TMilliseconds limit) {
    pollfd entry{static_cast<int>(socket), POLLIN, 0};
    const int ready = poll(&entry, 1, static_cast<int>(limit.count()));
    return ready > 0 || (ready < 0 && errno != EINTR);
}

}  // namespace tolvane
