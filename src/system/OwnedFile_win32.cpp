#include <windows.h>

#include "system/OwnedFile.h"

namespace tolvane {

void TFileTraits::Free(TValue file) noexcept {
    CloseHandle(reinterpret_cast<HANDLE>(file));
}

}  // namespace tolvane
