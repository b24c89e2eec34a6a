#pragma once

#include <windows.h>

#include <cstdint>
#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include "entry/HostInterface.h"
#include "host/OperationModule.h"

namespace tolvane::host {

// The operations that the host offers, and which of them run. An operation's number is its position
// in the menu, from 1 on. Interface thread.
class TOperations {
public:
    // Loads the operation modules of a folder. Must be called once.
    void Load(const std::filesystem::path& folder);

    std::vector<std::string> Titles() const;
    std::vector<std::filesystem::path> Files() const;
    // A line for each file of the folder that is not an operation module.
    const std::vector<std::string>& Refused() const { return refused_; }

    bool Has(int number) const;
    bool IsAnyRunning() const;
    // Starts an existing operation. It counts as running even before its module is called.
    void Start(int number, HWND frame, const THostDatabase& database, TPrintProc print);
    // If this is the completion message of an operation, marks it as no longer running and returns
    // its number; returns 0 for any other message. The message may come twice, and before Start
    // returns.
    int TakeCompletion(UINT message);

private:
    struct TOperation {
        TOperationModule module;
        THostDatabase database{};  // must outlive the module's use
        std::uint32_t messageId = 0;
        bool running = false;
    };
    std::deque<TOperation> operations_;  // addresses stay valid
    std::vector<std::string> refused_;
};

}  // namespace tolvane::host
