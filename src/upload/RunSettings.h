#pragma once

#include <optional>

#include "config/IniDocument.h"
#include "config/WindowPlace.h"
#include "upload/ArticleLine.h"

namespace tolvane {

// What the run window keeps in section SCALESETTINGS of the configuration file.
struct TRunSettings {
    TLineChoices choices;
    std::optional<TWindowPlace> place;  // nothing before the window is closed for the first time
};

// A choice that is missing or out of its range takes its default.
TRunSettings LoadRunSettings(const TIniDocument& document);
void SaveRunSettings(const TRunSettings& settings, TIniDocument& document);

}  // namespace tolvane
