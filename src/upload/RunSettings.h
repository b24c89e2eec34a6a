#pragma once

#include <optional>

#include "config/IniDocument.h"
#include "config/WindowPlace.h"
#include "upload/ArticleLine.h"

namespace tolvane {

// What the run window keeps in section SCALESETTINGS of the configuration file.
struct TRunSettings {
    TLineChoices choices;
    std::optional<TWindowPlace> place;  // nothing until the window was closed once
};

// A choice that is missing or out of its range takes its default.
TRunSettings LoadRunSettings(const TIniDocument& document);
void SaveRunSettings(const TRunSettings& settings, TIniDocument& document);

}  // namespace tolvane
