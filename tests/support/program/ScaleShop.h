#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "simulator/VirtualScale.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/program/ProgramRun.h"

namespace tolvane::test {

// Virtual S300 scales on TCP, numbered from 1, and the command's files for them: the scale list, a
// folder of ledgers, locks of the embedded engine.
class TScaleShop {
public:
    // One scale for each label mode.
    explicit TScaleShop(const std::vector<int>& labelModes);

    std::size_t Count() const { return scales_.size(); }
    simulator::TVirtualScale& Scale(std::size_t index) { return *scales_.at(index); }
    std::vector<simulator::TScaleState> States() const;
    std::filesystem::path StateFolder() const { return folder_ / "state"; }
    std::filesystem::path operator/(const std::filesystem::path& name) const {
        return folder_ / name;
    }
    // What is called for each request that a scale has obeyed, before it answers; on that scale's
    // thread. Nothing is called once this has returned with an empty function.
    using TOnRequest = std::function<void(std::size_t index, const simulator::TRequest& request)>;
    void OnRequest(TOnRequest onRequest);

    // The command's line with the shop's files.
    std::vector<std::string> Line(const std::vector<std::string>& arguments) const;
    // Starts it; what it prints goes into this folder of the shop.
    std::unique_ptr<TProgramRun> Start(const std::vector<std::string>& arguments,
                                       const std::filesystem::path& folder = {}) const;

private:
    void WriteList() const;

    TScratchFolder folder_;
    std::mutex mutex_;
    TOnRequest onRequest_;
    std::vector<std::unique_ptr<simulator::TVirtualScale>> scales_;
};

}  // namespace tolvane::test
