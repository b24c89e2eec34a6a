#include "host/PageLayout.h"

#include <algorithm>

namespace tolvane::host {

TPageLayout::TPageLayout(TPaper paper, const std::vector<int>& columnWidths, std::size_t rowCount)
    : paper_(paper), rowCount_(rowCount), strips_(1) {
    const int right = paper_.width - paper_.margin;
    int x = paper_.margin;
    for (std::size_t column = 0; column < columnWidths.size(); ++column) {
        const int width = std::min(columnWidths[column], right - paper_.margin);
        if (width <= 0) continue;
        if (x + width > right) {
            strips_.emplace_back();
            x = paper_.margin;
        }
        strips_.back().push_back({column, x, width});
        x += width;
    }
}

std::size_t TPageLayout::RowsPerPage() const {
    const int space = paper_.height - 2 * paper_.margin - paper_.headHeight;
    return static_cast<std::size_t>(std::max(space / paper_.rowHeight - 1, 1));
}

std::size_t TPageLayout::PagesPerStrip() const {
    return std::max<std::size_t>((rowCount_ + RowsPerPage() - 1) / RowsPerPage(), 1);
}

std::size_t TPageLayout::PageCount() const {
    return strips_.size() * PagesPerStrip();
}

const std::vector<TPlacedColumn>& TPageLayout::Columns(std::size_t page) const {
    return strips_[page / PagesPerStrip()];
}

std::size_t TPageLayout::FirstRow(std::size_t page) const {
    return page % PagesPerStrip() * RowsPerPage();
}

std::size_t TPageLayout::EndRow(std::size_t page) const {
    return std::min(FirstRow(page) + RowsPerPage(), rowCount_);
}

}  // namespace tolvane::host
