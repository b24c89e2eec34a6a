#pragma once

#include <vector>

#include "config/ScaleTable.h"
#include "upload/ScaleRun.h"

namespace tolvane {

// The items of ScaleList: the slots that a run can use, in order, each with the slot's check mark.
std::vector<TRunItem> RunItems(const TScaleTable& scales);
// Puts the items back, one after another from slot 1 on, with their check marks; the slots behind
// them become empty. Without any item the table stays as it is.
void StoreRunItems(const std::vector<TRunItem>& items, TScaleTable& scales);

}  // namespace tolvane
