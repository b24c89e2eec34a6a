#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <vector>

#include "config/ScaleTable.h"
#include "upload/ScaleRun.h"

namespace tolvane {

// The check marks of ScaleList while a run works, by item: the window sets them, the run reads each
// one when the item's turn comes. Any thread.
class TRunMarks {
public:
    explicit TRunMarks(const std::vector<TRunItem>& items) noexcept {
        for (std::size_t i = 0; i < items.size(); ++i)
            Set(i, items[i].checked);
    }

    // An index without an item does nothing.
    void Set(std::size_t item, bool checked) noexcept {
        if (item < marks_.size()) marks_[item] = checked;
    }
    bool IsSet(std::size_t item) const noexcept { return item < marks_.size() && marks_[item]; }

private:
    std::array<std::atomic<bool>, kScaleSlots> marks_{};
};

}  // namespace tolvane
