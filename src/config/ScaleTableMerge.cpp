#include "config/ScaleTableMerge.h"

#include <array>

#include "config/IniDocument.h"

namespace tolvane {
namespace {

constexpr int kNoSlot = 0;

using TSlotFlags = std::array<bool, kScaleSlots + 1>;  // by slot, from 1 on
using TSlotNumbers = std::array<int, kScaleSlots + 1>;

// Slots out of use are the same whatever is left in them.
bool IsSameSlot(const TScaleRec& a, const TScaleRec& b) {
    return a == b || (!IsInUse(a) && !IsInUse(b));
}

bool IsSameTable(const TScaleTable& a, const TScaleTable& b) {
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        if (!IsSameSlot(a[slot], b[slot])) return false;
    }
    return true;
}

bool IsSameButMark(const TScaleRec& a, TScaleRec b) {
    b.Checked = a.Checked;
    return IsInUse(a) && a == b;
}

// Where the table holds a scale, its mark apart: `first` when it is there, else the first slot that
// is not left out.
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

// For each current scale the slot in which it was known, and which known scales are still there.
// Deleting a scale moves those after it; one that is found nowhere was changed where it stood.
struct TOrigins {
    TSlotNumbers of{};
    TSlotFlags isKept{};

    TOrigins(const TScaleTable& known, const TScaleTable& current) {
        for (int slot = 1; slot <= kScaleSlots; ++slot) {
            if (IsInUse(current[slot])) Keep(slot, SlotOf(current[slot], known, slot, isKept));
        }
        for (int slot = 1; slot <= kScaleSlots; ++slot) {
            const auto at = static_cast<std::size_t>(slot);
            if (IsInUse(current[slot]) && of[at] == kNoSlot && IsInUse(known[slot]) && !isKept[at])
                Keep(slot, slot);
        }
    }

private:
    void Keep(int slot, int origin) {
        of[static_cast<std::size_t>(slot)] = origin;
        if (origin != kNoSlot) isKept[static_cast<std::size_t>(origin)] = true;
    }
};

// The others' table with this window's changes.
class TMerge {
public:
    explicit TMerge(const TScaleTable& others) : others_(others), merged_(others) {}

    void Remove(const TScaleRec& known, int slot) {
        const int at = SlotOf(known, others_, slot);
        if (at != kNoSlot) merged_[at].TCPPort = 0;
    }
    void Change(const TScaleRec& known, const TScaleRec& current, int slot) {
        const int at = PlaceOf(known, slot);
        const bool onlyMark = IsSameButMark(known, current);
        if (at == kNoSlot && !onlyMark) Add(current, slot);
        if (at == kNoSlot) return;
        const bool mark = known.Checked == current.Checked ? others_[at].Checked : current.Checked;
        if (!onlyMark) merged_[at] = current;
        merged_[at].Checked = mark;
    }
    void Add(const TScaleRec& rec, int slot) {
        if (SlotOf(rec, others_, slot) != kNoSlot) return;
        int at = slot;
        if (IsInUse(merged_[at])) at = FirstFree();
        if (at == kNoSlot)
            leftOut_.push_back(rec.ScaleName.Str());
        else
            merged_[at] = rec;
    }

    void Save(TIniDocument& document) const {
        for (int slot = 1; slot <= kScaleSlots; ++slot) {
            if (!IsSameSlot(merged_[slot], others_[slot])) merged_.SaveSlot(slot, document);
        }
    }
    const std::vector<std::string>& LeftOut() const { return leftOut_; }

private:
    // The others may have changed it, too; it is the same scale then as long as its number is.
    int PlaceOf(const TScaleRec& known, int slot) const {
        const int at = SlotOf(known, others_, slot);
        const bool isChanged = IsInUse(others_[slot]) && others_[slot].ScaleNumb == known.ScaleNumb;
        return at == kNoSlot && isChanged ? slot : at;
    }
    int FirstFree() const {
        for (int slot = 1; slot <= kScaleSlots; ++slot) {
            if (!IsInUse(merged_[slot])) return slot;
        }
        return kNoSlot;
    }

    const TScaleTable& others_;
    TScaleTable merged_;
    std::vector<std::string> leftOut_;
};

TMerge Merged(const TScaleTable& known, const TScaleTable& current, const TScaleTable& others) {
    const TOrigins origins(known, current);
    TMerge merge(others);
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        if (IsInUse(known[slot]) && !origins.isKept[static_cast<std::size_t>(slot)])
            merge.Remove(known[slot], slot);
    }
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        if (!IsInUse(current[slot])) continue;
        const int origin = origins.of[static_cast<std::size_t>(slot)];
        if (origin == kNoSlot)
            merge.Add(current[slot], slot);
        else if (current[slot] != known[origin])
            merge.Change(known[origin], current[slot], origin);
    }
    return merge;
}

}  // namespace

std::vector<std::string> SaveScaleChanges(const TScaleTable& known, const TScaleTable& current,
                                          TIniDocument& document) {
    // A type of connection that the file does not know is read as the one before.
    TScaleTable others = known;
    others.Load(document);
    if (document.Bytes().empty() || IsSameTable(others, known)) {
        current.Save(document);
        return {};
    }
    const TMerge merge = Merged(known, current, others);
    merge.Save(document);
    return merge.LeftOut();
}

}  // namespace tolvane
