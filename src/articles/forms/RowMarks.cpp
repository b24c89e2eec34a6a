#include "articles/forms/RowMarks.h"

#include <algorithm>

namespace tolvane {

void TRowMarks::Reset(std::size_t rowCount) {
    sequence_.assign(rowCount, 0);
    last_ = 0;
    count_ = 0;
}

void TRowMarks::Clear() {
    Reset(sequence_.size());
}

void TRowMarks::Mark(TRowId row) {
    if (row >= sequence_.size() || sequence_[row] != 0) return;
    sequence_[row] = ++last_;
    ++count_;
}

void TRowMarks::Unmark(TRowId row) {
    if (!IsMarked(row)) return;
    sequence_[row] = 0;
    --count_;
}

bool TRowMarks::IsMarked(TRowId row) const {
    return row < sequence_.size() && sequence_[row] != 0;
}

std::vector<TRowId> TRowMarks::InOrder() const {
    std::vector<TRowId> rows;
    rows.reserve(count_);
    for (TRowId row = 0; row < sequence_.size(); ++row) {
        if (sequence_[row] != 0) rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end(),
              [this](TRowId a, TRowId b) { return sequence_[a] < sequence_[b]; });
    return rows;
}

}  // namespace tolvane
