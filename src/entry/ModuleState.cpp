#include "entry/ModuleState.h"

namespace tolvane {

TModuleState& ModuleState() noexcept {
    static TModuleState state;
    return state;
}

void PostCompletion() noexcept {
    const TModuleState& state = ModuleState();
    if (state.messageId != 0 && IsWindow(state.appHandle) != 0)
        PostMessageW(state.appHandle, state.messageId, 0, 0);
}

}  // namespace tolvane
