#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "entry/HostInterface.h"

namespace tolvane {

// What the module keeps from call to call; the only mutable state outside its windows. Interface
// thread.
struct TModuleState {
    HWND appHandle = nullptr;
    std::int32_t operationNo = 0;
    UINT messageId = 0;  // of the completion message
    TPrintProc printProc{};
    HWND openingIn = nullptr;  // the MDI client in which a list window is being made
    std::string moduleString;
    std::int32_t moduleNumber = 0;
};

// The module's only state.
TModuleState& ModuleState() noexcept;

// Posts the completion message to the host, once per call. Does nothing before the first start and
// when the host's window is gone. Interface thread.
void PostCompletion() noexcept;

}  // namespace tolvane
