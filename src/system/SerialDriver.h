#pragma once

#include <cstddef>
#include <cstdint>

namespace tolvane {

// What a serial port's driver does beyond opening, reading and writing; the handle is the system's.
// All throw std::system_error.

// Driver buffers, write time-outs and the events that the driver is to watch.
void SetUpSerialDriver(std::intptr_t handle);
// Both directions.
void PurgeSerialBuffers(std::intptr_t handle);
std::size_t SerialBytesWaiting(std::intptr_t handle);

}  // namespace tolvane
