#pragma once

#include <cstdint>

#include "comm/Clock.h"

namespace tolvane {

// Waits at most `limit` until the socket has something to read: bytes, the peer's end, or an error,
// which the next receive then tells.
bool WaitReadable(std::uintptr_t socket, TMilliseconds limit);

}  // namespace tolvane
