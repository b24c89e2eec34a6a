#include "articles/forms/GridDrawing.h"

#include <array>

namespace tolvane {
namespace {

constexpr int kIndicatorWidth = 12;
constexpr int kCellMargin = 3;
constexpr int kSortImageSize = 9;

// A black triangle on white.
void DrawSortImage(HDC dc, int size, bool up) {
    const RECT all{0, 0, size, size};
    FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    const TSelected brush(dc, GetStockObject(BLACK_BRUSH));
    const int flat = up ? size - 3 : 2;
    const int tip = up ? 2 : size - 3;
    const std::array<POINT, 3> corners = {POINT{1, flat}, POINT{size - 2, flat},
                                          POINT{size / 2, tip}};
    Polygon(dc, corners.data(), static_cast<int>(corners.size()));
}

}  // namespace

int IndicatorWidth(TGridStyle style, TDpi dpi) {
    return style.indicator ? dpi.Scale(kIndicatorWidth) : 0;
}

COLORREF CurrentRowColour() {
    const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const auto mix = [](int a, int b) { return static_cast<BYTE>((a + 4 * b) / 5); };
    return RGB(mix(GetRValue(highlight), GetRValue(window)),
               mix(GetGValue(highlight), GetGValue(window)),
               mix(GetBValue(highlight), GetBValue(window)));
}

void DrawCellLines(HDC dc, const RECT& cell, TGridStyle style) {
    const TSelected pen(dc, GetStockObject(DC_PEN));
    SetDCPenColor(dc, GetSysColor(COLOR_BTNFACE));
    if (style.verticalLines) {
        MoveToEx(dc, cell.right - 1, cell.top, nullptr);
        LineTo(dc, cell.right - 1, cell.bottom);
    }
    if (style.horizontalLines) {
        MoveToEx(dc, cell.left, cell.bottom - 1, nullptr);
        LineTo(dc, cell.right, cell.bottom - 1);
    }
}

void DrawCellText(HDC dc, RECT cell, const std::wstring& text, bool right, TDpi dpi) {
    InflateRect(&cell, -dpi.Scale(kCellMargin), 0);
    const UINT side = right ? DT_RIGHT : DT_LEFT;
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &cell,
              side | DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
}

void DrawIndicator(HDC dc, const RECT& area, bool marked, bool current, TDpi dpi) {
    FillRect(dc, &area, GetSysColorBrush(COLOR_BTNFACE));
    const TSelected brush(dc, GetSysColorBrush(COLOR_BTNTEXT));
    const TSelected pen(dc, GetStockObject(NULL_PEN));
    const int x = (area.left + area.right) / 2;
    const int y = (area.top + area.bottom) / 2;
    const int half = dpi.Scale(4);
    if (current) {
        const std::array<POINT, 3> arrow = {POINT{x - half / 2, y - half},
                                            POINT{x - half / 2, y + half}, POINT{x + half / 2, y}};
        Polygon(dc, arrow.data(), static_cast<int>(arrow.size()));
    } else if (marked) {
        Ellipse(dc, x - half / 2, y - half / 2, x + half / 2 + 1, y + half / 2 + 1);
    }
}

TOwnedImageList MakeSortImages(TDpi dpi) {
    const int size = dpi.Scale(kSortImageSize);
    TOwnedImageList images(ImageList_Create(size, size, ILC_COLOR24 | ILC_MASK, 2, 0));
    for (const int image : {kSortUpImage, kSortDownImage}) {
        const TWindowDc screen(nullptr);
        const TOwnedDc memory(CreateCompatibleDC(screen.Get()));
        const HDC dc = memory.Get();
        const TOwnedBitmap bitmap(CreateCompatibleBitmap(screen.Get(), size, size));
        {
            const TSelected selected(dc, bitmap.Get());
            DrawSortImage(dc, size, image == kSortUpImage);
        }
        ImageList_AddMasked(images.Get(), bitmap.Get(), RGB(255, 255, 255));
    }
    return images;
}

}  // namespace tolvane
