#include "command/Report.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>

#include "command/Columns.h"
#include "text/Numbers.h"
#include "text/OneLine.h"

namespace tolvane {
namespace {

using TJson = nlohmann::ordered_json;

struct TCellText {
    std::string operator()(std::monostate) const { return {}; }
    std::string operator()(const std::string& text) const { return OnOneLine(text); }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(double number) const { return FormatNumber(number, '.'); }
    std::string operator()(bool yes) const { return yes ? "yes" : "no"; }
};

std::string Padded(const std::string& text, std::size_t width, bool right) {
    const std::string blanks(width - std::min(width, Columns(text)), ' ');
    return right ? blanks + text : text + blanks;
}

void AppendLine(std::string& out, std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    out += line + '\n';
}

bool SaysNothing(const TCell& cell) {
    const std::string text = CellText(cell);
    return text.empty() || text == "0" || cell == TCell(false);
}

void AppendTable(std::string& out, const TReportTable& table) {
    const std::vector<std::size_t> shown = ShownColumns(table);
    std::vector<std::string> lines(table.rows.size() + 1);
    for (const std::size_t column : shown) {
        const std::string& title = table.columns[column].title;
        std::size_t width = Columns(title);
        for (const auto& row : table.rows)
            width = std::max(width, Columns(CellText(row.at(column))));
        const bool right = !table.rows.empty() && IsNumberCell(table.rows.front().at(column));
        lines[0] += Padded(title, width, right) + "  ";
        for (std::size_t row = 0; row < table.rows.size(); ++row) {
            const TCell& cell = table.rows[row][column];
            lines[row + 1] += Padded(CellText(cell), width, IsNumberCell(cell)) + "  ";
        }
    }
    for (std::string& line : lines)
        AppendLine(out, std::move(line));
}

std::string Tables(const TReport& report) {
    std::string out;
    for (const TReportTable& table : report.tables) {
        if (table.rows.empty()) continue;
        if (!out.empty()) out += '\n';
        if (!table.title.empty()) out += table.title + '\n';
        AppendTable(out, table);
    }
    return out;
}

std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\n\r") == std::string::npos) return text;
    std::string field = "\"";
    for (const char letter : text) {
        if (letter == '"') field += '"';
        field += letter;
    }
    return field + '"';
}

std::string Csv(const TReportTable& table) {
    std::string out;
    const auto append = [&](std::size_t column, const std::string& text) {
        out += CsvField(text);
        out += column + 1 < table.columns.size() ? "," : "\r\n";
    };
    for (std::size_t column = 0; column < table.columns.size(); ++column)
        append(column, table.columns[column].key);
    for (const auto& row : table.rows)
        for (std::size_t column = 0; column < table.columns.size(); ++column)
            append(column, CellText(row.at(column)));
    return out;
}

TJson JsonCell(const TCell& cell) {
    return std::visit(
        [](const auto& value) -> TJson {
            if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::monostate>)
                return nullptr;
            else
                return value;
        },
        cell);
}

std::string Json(const TReport& report, TExitCode exitCode) {
    TJson document;
    document["command"] = report.command;
    document["exitCode"] = static_cast<int>(exitCode);
    for (const TReportTable& table : report.tables) {
        TJson rows = TJson::array();
        for (const auto& row : table.rows) {
            TJson object = TJson::object();
            for (std::size_t column = 0; column < table.columns.size(); ++column)
                object[table.columns[column].key] = JsonCell(row.at(column));
            rows.push_back(std::move(object));
        }
        document[table.key] = std::move(rows);
    }
    return document.dump(2, ' ', false, TJson::error_handler_t::replace) + "\n";
}

}  // namespace

std::string CellText(const TCell& cell) {
    return std::visit(TCellText(), cell);
}

bool IsNumberCell(const TCell& cell) {
    return std::holds_alternative<std::int64_t>(cell) || std::holds_alternative<double>(cell);
}

std::vector<std::size_t> ShownColumns(const TReportTable& table) {
    std::vector<std::size_t> shown;
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
        const bool silent = std::all_of(table.rows.begin(), table.rows.end(), [&](const auto& row) {
            return SaysNothing(row.at(column));
        });
        if (!silent || column == 0) shown.push_back(column);
    }
    return shown;
}

std::string FormatReport(const TReport& report, TFormat format, TExitCode exitCode) {
    switch (format) {
        case TFormat::Table:
            return Tables(report);
        case TFormat::Csv:
            return report.tables.empty() ? std::string() : Csv(report.tables.front());
        case TFormat::Json:
            return Json(report, exitCode);
    }
    return {};
}

}  // namespace tolvane
