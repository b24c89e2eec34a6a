#pragma once

#include <cstddef>

namespace tolvane {

// Whether the process can read or write `size` bytes there; false for a null pointer. They look at
// the pages only: whether the host's value still lies there nobody can tell.
bool CanRead(const void* from, std::size_t size) noexcept;
bool CanWrite(const void* to, std::size_t size) noexcept;

// The same for a text up to its zero byte.
bool CanReadText(const char* text) noexcept;

}  // namespace tolvane
