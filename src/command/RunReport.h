#pragma once

#include <string>
#include <vector>

#include "command/ExitCode.h"
#include "command/Report.h"
#include "command/ScaleList.h"
#include "command/ScaleResult.h"

namespace tolvane {

// What a run, or the plan of one, has come to. The scales are in the order of the list.
struct TScaleResults {
    std::vector<TScaleResult> scales{};
    bool interrupted = false;
    bool deadline = false;     // has passed
    bool traceFailed = false;  // the trace lacks its end
    // Articles were asked for by their numbers: one that a scale does not get is a failure.
    bool named = false;
    std::vector<TRefusedArticle> unknown{};  // that were asked for, and no scale could get
};

// Of a scale that no run can use.
TScaleResult UnusableResult(const TListedScale& scale);

TExitCode ExitCodeOf(const TScaleResults& results);

// The tables "scales" and "articles" of a report. A test shows the models, too.
TReport ReportOf(std::string command, const TScaleResults& results);

// The second one alone.
TReportTable ArticleTableOf(const TScaleResults& results);

// Why a scale is not done, as far as it is known; code page 1251.
std::string ReasonOf(const TScaleResult& scale);

// Why scales have failed, a line for each, as "scale 3 Meat: no answer". UTF-8.
std::vector<std::string> FailureLines(const TScaleResults& results);

}  // namespace tolvane
