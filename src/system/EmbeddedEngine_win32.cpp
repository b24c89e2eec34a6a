#include "system/EmbeddedEngine.h"

namespace tolvane {

struct TClientCallScope::TKept {};

TClientCallScope::TClientCallScope() = default;
TClientCallScope::~TClientCallScope() = default;

bool PrepareEngineLocks() {
    return false;
}

TFileUse UseOf(const std::filesystem::path& /*file*/) {
    return TFileUse::Unknown;
}

}  // namespace tolvane
