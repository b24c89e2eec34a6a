#pragma once

#include <cstdint>
#include <optional>

#include "config/IniDocument.h"
#include "upload/ArticleLine.h"

namespace tolvane {

// What the run window keeps in section SCALESETTINGS of the configuration file.
struct TRunWindowPlace {
    std::int32_t left = 0;  // pixels, outer size
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    bool maximized = false;
};
struct TRunSettings {
    TLineChoices choices;
    std::optional<TRunWindowPlace> place;  // nothing until the window was closed once
};

// A choice that is missing or out of its range takes its default.
TRunSettings LoadRunSettings(const TIniDocument& document);
void SaveRunSettings(const TRunSettings& settings, TIniDocument& document);

}  // namespace tolvane
