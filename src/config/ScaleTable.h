#pragma once

#include <array>
#include <cstddef>

#include "config/TypesUnit.h"

namespace tolvane {

class TIniDocument;

inline constexpr int kScaleSlots = 20;

// The twenty slots of configured scales, numbered 1 to 20. The order of the slots is the order of
// every list of scales.
class TScaleTable {
public:
    TScaleRec& operator[](int slot) { return slots_[static_cast<std::size_t>(slot - 1)]; }
    const TScaleRec& operator[](int slot) const {
        return slots_[static_cast<std::size_t>(slot - 1)];
    }

    // Reads sections SCALE1 to SCALE20; a slot without a section becomes empty. When the file's
    // connection type is not 0, 1 or 2, the slot keeps the type that it had.
    void Load(const TIniDocument& document);
    // Writes the slots in use and erases the sections of the others. The rest of the document
    // stays.
    void Save(TIniDocument& document) const;
    // The same for one slot.
    void SaveSlot(int slot, TIniDocument& document) const;

private:
    std::array<TScaleRec, kScaleSlots> slots_{};
};

// Whether the editor and the file keep the slot: port, name and address are set.
bool IsInUse(const TScaleRec& rec);
// Whether a run can use the slot: address and port are set.
bool IsUsableForRuns(const TScaleRec& rec);

}  // namespace tolvane
