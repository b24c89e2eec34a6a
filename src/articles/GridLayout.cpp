#include "articles/GridLayout.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace tolvane {
namespace {

constexpr std::string_view kSection = "PLUGRID";
constexpr std::string_view kWindow = "ElicomPluScaleListForm";
constexpr std::string_view kHiddenRows = "HiddenRows";
constexpr std::string_view kResolution = "aDBGrid_PixelsPerInch";
constexpr std::string_view kColumn = "aDBGrid_Column";  // + position from 1; "field name,width"
constexpr std::string_view kStyleSection = "PLU_LIST_STYLE";
constexpr int kUsualResolution = 96;
constexpr int kWidest = 10000;

std::string ColumnKey(std::size_t index) {
    return std::string(kColumn) + std::to_string(index + 1);
}

int Scaled(int width, int from, int to) {
    return static_cast<int>((std::int64_t{width} * to + from / 2) / from);
}

// A width that is not a number, or is out of range, counts as missing.
std::optional<int> WidthIn(std::string_view text) {
    int width = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), width);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    if (width < 0 || width > kWidest) return std::nullopt;
    return width;
}

struct TStoredColumn {
    std::string_view field;
    std::optional<int> width;
};

TStoredColumn Parse(std::string_view text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos) return {text, std::nullopt};
    return {text.substr(0, comma), WidthIn(text.substr(comma + 1))};
}

}  // namespace

TGridLayout LoadGridLayout(const TIniDocument& document, int dotsPerInch) {
    TGridLayout layout;
    auto& columns = layout.columns;
    std::transform(
        kGridColumns.begin(), kGridColumns.end(), columns.begin(), [&](const TGridColumn& column) {
            return TColumnLayout{column.field, Scaled(column.width, kUsualResolution, dotsPerInch)};
        });
    int resolution = document.ReadInteger(kSection, kResolution, kUsualResolution);
    if (resolution <= 0) resolution = kUsualResolution;
    auto next = columns.begin();  // the columns before it are in order already
    for (std::size_t index = 0; index < columns.size(); ++index) {
        const std::string text = document.ReadText(kSection, ColumnKey(index), "");
        const TStoredColumn stored = Parse(text);
        const std::optional<TField> field = FieldByName(stored.field);
        const auto found = std::find_if(next, columns.end(), [&](const TColumnLayout& column) {
            return column.field == field;
        });
        if (found == columns.end()) continue;
        if (stored.width)
            found->width = std::min(Scaled(*stored.width, resolution, dotsPerInch), kWidest);
        std::rotate(next, found, found + 1);
        ++next;
    }
    layout.hiddenRows = document.ReadText(kSection, kHiddenRows, "");
    layout.place = LoadWindowPlace(document, kSection, kWindow);
    return layout;
}

void SaveGridLayout(const TGridLayout& layout, int dotsPerInch, TIniDocument& document) {
    if (layout.place) SaveWindowPlace(*layout.place, kSection, kWindow, document);
    document.WriteText(kSection, kHiddenRows, layout.hiddenRows);
    document.WriteInteger(kSection, kResolution, dotsPerInch);
    for (std::size_t index = 0; index < layout.columns.size(); ++index) {
        const TColumnLayout& column = layout.columns[index];
        document.WriteText(
            kSection, ColumnKey(index),
            std::string(FieldInfo(column.field).name) + "," + std::to_string(column.width));
    }
}

std::optional<bool> IsHidden(std::string_view hiddenRows, std::size_t column) {
    if (column >= hiddenRows.size()) return std::nullopt;
    return hiddenRows[column] == '1';
}

TGridStyle LoadGridStyle(const TIniDocument& hostSettings) {
    TGridStyle style;
    style.horizontalLines = hostSettings.ReadBoolean(kStyleSection, "GRID_H_Line", true);
    style.verticalLines = hostSettings.ReadBoolean(kStyleSection, "GRID_V_Line", true);
    style.indicator = hostSettings.ReadBoolean(kStyleSection, "GRID_Nav", true);
    return style;
}

}  // namespace tolvane
