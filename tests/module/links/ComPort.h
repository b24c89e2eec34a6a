#pragma once

#include <windows.h>

#include <cstddef>

namespace tolvane::test {

// The one COM port that this program has open, by whichever object: the handle stays that object's.
// A failure when there is not exactly one.
HANDLE OpenComPort();

std::size_t BytesWaiting(HANDLE port);

// Whether so many bytes wait in the port within seconds.
bool WaitForBytes(HANDLE port, std::size_t count);

}  // namespace tolvane::test
