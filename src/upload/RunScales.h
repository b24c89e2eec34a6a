#pragma once

#include <vector>

#include "config/ScaleTable.h"
#include "config/TypesUnit.h"

namespace tolvane {

// The items of ScaleList: the slots that a run can use, in slot order. Rec.Checked is the check
// mark.
std::vector<TScaleObj> RunItems(const TScaleTable& scales);
// Puts the items, with their check marks, into the slots from 1 on; the slots after them become
// empty. Items beyond the last slot are left out. Without any item the table stays as it is.
void StoreRunItems(const std::vector<TScaleObj>& items, TScaleTable& scales);

}  // namespace tolvane
