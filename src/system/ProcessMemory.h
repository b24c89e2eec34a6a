#pragma once

#include <cstddef>

namespace tolvane {

// Whether the process can read or write `size` bytes there; false for a null pointer. They look at
// the pages only: whether the value that was there still is nobody can tell. For addresses that
// come from a host, and so with an answer only on Windows; elsewhere only a null pointer is told.
bool CanRead(const void* from, std::size_t size) noexcept;
bool CanWrite(const void* to, std::size_t size) noexcept;

// The same for a text up to its zero byte.
bool CanReadText(const char* text) noexcept;

}  // namespace tolvane
