#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "articles/ArticleTable.h"

namespace tolvane {

// The marked rows, in the order in which they were marked. Marks belong to rows, not to indexes, so
// sorting does not change them. The cost of a mark does not depend on the number of rows.
class TRowMarks {
public:
    // Removes all marks; from now on the rows are 0 to rowCount - 1.
    void Reset(std::size_t rowCount);
    void Clear();
    // Marking a marked row again does not change its position in the order.
    void Mark(TRowId row);
    void Unmark(TRowId row);
    bool IsMarked(TRowId row) const;
    std::size_t Count() const { return count_; }
    std::vector<TRowId> InOrder() const;

private:
    std::vector<std::uint32_t> sequence_;  // by row: the number of its mark; 0 without a mark
    std::uint32_t last_ = 0;
    std::size_t count_ = 0;
};

}  // namespace tolvane
