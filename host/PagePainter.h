#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

#include "host/GridReader.h"
#include "host/PageLayout.h"

namespace tolvane::host {

// The texts above the table on every page.
struct TPageTexts {
    std::wstring title;
    std::wstring dateTime;
};

// Draws pages of a grid, the same way on a screen and on a printer. Reads only the rows of the page
// that it draws. The grid outlives it.
class TPagePainter {
public:
    TPagePainter(const TGridReader& grid, TPageTexts texts);

    const TPageTexts& Texts() const { return texts_; }
    const TPageLayout& Layout() const { return layout_; }
    void SetPaper(const TPaper& paper);
    // Fills the rectangle (device units) with the page.
    void Draw(HDC dc, const RECT& target, std::size_t page) const;
    // "Стр. 1 от 5"
    std::wstring PageNumber(std::size_t page) const;

private:
    void DrawHead(HDC dc, std::size_t page) const;
    void DrawColumn(HDC dc, const TPlacedColumn& placed, std::size_t page) const;
    void DrawTable(HDC dc, std::size_t page) const;
    int TableTop() const { return layout_.Paper().margin + layout_.Paper().headHeight; }

    const TGridReader& grid_;
    TPageTexts texts_;
    TPageLayout layout_;
};

}  // namespace tolvane::host
