#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "entry/HostInterface.h"
#include "window/Handles.h"

namespace tolvane::host {

// One operation module, loaded. Texts are code page 1251.
class TOperationModule {
public:
    // Loads the module and gives it its number. Throws std::runtime_error with the reason why the
    // file is not an operation module.
    TOperationModule(const std::filesystem::path& file, std::int32_t number);

    const std::string& Title() const noexcept { return title_; }
    const std::filesystem::path& File() const noexcept { return file_; }
    // Starts the operation. The module writes the id of its completion message into `messageId`,
    // possibly long before this returns.
    void Start(HWND frame, std::uint32_t& messageId, const THostDatabase& database,
               TPrintProc print) const;

private:
    std::filesystem::path file_;
    TOwnedLibrary library_;
    TOperationProcedure procedure_ = nullptr;
    std::int32_t number_ = 0;
    std::string title_;
};

// What was found in a folder: the modules in the order of their file names, numbered from 1, and a
// line for each DLL that could not be used. A missing folder counts as empty.
struct TFoundModules {
    std::vector<TOperationModule> modules;
    std::vector<std::string> refused;
};
TFoundModules FindModules(const std::filesystem::path& folder);

}  // namespace tolvane::host
