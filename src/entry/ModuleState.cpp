#include "entry/ModuleState.h"

namespace tolvane {

TModuleState& ModuleState() noexcept {
    static TModuleState state;
    return state;
}

}  // namespace tolvane
