#include "host/PageLayout.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace tolvane::host {
namespace {

int Part(int value, std::int64_t numerator, std::int64_t denominator) {
    return static_cast<int>(value * numerator / denominator);
}

}  // namespace

TPaper LandscapePaper() {
    return {};
}

TPaper PortraitPaper() {
    TPaper paper;
    std::swap(paper.width, paper.height);
    return paper;
}

TPageLayout::TPageLayout(TPaper paper, const std::vector<int>& columnWidths, std::size_t rowCount)
    : paper_(paper), rowCount_(rowCount), strips_(1) {
    ChooseScale(columnWidths);
    FillStrips(columnWidths);
    for (std::vector<TPlacedColumn>& strip : strips_)
        Widen(strip);
}

void TPageLayout::ChooseScale(const std::vector<int>& columnWidths) {
    std::int64_t total = 0;
    for (const int width : columnWidths)
        total += std::max(width, 0);
    if (total <= Space()) return;
    const auto fitting = static_cast<int>(std::int64_t{Space()} * 100 / total);
    scale_ = fitting >= kSmallestScale ? fitting : kStripScale;
}

void TPageLayout::FillStrips(const std::vector<int>& columnWidths) {
    int used = 0;
    for (std::size_t column = 0; column < columnWidths.size(); ++column) {
        const int width = std::min(Part(columnWidths[column], scale_, 100), Space());
        if (width <= 0) continue;
        if (used + width > Space()) {
            strips_.emplace_back();
            used = 0;
        }
        strips_.back().push_back({column, paper_.margin + used, width});
        used += width;
    }
}

void TPageLayout::Widen(std::vector<TPlacedColumn>& strip) const {
    if (strip.empty()) return;
    const int used = strip.back().x + strip.back().width - paper_.margin;
    const int wanted = std::min(Space(), Part(used, kMostWidening, 100));
    const auto moved = [&](int x) { return paper_.margin + Part(x - paper_.margin, wanted, used); };
    for (TPlacedColumn& column : strip) {
        const int right = moved(column.x + column.width);
        column.x = moved(column.x);
        column.width = right - column.x;
    }
}

int TPageLayout::RowHeight() const {
    return std::max(Part(paper_.rowHeight, scale_, 100), 1);
}

std::size_t TPageLayout::RowsPerPage() const {
    const int space = paper_.height - 2 * paper_.margin - paper_.headHeight;
    return static_cast<std::size_t>(std::max(space / RowHeight() - 1, 1));
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

TSheetPlace PlaceOnSheet(const TPaper& paper, const TSheet& sheet) {
    constexpr double kTenthsPerInch = 254;
    const double trueWidth = paper.width * sheet.dotsPerInchX / kTenthsPerInch;
    const double trueHeight = paper.height * sheet.dotsPerInchY / kTenthsPerInch;
    // On a sheet that is smaller only by rounding, the page still has its true size.
    constexpr double kRounding = 1.01;
    const double fitting = std::min(sheet.width / trueWidth, sheet.height / trueHeight);
    const double scale = fitting * kRounding >= 1 ? 1 : fitting;
    TSheetPlace place;
    place.width = static_cast<int>(trueWidth * scale);
    place.height = static_cast<int>(trueHeight * scale);
    place.x = (sheet.width - place.width) / 2 - sheet.offsetX;
    place.y = (sheet.height - place.height) / 2 - sheet.offsetY;
    return place;
}

}  // namespace tolvane::host
