#pragma once

#include <vector>

#include "command/Problem.h"
#include "command/Report.h"

namespace tolvane {

// The table "problems" of a report.
TReportTable ProblemTable(const std::vector<TProblem>& problems);

}  // namespace tolvane
