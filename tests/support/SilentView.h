#pragma once

#include <gtest/gtest.h>

#include <string>

#include "upload/RunView.h"

namespace tolvane::test {

// Shows nothing of a run; an error of it fails the test.
class TSilentView : public TRunView {
public:
    void ClearLog() override {}
    void Log(std::string) override {}
    void SetConnection(std::string) override {}
    void SetProgress(std::string) override {}
    void SetRunning(bool) override {}
    void SetChoicesEnabled(bool) override {}
    void ShowRunError(std::string text) override { ADD_FAILURE() << text; }
};

}  // namespace tolvane::test
