#pragma once

#include <string>

#include "upload/RunView.h"

namespace tolvane::test {

// Shows nothing of a run but its error, which is left to whoever derives from it.
class TNullView : public TRunView {
public:
    void ClearLog() override {}
    void Log(std::string) override {}
    void SetConnection(std::string) override {}
    void SetProgress(std::string) override {}
    void SetRunning(bool) override {}
    void SetChoicesEnabled(bool) override {}
};

}  // namespace tolvane::test
