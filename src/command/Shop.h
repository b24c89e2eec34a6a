#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "articles/ArticleReading.h"
#include "command/Options.h"
#include "command/UsageError.h"
#include "command/World.h"
#include "config/TypesUnit.h"
#include "upload/ArticleLine.h"

namespace tolvane {

// What the module's configuration file says.
struct TShop {
    std::vector<TScaleRec> scales{};  // that a run can use, in the order of the file
    TLineChoices choices{};
};

// Throws TUsageError without a file, TFileError when it cannot be read. The options' own choices
// replace the file's.
TShop ReadShop(const TCommandOptions& options);

// The scales that the options name, in the order of the file; without a name the checked ones.
// Throws TUsageError for a name that no scale has, and when there is no scale.
std::vector<TScaleRec> ChosenScales(const std::vector<TScaleRec>& scales,
                                    const std::vector<std::string>& names);

// The same for the options' scales, told to a person who wants to hear more.
std::vector<TScaleRec> ChosenScales(const TShop& shop, const TCommandOptions& options,
                                    TWorld& world);

// Reads the articles with the login that the options name, and tells how many to a person who wants
// to hear more. Throws TUsageError for a missing or unreadable password file, TDatabaseError for
// everything else.
TArticleReading ReadShopArticles(const TCommandOptions& options, TWorld& world);

}  // namespace tolvane
