#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "command/ExitCode.h"
#include "command/Options.h"

namespace tolvane {

// A value of a report: nothing, a text (UTF-8), a number, or yes and no.
using TCell = std::variant<std::monostate, std::string, std::int64_t, double, bool>;

inline TCell Number(std::int64_t number) {
    return number;
}

struct TReportColumn {
    std::string key;    // in JSON and CSV
    std::string title;  // in a table
};

struct TReportTable {
    std::string key;    // in JSON
    std::string title;  // above a table
    std::vector<TReportColumn> columns;
    std::vector<std::vector<TCell>> rows{};
};

// What a command prints on standard output. The first table is the answer; the others explain it.
struct TReport {
    std::string command;
    std::vector<TReportTable> tables{};
};

// As on a terminal: on one line.
std::string CellText(const TCell& cell);
bool IsNumberCell(const TCell& cell);
// The columns that say something in a row; the first one always does.
std::vector<std::size_t> ShownColumns(const TReportTable& table);

// All tables that have rows, one below the other; as comma-separated values only the first one,
// with a line of keys; as JSON one object. Ends with a line end.
std::string FormatReport(const TReport& report, TFormat format, TExitCode exitCode);

}  // namespace tolvane
