#include "config/ScaleTableMerge.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "config/IniDocument.h"

namespace tolvane {
namespace {

constexpr int kNoSlot = 0;

using TSlotFlags = std::array<bool, kScaleSlots + 1>;  // by slot, from 1 on

// Two slots out of use count as equal, with any values left in them.
bool IsSameSlot(const TScaleRec& a, const TScaleRec& b) {
    return a == b || (!IsInUse(a) && !IsInUse(b));
}

bool IsSameButMark(const TScaleRec& a, TScaleRec b) {
    b.Checked = a.Checked;
    return IsInUse(a) && a == b;
}

// The slot that holds a scale, the check mark aside: `first` if it is there, else the first slot
// that is not left out.
int SlotOf(const TScaleRec& rec, const TScaleTable& table, int first,
           const TSlotFlags& leftOut = {}) {
    const auto holds = [&](int slot) {
        return !leftOut[static_cast<std::size_t>(slot)] && IsSameButMark(table[slot], rec);
    };
    if (holds(first)) return first;
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        if (holds(slot)) return slot;
    }
    return kNoSlot;
}

// For each current scale, the slot that it had in the known table; and which known scales are still
// there. A known scale that is not found unchanged has been changed: it is now the scale with its
// number or, when its number was changed, the scale in its slot with its name or address.
class TOrigins {
public:
    TOrigins(const TScaleTable& known, const TScaleTable& current)
        : known_(known), current_(current) {
        Pair([this](int slot) { return SlotOf(current_[slot], known_, slot, isKept_); });
        Pair([this](int slot) { return SlotOfNumber(current_[slot].ScaleNumb); });
        Pair([this](int slot) { return IsRenumbered(slot) ? slot : kNoSlot; });
    }

    int Of(int slot) const { return origins_[static_cast<std::size_t>(slot)]; }
    bool IsKept(int knownSlot) const { return isKept_[static_cast<std::size_t>(knownSlot)]; }

private:
    // Calls `find` for each current scale whose origin is still unknown.
    template <class Find>
    void Pair(Find find) {
        for (int slot = 1; slot <= kScaleSlots; ++slot) {
            if (!IsInUse(current_[slot]) || Of(slot) != kNoSlot) continue;
            const int origin = find(slot);
            origins_[static_cast<std::size_t>(slot)] = origin;
            if (origin != kNoSlot) isKept_[static_cast<std::size_t>(origin)] = true;
        }
    }
    bool IsFree(int knownSlot) const { return IsInUse(known_[knownSlot]) && !IsKept(knownSlot); }
    int SlotOfNumber(std::int32_t number) const {
        for (int slot = 1; slot <= kScaleSlots; ++slot) {
            if (IsFree(slot) && known_[slot].ScaleNumb == number) return slot;
        }
        return kNoSlot;
    }
    bool IsRenumbered(int slot) const {
        const TScaleRec& before = known_[slot];
        const TScaleRec& now = current_[slot];
        return IsFree(slot) &&
               (before.ScaleName == now.ScaleName || before.TCPAddress == now.TCPAddress);
    }

    const TScaleTable& known_;
    const TScaleTable& current_;
    std::array<int, kScaleSlots + 1> origins_{};
    TSlotFlags isKept_{};
};

// Applies this window's changes to the others' table.
class TMerge {
public:
    TMerge(const TScaleTable& known, const TScaleTable& others)
        : known_(known), others_(others), merged_(others) {}

    void Remove(const TScaleRec& known, int slot) {
        const int at = SlotOf(known, others_, slot);
        if (at != kNoSlot) merged_[at].TCPPort = 0;
    }
    void Change(const TScaleRec& known, const TScaleRec& current, int knownSlot, int slot) {
        const int at = SlotInOthers(known, knownSlot);
        const bool onlyMark = IsSameButMark(known, current);
        if (at == kNoSlot) {
            if (!onlyMark) Add(current, slot);
            return;
        }
        const bool mark = known.Checked == current.Checked ? others_[at].Checked : current.Checked;
        if (!onlyMark) merged_[at] = current;
        merged_[at].Checked = mark;
    }
    void Add(const TScaleRec& rec, int slot) {
        if (SlotOf(rec, others_, slot) != kNoSlot) return;
        int at = slot;
        if (IsInUse(merged_[at])) at = FirstFree();
        if (at == kNoSlot)
            leftOut_.push_back(slot);
        else
            merged_[at] = rec;
    }

    void Save(TIniDocument& document) const {
        for (int slot = 1; slot <= kScaleSlots; ++slot) {
            if (!IsSameSlot(merged_[slot], others_[slot])) merged_.SaveSlot(slot, document);
        }
    }
    const std::vector<int>& LeftOut() const { return leftOut_; }

private:
    // The others may have changed a known scale too. It is then the only scale with its number that
    // is not another known scale.
    int SlotInOthers(const TScaleRec& known, int knownSlot) const {
        int found = SlotOf(known, others_, knownSlot);
        if (found != kNoSlot) return found;
        for (int slot = 1; slot <= kScaleSlots; ++slot) {
            const TScaleRec& rec = others_[slot];
            const bool isChanged = IsInUse(rec) && rec.ScaleNumb == known.ScaleNumb &&
                                   SlotOf(rec, known_, slot) == kNoSlot;
            if (isChanged && found != kNoSlot) return kNoSlot;
            if (isChanged) found = slot;
        }
        return found;
    }
    int FirstFree() const {
        for (int slot = 1; slot <= kScaleSlots; ++slot) {
            if (!IsInUse(merged_[slot])) return slot;
        }
        return kNoSlot;
    }

    const TScaleTable& known_;
    const TScaleTable& others_;
    TScaleTable merged_;
    std::vector<int> leftOut_;
};

TMerge Merged(const TScaleTable& known, const TScaleTable& current, const TScaleTable& others) {
    const TOrigins origins(known, current);
    TMerge merge(known, others);
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        if (IsInUse(known[slot]) && !origins.IsKept(slot)) merge.Remove(known[slot], slot);
    }
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        if (!IsInUse(current[slot])) continue;
        const int origin = origins.Of(slot);
        if (origin == kNoSlot)
            merge.Add(current[slot], slot);
        else if (current[slot] != known[origin])
            merge.Change(known[origin], current[slot], origin, slot);
    }
    return merge;
}

}  // namespace

bool HasSameScales(const TScaleTable& a, const TScaleTable& b) {
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        if (!IsSameSlot(a[slot], b[slot])) return false;
    }
    return true;
}

std::vector<int> SaveScaleChanges(const TScaleTable& known, const TScaleTable& current,
                                  TIniDocument& document) {
    // Load keeps the earlier connection type when the file holds an unknown one.
    TScaleTable others = known;
    others.Load(document);
    if (HasSameScales(others, known)) {
        current.Save(document);
        return {};
    }
    const TMerge merge = Merged(known, current, others);
    merge.Save(document);
    return merge.LeftOut();
}

}  // namespace tolvane
