#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "articles/ArticleTable.h"

namespace tolvane {

// The marked rows, in the order in which they were marked. Marks belong to rows, not to places, so
// they stand through sorting. Marking and unmarking cost the same for any number of rows.
class TRowMarks {
public:
    // Forgets all marks; rows are 0 to count - 1 from now on.
    void Reset(std::size_t rowCount);
    void Clear();
    // Marking a marked row again does not change its place in the order.
    void Mark(TRowId row);
    void Unmark(TRowId row);
    bool IsMarked(TRowId row) const;
    std::size_t Count() const { return count_; }
    std::vector<TRowId> InOrder() const;

private:
    std::vector<std::uint32_t> sequence_;  // when the row was marked; 0: it is not
    std::uint32_t last_ = 0;
    std::size_t count_ = 0;
};

}  // namespace tolvane
