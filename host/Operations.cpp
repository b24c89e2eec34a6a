#include "host/Operations.h"

#include <algorithm>
#include <utility>

namespace tolvane::host {

void TOperations::Load(const std::filesystem::path& folder) {
    TFoundModules found = FindModules(folder);
    for (TOperationModule& module : found.modules)
        operations_.push_back({std::move(module)});
    refused_ = std::move(found.refused);
}

std::vector<std::string> TOperations::Titles() const {
    std::vector<std::string> titles;
    for (const TOperation& operation : operations_)
        titles.push_back(operation.module.Title());
    return titles;
}

std::vector<std::filesystem::path> TOperations::Files() const {
    std::vector<std::filesystem::path> files;
    for (const TOperation& operation : operations_)
        files.push_back(operation.module.File());
    return files;
}

bool TOperations::Has(int number) const {
    return number >= 1 && number <= static_cast<int>(operations_.size());
}

bool TOperations::IsAnyRunning() const {
    return std::any_of(operations_.begin(), operations_.end(),
                       [](const TOperation& operation) { return operation.running; });
}

void TOperations::Start(int number, HWND frame, const THostDatabase& database, TPrintProc print) {
    TOperation& operation = operations_.at(static_cast<std::size_t>(number - 1));
    operation.database = database;
    operation.running = true;
    operation.module.Start(frame, operation.messageId, operation.database, print);
}

int TOperations::TakeCompletion(UINT message) {
    int number = 0;
    for (TOperation& operation : operations_) {
        ++number;
        if (operation.messageId == 0 || operation.messageId != message) continue;
        operation.running = false;
        return number;
    }
    return 0;
}

}  // namespace tolvane::host
