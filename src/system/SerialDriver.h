#pragma once

#include <cstddef>
#include <cstdint>

namespace tolvane {

// What a serial port's driver does beyond opening, reading and writing. `handle` is the system's
// handle of an open port. Each function throws std::system_error.

// Sets the driver's buffers, its write time-outs and the events that it watches.
void SetUpSerialDriver(std::intptr_t handle);
// Empties the buffers of both directions.
void PurgeSerialBuffers(std::intptr_t handle);
// Bytes received and not read yet.
std::size_t SerialBytesWaiting(std::intptr_t handle);

}  // namespace tolvane
