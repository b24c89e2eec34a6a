#include "upload/RunScales.h"

namespace tolvane {

std::vector<TScaleObj> RunItems(const TScaleTable& scales) {
    std::vector<TScaleObj> items;
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        if (IsUsableForRuns(scales[slot])) items.push_back({scales[slot]});
    }
    return items;
}

void StoreRunItems(const std::vector<TScaleObj>& items, TScaleTable& scales) {
    if (items.empty()) return;
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        scales[slot].ScaleName = "";
        scales[slot].TCPAddress = "";
        scales[slot].TCPPort = 0;
    }
    int slot = 0;
    for (const TScaleObj& item : items) {
        if (++slot > kScaleSlots) return;
        scales[slot] = item.Rec;
    }
}

}  // namespace tolvane
