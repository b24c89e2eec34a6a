#include "config/IniIndex.h"

#include <algorithm>
#include <utility>

namespace tolvane {

namespace {

constexpr std::size_t kFewSlots = 64;

}  // namespace

void TIniIndex::Add(std::uint64_t hash, std::size_t number) {
    if (2 * (count_ + 1) > slots_.size()) Grow();
    Put({hash, number});
    ++count_;
}

void TIniIndex::Put(const TSlot& slot) {
    std::size_t at = Start(slot.hash);
    while (slots_[at].number != kNone)
        at = Next(at);
    slots_[at] = slot;
}

void TIniIndex::Grow() {
    const std::vector<TSlot> before =
        std::exchange(slots_, std::vector<TSlot>(std::max(kFewSlots, 2 * slots_.size())));
    for (const TSlot& slot : before) {
        if (slot.number != kNone) Put(slot);
    }
}

}  // namespace tolvane
