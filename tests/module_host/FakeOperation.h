#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "entry/HostInterface.h"

namespace tolvane::test {

// What a fake operation was given last, and what it did; its export FakeState points to it.
struct TFakeState {
    std::string moduleString;
    std::int32_t moduleNumber = -1;
    int starts = 0;
    std::int32_t operationNo = 0;
    HWND appHandle = nullptr;
    HWND mainForm = nullptr;
    THostDatabase database{};
    bool textIsNull = false;
    TPrintProc print{};
    HWND grid = nullptr;
    int textsAsked = 0;  // of the grid
    // What the next start does.
    bool fail = false;  // as a module whose start fails: no window, the completion message twice
    int rows = 250;
};

using TFakeStateFunction = TFakeState*(TOLVANE_STDCALL*)();

// The window of the fake operation and the command by which it prints its grid.
inline constexpr const wchar_t* kFakeClass = L"FakeOperationWindow";
inline constexpr int kFakePrint = 1;

}  // namespace tolvane::test
