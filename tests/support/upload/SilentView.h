#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/upload/NullView.h"

namespace tolvane::test {

// Ignores everything that a run shows; an error fails the test.
class TSilentView : public TNullView {
public:
    void ShowRunError(std::string text) override { ADD_FAILURE() << text; }
};

}  // namespace tolvane::test
