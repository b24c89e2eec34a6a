#include "command/ProblemTable.h"

#include "text/Cp1251.h"

namespace tolvane {
namespace {

// A number that is there.
TCell NumberOrNothing(std::int32_t number) {
    return number != 0 ? TCell(std::int64_t{number}) : TCell();
}

}  // namespace

TReportTable ProblemTable(const std::vector<TProblem>& problems) {
    TReportTable table{.key = "problems",
                       .title = {},
                       .columns = {{"severity", "Severity"},
                                   {"scale", "Scale"},
                                   {"number", "Number"},
                                   {"name", "Name"},
                                   {"problem", "Problem"},
                                   {"cure", "Cure"}}};
    for (const TProblem& problem : problems)
        table.rows.push_back(
            {std::string(problem.severity == TSeverity::Error ? "error" : "warning"),
             NumberOrNothing(problem.scale), NumberOrNothing(problem.number), ToUtf8(problem.name),
             ToUtf8(problem.problem), ToUtf8(problem.cure)});
    return table;
}

}  // namespace tolvane
