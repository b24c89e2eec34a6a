#include "upload/RunScales.h"

namespace tolvane {

std::vector<TRunItem> RunItems(const TScaleTable& scales) {
    std::vector<TRunItem> items;
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        if (IsUsableForRuns(scales[slot])) items.push_back({scales[slot], scales[slot].Checked});
    }
    return items;
}

void StoreRunItems(const std::vector<TRunItem>& items, TScaleTable& scales) {
    if (items.empty()) return;
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        scales[slot].ScaleName = "";
        scales[slot].TCPAddress = "";
        scales[slot].TCPPort = 0;
    }
    int slot = 0;
    for (const TRunItem& item : items) {
        if (++slot > kScaleSlots) return;
        scales[slot] = item.rec;
        scales[slot].Checked = item.checked;
    }
}

}  // namespace tolvane
