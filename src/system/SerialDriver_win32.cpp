#include "system/SerialDriver.h"

#include <windows.h>

#include <system_error>

namespace tolvane {
namespace {

constexpr DWORD kDriverBuffer = 4096;
constexpr DWORD kWatchedEvents =
    EV_RXCHAR | EV_RING | EV_BREAK | EV_CTS | EV_DSR | EV_ERR | EV_RLSD;

void Check(BOOL done) {
    if (!done) throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

HANDLE AsHandle(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

}  // namespace

void SetUpSerialDriver(std::intptr_t handle) {
    Check(SetCommMask(AsHandle(handle), kWatchedEvents));
    Check(SetupComm(AsHandle(handle), kDriverBuffer, kDriverBuffer));
    COMMTIMEOUTS timeouts{};
    timeouts.ReadIntervalTimeout =
        MAXDWORD;  // a read takes the bytes that have arrived and never waits
    timeouts.WriteTotalTimeoutMultiplier = 0;
    timeouts.WriteTotalTimeoutConstant = 0;
    Check(SetCommTimeouts(AsHandle(handle), &timeouts));
}

void PurgeSerialBuffers(std::intptr_t handle) {
    Check(
        PurgeComm(AsHandle(handle), PURGE_RXABORT | PURGE_RXCLEAR | PURGE_TXABORT | PURGE_TXCLEAR));
}

std::size_t SerialBytesWaiting(std::intptr_t handle) {
    DWORD errors = 0;
    COMSTAT status{};
    Check(ClearCommError(AsHandle(handle), &errors, &status));
    return status.cbInQue;
}

}  // namespace tolvane
