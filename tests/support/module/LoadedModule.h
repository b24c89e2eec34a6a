#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "entry/HostInterface.h"

namespace tolvane::test {

// A file in the test program's folder.
std::wstring BesideProgram(const std::wstring& name);

// Tolvane.dll from the test program's folder, loaded as a host loads it.
class TLoadedModule {
public:
    TLoadedModule();
    TLoadedModule(const TLoadedModule&) = delete;
    TLoadedModule& operator=(const TLoadedModule&) = delete;
    ~TLoadedModule();

    HMODULE Handle() const { return module_; }
    // As a host does it. The module may stay in memory while one of its windows is open.
    void Unload();

    TGetOperationTitle GetTitle = nullptr;
    TGetOperationType GetType = nullptr;
    TSetTQ4ModuleString SetModuleString = nullptr;
    TOperationProcedure Start = nullptr;

    static std::wstring Path();
    static bool IsInMemory() { return GetModuleHandleW(L"Tolvane.dll") != nullptr; }
    static bool IsGone() { return !IsInMemory(); }

private:
    HMODULE module_ = nullptr;
};

}  // namespace tolvane::test
