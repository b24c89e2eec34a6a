#pragma once

#include <vector>

#include "command/Problem.h"
#include "command/ScaleArticles.h"
#include "config/TypesUnit.h"
#include "upload/ProgrammingMode.h"

namespace tolvane {

// Of the articles of one scale: what is left out, what overwrites what, what is cut, and letters
// that the scale's code table lacks. `version` is what the scale reported last.
std::vector<TProblem> ProblemsInScale(const TScaleArticles& articles, const TArticleTable& table,
                                      const TScaleRec& rec, const TScaleVersion& version);

}  // namespace tolvane
