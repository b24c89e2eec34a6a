#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "articles/ArticleTable.h"
#include "system/RegionalSettings.h"
#include "upload/ArticleLine.h"

namespace tolvane {

// Takes one line of the run log, code page 1251.
using TLogLine = std::function<void(std::string_view)>;

// Why an article that is meant for a scale has no line.
enum class TLineFault : std::uint8_t {
    Barcode,    // not of exactly five characters
    ZeroPrice,  // the chosen price is zero
    Name1,      // the chosen name is empty
    Name2,
};

// The result for one article and one scale.
struct TArticleLine {
    bool isForScale = false;
    std::optional<TLineFault> fault{};  // of an article that is meant for the scale
    std::string line{};                 // empty when the article is left out
};

// Makes article lines for one scale at a time. The table must outlive the builder and must not
// change while it is used. Calls `log` on the caller's thread. One thread at a time.
class TArticleLineBuilder {
public:
    TArticleLineBuilder(const TArticleTable& articles, TLineChoices choices,
                        const TRegionalSettings& regional, TLogLine log);

    // Replaces `lines` by the lines of the rows that are valid and meant for the scale, in the
    // order of `rows`. Logs why an article is left out, then the three summary lines. Throws
    // std::runtime_error when a field that must be an integer holds something else.
    void Build(const std::vector<TRowId>& rows, std::int32_t scaleNumber,
               std::vector<std::string>& lines) const;
    // How many lines Build would make for the scales together. Does not count an article for which
    // it would throw.
    std::size_t CountLines(const std::vector<TRowId>& rows,
                           const std::vector<std::int32_t>& scaleNumbers) const;
    // One article's line; empty when the article is left out, and the reason is logged. Throws as
    // Build does.
    std::string BuildLine(TRowId row, std::int32_t scaleNumber) const;
    // The same with the reason instead of a log.
    TArticleLine LineFor(TRowId row, std::int32_t scaleNumber) const;
    // The chosen price of an article, in the base currency.
    double Price(TRowId row) const;

private:
    // Why an article has no line; nothing when it has one.
    using TFault = std::optional<TLineFault>;

    // Each appends a field's text without its separator.
    TFault AppendField(TRowId row, const TLineField& field, std::string& line) const;
    TFault AppendBarcode(TRowId row, std::string& line) const;
    TFault AppendPrice(TRowId row, std::string& line) const;
    TFault AppendName(TRowId row, int choice, TLineFault whenEmpty, std::string& line) const;
    void AppendBestBefore(TRowId row, std::string& line) const;
    void AppendArticleField(TRowId row, TField field, std::string& line) const;

    // Throws std::runtime_error for a text that is not an integer; an empty one is 0.
    std::int32_t IntegerOf(TRowId row, TField field) const;
    bool HasLine(TRowId row, std::int32_t scaleNumber) const;
    void LogSkipped(TRowId row, TLineFault fault) const;
    std::string_view NameOf(TRowId row) const;

    const TArticleTable& articles_;
    TLineChoices choices_;
    TRegionalSettings regional_;
    TLogLine log_;
};

// The rows that a run takes: all in the table's current order, or the marked ones in the order of
// marking, or, with nothing marked, the current one.
std::vector<TRowId> RowsOfRun(const TArticleTable& articles, bool markedOnly,
                              const std::vector<TRowId>& marked, std::optional<TRowId> current);

}  // namespace tolvane
