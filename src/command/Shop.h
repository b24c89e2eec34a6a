#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "articles/ArticleReading.h"
#include "command/Options.h"
#include "command/ScaleList.h"
#include "command/UsageError.h"
#include "command/World.h"
#include "upload/ArticleLine.h"

namespace tolvane {

// What the module's configuration file says.
struct TShop {
    std::vector<TListedScale> scales{};  // in the order of the file
    TLineChoices choices{};
};

// Throws TUsageError for a file that is missing, that cannot be read, or that holds no scale. The
// options' own choices replace the file's.
TShop ReadShop(const TCommandOptions& options);

// The scales that the options name, in the order of the file; without a name the checked ones.
// Throws TUsageError for a name that no scale has, and when no scale is chosen.
std::vector<TListedScale> ChosenScales(const std::vector<TListedScale>& scales,
                                       const std::vector<std::string>& names);

// The same for the options' scales, where a value that is no scale's name is split at its commas;
// told to a person who wants to hear more.
std::vector<TListedScale> ChosenScales(const TShop& shop, const TCommandOptions& options,
                                       TWorld& world);

// Reads the articles with the login that the options name, and tells how many to a person who wants
// to hear more. Throws TUsageError for a missing or unreadable password file, TDatabaseError for
// everything else.
TArticleReading ReadShopArticles(const TCommandOptions& options, TWorld& world);

}  // namespace tolvane
