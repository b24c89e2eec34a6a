#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "entry/HostInterface.h"

namespace tolvane::host {

// One operation module, loaded. Texts are code page 1251.
class TOperationModule {
public:
    // Throws std::runtime_error with the reason why the file is no operation module.
    explicit TOperationModule(const std::filesystem::path& file);
    TOperationModule(TOperationModule&& other) noexcept;
    TOperationModule& operator=(TOperationModule&& other) noexcept;
    ~TOperationModule();

    const std::string& Title() const noexcept { return title_; }
    // Starts the operation. The module writes the id of its completion message into `messageId`,
    // possibly long before this returns.
    void Start(HWND frame, std::int32_t number, std::uint32_t& messageId, THostDatabase& database,
               TPrintProc print) const;

private:
    void Free() noexcept;

    HMODULE library_ = nullptr;
    TOperationProcedure procedure_ = nullptr;
    std::string title_;
};

// What was found in a folder: the modules in the order of their file names, and a line for each
// DLL that could not be used.
struct TFoundModules {
    std::vector<TOperationModule> modules;
    std::vector<std::string> refused;
};
TFoundModules FindModules(const std::filesystem::path& folder);

}  // namespace tolvane::host
