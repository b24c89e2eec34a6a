#pragma once

#include <string>
#include <vector>

#include "tests/support/database/TestDatabase.h"

namespace tolvane::bench {

// Runs a program and returns the numbers that it prints. Throws std::runtime_error when it fails.
std::vector<double> NumbersOf(const std::vector<std::string>& command);

// The two arguments by which load_once and pascal_fetch connect.
std::vector<std::string> WithLogin(std::vector<std::string> command,
                                   const test::TTestDatabase& database);

// As load_once prints it; memory in bytes.
struct TLoadOnce {
    explicit TLoadOnce(const std::vector<double>& numbers);
    double milliseconds;
    double before;
    double most;
    double after;
    double table;
};

}  // namespace tolvane::bench
