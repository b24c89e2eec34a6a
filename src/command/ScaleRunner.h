#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "command/Options.h"
#include "command/RunReport.h"
#include "command/ScaleJob.h"
#include "command/World.h"

namespace tolvane {

using TMakeJob =
    std::function<std::unique_ptr<TScaleJob>(const TJobParts& parts, const TScaleRec& rec)>;

// Does a job in each scale that can be used, as many at the same time as their links allow, and
// shows and logs how far they are. An interrupt or the deadline ends the jobs between two articles.
// Throws TUsageError when the trace cannot be opened or the state folder cannot be made.
TScaleResults RunScales(const TCommandOptions& options, TWorld& world,
                        const std::vector<TListedScale>& scales, const TMakeJob& makeJob);

}  // namespace tolvane
