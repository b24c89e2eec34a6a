#include <unistd.h>

#include "system/OwnedFile.h"

namespace tolvane {

void TFileTraits::Free(TValue file) noexcept {
    close(static_cast<int>(file));
}

}  // namespace tolvane
