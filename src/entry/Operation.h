#pragma once

#include <windows.h>

#include <cstdint>

#include "entry/HostInterface.h"

namespace tolvane {

// The arguments of OperationProcedure, as the host gave them.
struct TStartArguments {
    HWND appHandle = nullptr;
    std::int32_t operationNo = 0;
    std::uint32_t* messageId = nullptr;
    HWND mainForm = nullptr;
    const THostDatabase* database = nullptr;
    TPrintProc printProc{};
};

// Makes the list window of the MDI frame, or brings it to the front, and loads its articles. A
// failure is shown in one error box, the window closes, and the completion message is posted.
// Interface thread.
void StartOperation(const TStartArguments& arguments);

// Unregisters the window classes of all forms. For when the module is unloaded.
void ReleaseWindowClasses() noexcept;

}  // namespace tolvane
