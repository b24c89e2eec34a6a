#include "host/PagePainter.h"

#include <utility>
#include <vector>

#include "text/Cp1251.h"
#include "window/Dpi.h"
#include "window/Handles.h"
#include "window/WideText.h"

namespace tolvane::host {
namespace {

// Tenths of a millimetre. The table's texts are as high as the grid's on a screen of 96 dots per
// inch.
constexpr int kTitleHeight = 45;
constexpr int kTextHeight = 29;
constexpr int kPadding = 8;
constexpr int kLineWidth = 2;
constexpr int kTenthsPerInch = 254;
constexpr COLORREF kLineColour = RGB(150, 150, 150);
constexpr COLORREF kTitleColour = RGB(232, 232, 232);

std::vector<int> TrueWidths(const TGridReader& grid) {
    const int dotsPerInch = TDpi::Of(grid.Handle()).DotsPerInch();
    std::vector<int> widths;
    for (const TGridColumn& column : grid.Columns())
        widths.push_back(MulDiv(column.width, kTenthsPerInch, dotsPerInch));
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
    : grid_(grid),
      texts_(std::move(texts)),
      layout_(LandscapePaper(), TrueWidths(grid), grid.RowCount()) {}

void TPagePainter::SetPaper(const TPaper& paper) {
    layout_ = TPageLayout(paper, TrueWidths(grid_), grid_.RowCount());
}

std::wstring TPagePainter::PageNumber(std::size_t page) const {
    return Wide("Стр. "_cp1251) + std::to_wstring(page + 1) + Wide(" от "_cp1251) +
           std::to_wstring(layout_.PageCount());
}

void TPagePainter::Draw(HDC dc, const RECT& target, std::size_t page) const {
    const TPageMapping mapping(dc, target, layout_.Paper());
    DrawHead(dc, page);
    DrawTable(dc, page);
}

// The title on a line of its own, the date and the page's number under it.
void TPagePainter::DrawHead(HDC dc, std::size_t page) const {
    const TPaper& paper = layout_.Paper();
    const int right = paper.width - paper.margin;
    const RECT titleLine{paper.margin, paper.margin, right, paper.margin + 60};
    const RECT secondLine{paper.margin, titleLine.bottom, right, titleLine.bottom + 45};
    const TOwnedFont titleFont = PaperFont(kTitleHeight, true);
    const TOwnedFont textFont = PaperFont(kTextHeight, false);
    {
        const TSelected font(dc, titleFont.Get());
        DrawCell(dc, titleLine, texts_.title, DT_LEFT);
    }
    const TSelected font(dc, textFont.Get());
    DrawCell(dc, secondLine, texts_.dateTime, DT_LEFT);
    DrawCell(dc, secondLine, PageNumber(page), DT_RIGHT);
}

void TPagePainter::DrawColumn(HDC dc, const TPlacedColumn& placed, std::size_t page) const {
    const TGridColumn& column = grid_.Columns()[placed.column];
    const int height = layout_.RowHeight();
    const int textHeight = kTextHeight * layout_.Scale() / 100;
    const TOwnedFont titleFont = PaperFont(textHeight, true);
    const TOwnedFont textFont = PaperFont(textHeight, false);
    const TOwnedBrush titleBrush(CreateSolidBrush(kTitleColour));
    RECT cell{placed.x, TableTop(), placed.x + placed.width, TableTop() + height};
    FillRect(dc, &cell, titleBrush.Get());
    {
        const TSelected font(dc, titleFont.Get());
        DrawCell(dc, cell, column.title, column.align);
    }
    const TSelected font(dc, textFont.Get());
    for (std::size_t row = layout_.FirstRow(page); row < layout_.EndRow(page); ++row) {
        OffsetRect(&cell, 0, height);
        DrawCell(dc, cell, grid_.Text(row, placed.column), column.align);
    }
}

void TPagePainter::DrawTable(HDC dc, std::size_t page) const {
    const std::vector<TPlacedColumn>& columns = layout_.Columns(page);
    if (columns.empty()) return;
    const TOwnedPen pen(CreatePen(PS_SOLID, kLineWidth, kLineColour));
    for (const TPlacedColumn& placed : columns)
        DrawColumn(dc, placed, page);
    const TSelected selectedPen(dc, pen.Get());
    const auto rows = static_cast<int>(layout_.EndRow(page) - layout_.FirstRow(page));
    const int bottom = TableTop() + layout_.RowHeight() * (rows + 1);
    const int right = columns.back().x + columns.back().width;
    for (const TPlacedColumn& placed : columns)
        Line(dc, placed.x, TableTop(), placed.x, bottom);
    Line(dc, right, TableTop(), right, bottom);
    for (int y = TableTop(); y <= bottom; y += layout_.RowHeight())
        Line(dc, columns.front().x, y, right, y);
}

}  // namespace tolvane::host
