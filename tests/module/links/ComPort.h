#pragma once

#include <windows.h>

#include <cstddef>

namespace tolvane::test {

// The handle of the only COM port that this program has open; it still belongs to the object that
// opened it. Fails the test when there is not exactly one.
HANDLE OpenComPort();

std::size_t BytesWaiting(HANDLE port);

// Whether that many bytes have arrived in the port within seconds.
bool WaitForBytes(HANDLE port, std::size_t count);

}  // namespace tolvane::test
