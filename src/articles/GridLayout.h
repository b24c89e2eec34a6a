#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "articles/GridColumns.h"
#include "config/IniDocument.h"
#include "config/WindowPlace.h"

namespace tolvane {

struct TColumnLayout {
    TField field = TField::PLU_NUMB;
    int width = 0;  // pixels
};

// What the list window keeps in section PLUGRID of the module's configuration file.
struct TGridLayout {
    // Every column of kGridColumns once, in the order of the grid.
    std::array<TColumnLayout, kGridColumns.size()> columns{};
    // '1' for a hidden column, in the order of the grid, as the column chooser left it.
    std::string hiddenRows;
    std::optional<TWindowPlace> place;  // nothing before the window is closed for the first time
};

// Columns that the file does not name come last, in the order of kGridColumns; a name that occurs
// twice counts once. Widths are converted into pixels of the resolution.
TGridLayout LoadGridLayout(const TIniDocument& document, int dotsPerInch);
void SaveGridLayout(const TGridLayout& layout, int dotsPerInch, TIniDocument& document);

// Whether the text hides the column at this position; nothing when the text is too short to say.
std::optional<bool> IsHidden(std::string_view hiddenRows, std::size_t column);

// What the host's lists look like.
struct TGridStyle {
    bool horizontalLines = true;
    bool verticalLines = true;
    bool indicator = true;
};
// From section PLU_LIST_STYLE of the host's own settings.
TGridStyle LoadGridStyle(const TIniDocument& hostSettings);

}  // namespace tolvane
