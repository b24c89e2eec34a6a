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
    std::string moduleString;
    std::int32_t moduleNumber = 0;
};

TModuleState& ModuleState() noexcept;

}  // namespace tolvane
