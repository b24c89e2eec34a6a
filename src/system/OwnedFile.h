#pragma once

#include <cstdint>

#include "system/Owned.h"

namespace tolvane {

// An open file as the system knows it: a HANDLE on Windows, a file descriptor elsewhere. -1 is
// what both report when they could not open one.
struct TFileTraits {
    using TValue = std::intptr_t;
    static constexpr TValue kNone = -1;
    static void Free(TValue file) noexcept;
};
using TOwnedFile = TOwned<TFileTraits>;

}  // namespace tolvane
