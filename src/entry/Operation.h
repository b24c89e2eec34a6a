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

// Shows the list window of the MDI frame, made or brought to the front, and loads it. A failure is
// shown in one error box, the window closes, and the completion message is posted. Interface
// thread.
void StartOperation(const TStartArguments& arguments);

// Gives back the window classes of all forms; when the module is unloaded.
void ReleaseWindowClasses() noexcept;

}  // namespace tolvane
