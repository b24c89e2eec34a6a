#pragma once

#include <windows.h>

#include <string>

#include "articles/GridLayout.h"
#include "window/Dpi.h"
#include "window/Handles.h"

namespace tolvane {

// What the grid draws, apart from what it shows. Rectangles and widths are in pixels. Interface
// thread.

// The indicator's width, 0 when the style has none.
int IndicatorWidth(TGridStyle style, TDpi dpi);
// The current row's background when other rows are marked: a light shade of the highlight colour.
COLORREF CurrentRowColour();
// The lines at the right and the lower edge of a cell.
void DrawCellLines(HDC dc, const RECT& cell, TGridStyle style);
// A cell's text, cut with an ellipsis, inside the cell's margins.
void DrawCellText(HDC dc, RECT cell, const std::wstring& text, bool right, TDpi dpi);
// An arrow in the current row, else a dot in a marked one.
void DrawIndicator(HDC dc, const RECT& area, bool marked, bool current, TDpi dpi);

// Images of the sort marks, for a header that has none of its own.
inline constexpr int kSortUpImage = 0;
inline constexpr int kSortDownImage = 1;
TOwnedImageList MakeSortImages(TDpi dpi);

}  // namespace tolvane
