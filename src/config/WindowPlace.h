#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "config/IniDocument.h"

namespace tolvane {

// Where a window was when it was last closed: its outer rectangle in pixels.
struct TWindowPlace {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    bool maximized = false;
};

// Kept in a section as keys that begin with the window's name: "<window>_Left", "_Top", "_Width",
// "_Height" and "_Maximized". Returns nothing when the section holds no size.
std::optional<TWindowPlace> LoadWindowPlace(const TIniDocument& document, std::string_view section,
                                            std::string_view window);
void SaveWindowPlace(const TWindowPlace& place, std::string_view section, std::string_view window,
                     TIniDocument& document);

}  // namespace tolvane
