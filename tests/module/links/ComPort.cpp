#include "tests/module/links/ComPort.h"

#include <gtest/gtest.h>

#include "system/Clock.h"

namespace tolvane::test {
namespace {

// Handles are multiples of four, and the lowest free one is given.
constexpr std::uintptr_t kHandleStep = 4;
constexpr std::uintptr_t kHandleLimit = 4096;

bool IsComPort(HANDLE handle) {
    DCB line{};
    line.DCBlength = sizeof line;
    return GetFileType(handle) == FILE_TYPE_CHAR && GetCommState(handle, &line) != 0;
}

}  // namespace

HANDLE OpenComPort() {
    HANDLE found = INVALID_HANDLE_VALUE;
    int count = 0;
    for (std::uintptr_t value = kHandleStep; value < kHandleLimit; value += kHandleStep) {
        const auto handle = reinterpret_cast<HANDLE>(value);
        if (!IsComPort(handle)) continue;
        found = handle;
        ++count;
    }
    EXPECT_EQ(count, 1) << "COM ports are open";
    return found;
}

std::size_t BytesWaiting(HANDLE port) {
    DWORD errors = 0;
    COMSTAT status{};
    EXPECT_TRUE(ClearCommError(port, &errors, &status)) << GetLastError();
    return status.cbInQue;
}

bool WaitForBytes(HANDLE port, std::size_t count) {
    const TTimePoint deadline = SystemClock().Now() + TMilliseconds(10000);
    while (BytesWaiting(port) < count) {
        if (SystemClock().Now() > deadline) return false;
        SwitchToThread();
    }
    return true;
}

}  // namespace tolvane::test
