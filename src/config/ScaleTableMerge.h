#pragma once

#include <vector>

#include "config/ScaleTable.h"

namespace tolvane {

// Saves the scales of a window into a document that others may have changed since: another window
// of the host, another host in the same folder, somebody with an editor. `known` is the table as
// the window loaded or last saved it, `current` as it is now.
//
// A document whose scales are still the known ones gets the whole current table. Any other document
// gets only this window's changes, each applied to the scale in whichever slot it now has. A scale
// that the others have removed stays removed, unless the window has changed more than its mark; a
// scale that they have changed is not removed. Where both have changed the same scale, the window's
// values count.
//
// Returns the slots of the added scales for which the document has no room; these are not saved.
std::vector<int> SaveScaleChanges(const TScaleTable& known, const TScaleTable& current,
                                  TIniDocument& document);

// Whether both tables have the same scales in the same slots. All slots out of use count as equal.
bool HasSameScales(const TScaleTable& a, const TScaleTable& b);

}  // namespace tolvane
