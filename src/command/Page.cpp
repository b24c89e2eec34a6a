#include "command/Page.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "command/PageStyle.h"
#include "text/Cp1251.h"
#include "text/Numbers.h"

namespace tolvane {
namespace {

// As HTML shows it. A line's end stays one; other control characters are blanks.
std::string Escaped(const std::string& text) {
    const std::string clean = IsUtf8(text) ? text : ToUtf8(FromUtf8(text));
    std::string html;
    html.reserve(clean.size());
    for (const char letter : clean) {
        if (letter == '&')
            html += "&amp;";
        else if (letter == '<')
            html += "&lt;";
        else if (letter == '>')
            html += "&gt;";
        else if (letter == '"')
            html += "&quot;";
        else if ((static_cast<unsigned char>(letter) < ' ' && letter != '\n') || letter == '\x7F')
            html += ' ';
        else
            html += letter;
    }
    return html;
}

struct TVerdict {
    TExitCode code;
    std::string_view color;
    std::string_view text;
};
constexpr auto kVerdicts = std::to_array<TVerdict>({
    {TExitCode::Done, "good", "Done"},
    {TExitCode::Internal, "bad", "Internal error"},
    {TExitCode::Usage, "bad", "The options or the configuration do not fit"},
    {TExitCode::SomeFailed, "bad", "Some scales or articles failed"},
    {TExitCode::Database, "bad", "The database was not read"},
    {TExitCode::NoScaleReached, "bad", "No scale was reached"},
    {TExitCode::ProblemsFound, "warn", "Problems found"},
    {TExitCode::Locked, "warn", "Another run works on a scale"},
    {TExitCode::Interrupted, "warn", "Interrupted"},
});

const TVerdict& VerdictOf(TExitCode code) {
    for (const TVerdict& verdict : kVerdicts)
        if (verdict.code == code) return verdict;
    return kVerdicts[1];
}

struct TWordColor {
    std::string_view word;
    std::string_view color;
};
// Of outcomes, of the states of articles, and of severities.
constexpr auto kWordColors = std::to_array<TWordColor>({
    {"done", "good"},
    {"failed", "bad"},
    {"not reached", "bad"},
    {"locked", "warn"},
    {"stopped", "warn"},
    {"refused", "bad"},
    {"left out", "warn"},
    {"left over", "warn"},
    {"error", "bad"},
    {"warning", "warn"},
});

std::string_view ColorOf(std::string_view word) {
    for (const TWordColor& known : kWordColors)
        if (known.word == word) return known.color;
    return {};
}

bool HasWords(const TReportColumn& column) {
    return column.key == "outcome" || column.key == "state" || column.key == "severity";
}

bool HasNames(const TReportColumn& column) {
    return column.key == "name" || column.key == "scaleName";
}

std::string WithClass(const std::string& tag, std::string_view name) {
    if (name.empty()) return "<" + tag + ">";
    return "<" + tag + " class=\"" + std::string(name) + "\">";
}

std::string TitleCells(const TReportTable& table, const std::vector<std::size_t>& shown) {
    std::string html;
    for (const std::size_t column : shown) {
        const bool isNumber = IsNumberCell(table.rows.front().at(column));
        html += isNumber ? "<th scope=\"col\" class=\"number\">" : "<th scope=\"col\">";
        html += Escaped(table.columns[column].title) + "</th>";
    }
    return html;
}

std::string RowCells(const TReportTable& table, const std::vector<TCell>& row,
                     const std::vector<std::size_t>& shown) {
    std::string html;
    for (const std::size_t column : shown) {
        const TCell& cell = row.at(column);
        const std::string text = CellText(cell);
        std::string_view name = IsNumberCell(cell) ? "number" : "";
        if (HasNames(table.columns[column])) name = "name";
        if (HasWords(table.columns[column])) name = ColorOf(text);
        html += WithClass("td", name) + Escaped(text) + "</td>";
    }
    return html;
}

std::string TableHtml(const TReportTable& table) {
    const std::vector<std::size_t> shown = ShownColumns(table);
    std::string html = "<div class=\"wide\"><table>\n<thead><tr>" + TitleCells(table, shown) +
                       "</tr></thead>\n<tbody>\n";
    for (const std::vector<TCell>& row : table.rows)
        html += "<tr>" + RowCells(table, row, shown) + "</tr>\n";
    return html + "</tbody>\n</table></div>\n";
}

// The longest bar is as long as the picture is wide.
std::string BarHtml(const TPageBar& bar, double longest) {
    const double share = longest > 0 ? 100.0 * bar.seconds / longest : 0.0;
    const std::string_view color = ColorOf(bar.state);
    return "<tr><th scope=\"row\">" + Escaped(bar.name) + "</th><td class=\"picture\">" +
           WithClass("svg viewBox=\"0 0 100 10\" preserveAspectRatio=\"none\" aria-hidden=\"true\"",
                     color == "good" ? "" : color) +
           "<rect width=\"" + FormatFixed(share, 1, 1, '.') +
           "\" height=\"10\"/></svg></td><td class=\"number\">" +
           Escaped(SecondsText(bar.seconds)) + "</td><td>" + Escaped(bar.text) + "</td></tr>\n";
}

std::string BarsHtml(const std::vector<TPageBar>& bars) {
    double longest = 0.0;
    for (const TPageBar& bar : bars)
        longest = std::max(longest, bar.seconds);
    std::string html = "<div class=\"wide\"><table class=\"bars\">\n<tbody>\n";
    for (const TPageBar& bar : bars)
        html += BarHtml(bar, longest);
    return html + "</tbody>\n</table></div>\n";
}

std::string SectionHtml(const TPageSection& section) {
    std::string html = "<section>\n";
    if (!section.title.empty()) html += "<h2>" + Escaped(section.title) + "</h2>\n";
    if (!section.note.empty()) html += "<p>" + Escaped(section.note) + "</p>\n";
    if (!section.table.rows.empty()) html += TableHtml(section.table);
    if (!section.bars.empty()) html += BarsHtml(section.bars);
    return html + "</section>\n";
}

std::string VerdictHtml(const TPage& page) {
    const TVerdict& verdict = VerdictOf(page.exitCode);
    std::string html = "<div class=\"verdict " + std::string(verdict.color) +
                       "\">\n<p class=\"word\">" + std::string(verdict.text) + "</p>\n";
    for (const std::string& message : page.messages)
        html += "<p>" + Escaped(message) + "</p>\n";
    return html + "</div>\n";
}

std::string FactsHtml(const std::vector<TPageFact>& facts) {
    std::string html;
    for (const TPageFact& fact : facts)
        if (!fact.value.empty())
            html += "<dt>" + Escaped(fact.name) + "</dt><dd>" + Escaped(fact.value) + "</dd>\n";
    return html.empty() ? html : "<dl>\n" + html + "</dl>\n";
}

std::string HeadHtml(const std::string& title) {
    return "<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta name=\"color-scheme\" content=\"light dark\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" "
           "content=\"default-src 'none'; style-src 'unsafe-inline'\">\n"
           "<title>" +
           Escaped(title) + "</title>\n<style>" + std::string(kPageStyle) + "</style>\n</head>\n";
}

}  // namespace

std::string PageText(const TPage& page) {
    std::string html = std::string(kPageStart) + "\n<html lang=\"en\">\n" + HeadHtml(page.title) +
                       "<body>\n<h1>" + Escaped(page.title) + "</h1>\n" + VerdictHtml(page) +
                       FactsHtml(page.facts);
    for (const TPageSection& section : page.sections)
        html += SectionHtml(section);
    return html + "</body>\n</html>\n";
}

std::string SecondsText(double seconds) {
    if (seconds < 59.95) return FormatFixed(seconds, 1, 1, '.') + " s";
    const auto whole = std::llround(seconds);
    return std::to_string(whole / 60) + " min " + std::to_string(whole % 60) + " s";
}

}  // namespace tolvane
