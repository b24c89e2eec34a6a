#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "command/ExitCode.h"
#include "command/Options.h"
#include "command/Report.h"
#include "command/ScaleJob.h"
#include "command/ScaleResult.h"
#include "command/World.h"

namespace tolvane {

using TMakeJob =
    std::function<std::unique_ptr<TScaleJob>(const TJobParts& parts, const TScaleRec& rec)>;

// Does a job in each scale, as many at the same time as their links allow, and shows and logs how
// far they are. An interrupt or the deadline ends the jobs between two articles. The results are in
// the order of the scales. Throws TUsageError when the log or the trace cannot be opened or the
// state folder cannot be made.
struct TScaleResults {
    std::vector<TScaleResult> scales{};
    bool interrupted = false;
    bool deadline = false;                   // has passed
    std::vector<TRefusedArticle> unknown{};  // that were asked for, and no scale could get
};
TScaleResults RunScales(const TCommandOptions& options, TWorld& world,
                        const std::vector<TScaleRec>& scales, const TMakeJob& makeJob);

TExitCode ExitCodeOf(const TScaleResults& results);

// The tables "scales" and "articles" of a report.
TReport ReportOf(std::string command, const TScaleResults& results);

}  // namespace tolvane
