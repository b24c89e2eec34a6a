#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <vector>

#include "config/ScaleTable.h"
#include "config/TypesUnit.h"

namespace tolvane {

// The check marks of ScaleList during a run, by item. The window sets them; the run reads a mark
// when it reaches the item. Any thread.
class TRunMarks {
public:
    explicit TRunMarks(const std::vector<TScaleObj>& items) noexcept {
        for (std::size_t i = 0; i < items.size(); ++i)
            Set(i, items[i].Rec.Checked);
    }

    // Does nothing for an index without an item.
    void Set(std::size_t item, bool checked) noexcept {
        if (item < marks_.size()) marks_[item] = checked;
    }
    bool IsSet(std::size_t item) const noexcept { return item < marks_.size() && marks_[item]; }

private:
    std::array<std::atomic<bool>, kScaleSlots> marks_{};
};

}  // namespace tolvane
