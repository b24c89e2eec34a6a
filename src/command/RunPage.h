#pragma once

#include "command/PageFile.h"
#include "command/RunReport.h"

namespace tolvane {

// What a page tells of a run that writes, or of the plan of one.
TPageContent RunPage(const TScaleResults& results, bool planned);

}  // namespace tolvane
