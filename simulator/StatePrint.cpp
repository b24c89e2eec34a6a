#include <algorithm>
#include <array>
#include <vector>

#include "simulator/Fixed.h"
#include "simulator/ScaleState.h"

namespace tolvane::simulator {

namespace {

constexpr std::array<std::string_view, 10> kTitles = {
    "PLU", "Price", "Weight", "Kind", "Tare", "Label", "Days", "Barcode", "Name", "Name 2"};
constexpr std::size_t kNumberColumns = 7;  // the columns before the texts are aligned to the right
using TRow = std::array<std::string, kTitles.size()>;

std::size_t CharacterCount(std::string_view utf8) {
    return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
    }));
}

std::string Printable(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < ' ') c = '.';
    }
    return text;
}

std::string FixedOrDash(const std::optional<int>& value, int decimals) {
    return value ? Fixed(*value, decimals) : "-";
}

std::string Plain(const std::optional<int>& value) {
    return value ? std::to_string(*value) : "-";
}

TRow ArticleRow(const TArticle& article, TCodeTable table) {
    const std::string kind = !article.pieces ? "-" : *article.pieces ? "piece" : "weight";
    return {std::to_string(article.number),
            FixedOrDash(article.price, 2),
            FixedOrDash(article.weight, 3),
            kind,
            Plain(article.tare),
            Plain(article.label),
            Plain(article.BestBefore()),
            Printable(article.Text(kBarcodeParameter, table)),
            Printable(article.Text(0, table)),
            Printable(article.Text(1, table))};
}

std::string Join(const TRow& row, const std::array<std::size_t, kTitles.size()>& widths) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const std::string padding(widths[i] - CharacterCount(row[i]), ' ');
        if (i > 0) line += "  ";
        line += i < kNumberColumns ? padding + row[i] : row[i] + padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

std::string Heading(const TScaleState& state) {
    return std::string(PropertiesOf(state.scale.model).name) + ", version " +
           Printable(state.scale.version) + ", " + std::to_string(state.scale.capacity) +
           " articles at most, label mode " + std::to_string(state.scale.labelMode) + ", " +
           (state.programming ? "programming" : "weighing") + " mode\n";
}

}  // namespace

std::string PrintState(const TScaleState& state) {
    std::vector<TRow> rows(1);
    std::copy(kTitles.begin(), kTitles.end(), rows.front().begin());
    for (const auto& entry : state.articles) {
        if (!entry.second.IsCleared())
            rows.push_back(ArticleRow(entry.second, state.scale.codeTable));
    }
    std::array<std::size_t, kTitles.size()> widths{};
    for (const TRow& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], CharacterCount(row[i]));
    }
    std::string text = Heading(state);
    for (const TRow& row : rows)
        text += Join(row, widths);
    const std::size_t held = rows.size() - 1;
    return text + std::to_string(held) + " articles, " +
           std::to_string(state.articles.size() - held) + " cleared, " +
           std::to_string(state.requests.total) + " requests, " +
           std::to_string(state.requests.refused) + " refused\n";
}

}  // namespace tolvane::simulator
