#pragma once

#include <windows.h>

#include <string>

#include "articles/GridLayout.h"
#include "window/Dpi.h"
#include "window/Handles.h"

namespace tolvane {

// How the parts of a grid row are drawn. Rectangles and widths are in pixels. Interface thread.

// The indicator's width, 0 when the style has none.
int IndicatorWidth(TGridStyle style, TDpi dpi);
// The current row's background when other rows are marked: a light shade of the highlight colour.
COLORREF CurrentRowColour();
// Draws the lines at a cell's right and lower edges, as far as the style has them.
void DrawCellLines(HDC dc, const RECT& cell, TGridStyle style);
// Draws a cell's text inside the cell's margins; a text that is too long ends in an ellipsis.
void DrawCellText(HDC dc, RECT cell, const std::wstring& text, bool right, TDpi dpi);
// Draws the indicator: an arrow in the current row, a dot in any other marked row.
void DrawIndicator(HDC dc, const RECT& area, bool marked, bool current, TDpi dpi);

// The images of the sort marks, for a header that cannot draw sort marks itself.
inline constexpr int kSortUpImage = 0;
inline constexpr int kSortDownImage = 1;
TOwnedImageList MakeSortImages(TDpi dpi);

}  // namespace tolvane
