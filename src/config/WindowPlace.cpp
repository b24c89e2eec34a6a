#include "config/WindowPlace.h"

#include <array>
#include <string>

namespace tolvane {
namespace {

constexpr std::string_view kMaximized = "_Maximized";

struct TPlaceKey {
    std::string_view suffix;
    std::int32_t TWindowPlace::*value;
};
constexpr std::array<TPlaceKey, 4> kPlaceKeys = {{
    {"_Left", &TWindowPlace::left},
    {"_Top", &TWindowPlace::top},
    {"_Width", &TWindowPlace::width},
    {"_Height", &TWindowPlace::height},
}};

}  // namespace

std::optional<TWindowPlace> LoadWindowPlace(const TIniDocument& document, std::string_view section,
                                            std::string_view window) {
    const std::string name(window);
    TWindowPlace place;
    for (const TPlaceKey& key : kPlaceKeys)
        place.*key.value = document.ReadInteger(section, name + std::string(key.suffix), 0);
    if (place.width <= 0 || place.height <= 0) return std::nullopt;
    place.maximized = document.ReadBoolean(section, name + std::string(kMaximized), false);
    return place;
}

void SaveWindowPlace(const TWindowPlace& place, std::string_view section, std::string_view window,
                     TIniDocument& document) {
    const std::string name(window);
    for (const TPlaceKey& key : kPlaceKeys)
        document.WriteInteger(section, name + std::string(key.suffix), place.*key.value);
    document.WriteBoolean(section, name + std::string(kMaximized), place.maximized);
}

}  // namespace tolvane
