#pragma once

#include <vector>

#include "config/ScaleTable.h"

namespace tolvane {

// Saves the scales of a window into a document that others may have changed since: another window
// of the host, another host in the same folder, somebody with an editor. `known` is the table as
// the window loaded or last saved it, `current` as it is now.
//
// A document whose scales are still the known ones gets the whole current table. Otherwise it keeps
// its scales, and only those that the window has added, changed, marked or removed are added,
// changed, marked or removed there, in whichever slot they are now. A scale that the others have
// removed stays so unless more than its mark was changed here; one that they have changed is not
// removed. Where both have changed the same scale, the window's values count.
//
// Gives the slots of added scales for which the document has no room; they are not saved.
std::vector<int> SaveScaleChanges(const TScaleTable& known, const TScaleTable& current,
                                  TIniDocument& document);

// Whether both tables have the same scales in the same slots; slots out of use are all the same.
bool HasSameScales(const TScaleTable& a, const TScaleTable& b);

}  // namespace tolvane
