#pragma once

#include <string>

#include "upload/RunView.h"

namespace tolvane::test {

// Ignores everything that a run shows; what becomes of an error is up to the derived class.
class TNullView : public TRunView {
public:
    void ClearLog() override {}
    void Log(std::string) override {}
    void SetConnection(std::string) override {}
    void SetProgress(std::string) override {}
    void ShowCount(const TRunCount&) override {}
    void SetRunning(bool) override {}
    void SetChoicesEnabled(bool) override {}
    void ShowMemoryError() noexcept override { ShowRunError("no memory"); }
};

}  // namespace tolvane::test
