#pragma once

#include <vector>

#include "config/ScaleTable.h"
#include "config/TypesUnit.h"

namespace tolvane {

// The items of ScaleList: the slots that a run can use, in slot order, each with its check mark
// (Rec.Checked).
std::vector<TScaleObj> RunItems(const TScaleTable& scales);
// Puts the items, with their check marks, into the slots from 1 on; the other slots become empty.
// Items beyond the last slot are left out. With no items at all, the table does not change.
void StoreRunItems(const std::vector<TScaleObj>& items, TScaleTable& scales);

}  // namespace tolvane
