#include "system/SerialDriver.h"

#include <sys/ioctl.h>
#include <termios.h>

#include <cerrno>
#include <system_error>

namespace tolvane {
namespace {

[[noreturn]] void Fail() {
    throw std::system_error(errno, std::system_category());
}

}  // namespace

// The system's own buffers hold 4096 bytes, and writes have no time-out.
void SetUpSerialDriver(std::intptr_t /*handle*/) {}

void PurgeSerialBuffers(std::intptr_t handle) {
    if (tcflush(static_cast<int>(handle), TCIOFLUSH) != 0) Fail();
}

std::size_t SerialBytesWaiting(std::intptr_t handle) {
    int count = 0;
    if (ioctl(static_cast<int>(handle), FIONREAD, &count) != 0) Fail();
    return static_cast<std::size_t>(count);
}

}  // namespace tolvane
