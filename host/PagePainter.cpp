#include "host/PagePainter.h"

#include <utility>
#include <vector>

#include "text/Cp1251.h"
#include "window/Handles.h"
#include "window/WideText.h"

namespace tolvane::host {
namespace {

// Tenths of a millimetre.
constexpr int kTitleHeight = 50;
constexpr int kTextHeight = 30;
constexpr int kPadding = 8;

// The grid's pixels, at 96 to the inch, become somewhat narrower on paper, as its font does.
int OnPaper(int pixels) {
    return MulDiv(pixels, 254 * 8, 96 * 10);
}

std::vector<int> Widths(const TGridReader& grid) {
    std::vector<int> widths;
    for (const TGridColumn& column : grid.Columns())
        widths.push_back(OnPaper(column.width));
    return widths;
}

TOwnedFont PaperFont(int height, bool bold) {
    return TOwnedFont(CreateFontW(-height, 0, 0, 0, bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE,
                                  DEFAULT_CHARSET, OUT_TT_PRECIS, CLIP_DEFAULT_PRECIS,
                                  DEFAULT_QUALITY, VARIABLE_PITCH | FF_SWISS, L"Tahoma"));
}

void DrawCell(HDC dc, RECT cell, const std::wstring& text, UINT format) {
    cell.left += kPadding;
    cell.right -= kPadding;
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &cell,
              format | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
}

void Line(HDC dc, int x1, int y1, int x2, int y2) {
    MoveToEx(dc, x1, y1, nullptr);
    LineTo(dc, x2, y2);
}

// Lets a page be drawn in tenths of a millimetre into a rectangle of the device.
class TPageMapping {
public:
    TPageMapping(HDC dc, const RECT& target, const TPaper& paper) : dc_(dc), saved_(SaveDC(dc)) {
        SetMapMode(dc, MM_ANISOTROPIC);
        SetWindowExtEx(dc, paper.width, paper.height, nullptr);
        SetViewportOrgEx(dc, target.left, target.top, nullptr);
        SetViewportExtEx(dc, target.right - target.left, target.bottom - target.top, nullptr);
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, RGB(0, 0, 0));
    }
    TPageMapping(const TPageMapping&) = delete;
    TPageMapping& operator=(const TPageMapping&) = delete;
    ~TPageMapping() { RestoreDC(dc_, saved_); }

private:
    HDC dc_;
    int saved_;
};

}  // namespace

TPagePainter::TPagePainter(const TGridReader& grid, TPageTexts texts)
    : grid_(grid), texts_(std::move(texts)), layout_({}, Widths(grid), grid.RowCount()) {}

void TPagePainter::Draw(HDC dc, const RECT& target, std::size_t page) const {
    const TPageMapping mapping(dc, target, layout_.Paper());
    DrawHead(dc, page);
    DrawTable(dc, page);
}

void TPagePainter::DrawHead(HDC dc, std::size_t page) const {
    const TPaper& paper = layout_.Paper();
    const RECT head{paper.margin, paper.margin, paper.width - paper.margin, paper.margin + 90};
    const TOwnedFont titleFont = PaperFont(kTitleHeight, true);
    const TOwnedFont textFont = PaperFont(kTextHeight, false);
    std::string number("Стр. "_cp1251);
    number += std::to_string(page + 1);
    number += " от "_cp1251;
    number += std::to_string(layout_.PageCount());
    {
        const TSelected font(dc, titleFont.Get());
        DrawCell(dc, head, texts_.title, DT_LEFT);
    }
    const TSelected font(dc, textFont.Get());
    DrawCell(dc, head, texts_.dateTime, DT_CENTER);
    DrawCell(dc, head, Wide(number), DT_RIGHT);
}

void TPagePainter::DrawTable(HDC dc, std::size_t page) const {
    const TPaper& paper = layout_.Paper();
    const TOwnedFont titleFont = PaperFont(kTextHeight, true);
    const TOwnedFont textFont = PaperFont(kTextHeight, false);
    const TOwnedPen pen(CreatePen(PS_SOLID, 1, RGB(160, 160, 160)));
    const TSelected selectedPen(dc, pen.Get());
    const int top = paper.margin + paper.headHeight;
    const std::size_t rows = layout_.EndRow(page) - layout_.FirstRow(page);
    const int bottom = top + paper.rowHeight * static_cast<int>(rows + 1);
    int right = paper.margin;
    for (const TPlacedColumn& placed : layout_.Columns(page)) {
        const TGridColumn& column = grid_.Columns()[placed.column];
        const UINT align = column.alignsRight ? DT_RIGHT : DT_LEFT;
        RECT cell{placed.x, top, placed.x + placed.width, top + paper.rowHeight};
        {
            const TSelected font(dc, titleFont.Get());
            DrawCell(dc, cell, column.title, align);
        }
        const TSelected font(dc, textFont.Get());
        for (std::size_t row = 0; row < rows; ++row) {
            OffsetRect(&cell, 0, paper.rowHeight);
            DrawCell(dc, cell, grid_.Text(layout_.FirstRow(page) + row, placed.column), align);
        }
        Line(dc, placed.x, top, placed.x, bottom);
        right = placed.x + placed.width;
    }
    Line(dc, right, top, right, bottom);
    for (int y = top; y <= bottom; y += paper.rowHeight)
        Line(dc, paper.margin, y, right, y);
}

}  // namespace tolvane::host
