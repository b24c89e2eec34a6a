#include "upload/RunSettings.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace tolvane {
namespace {

constexpr std::string_view kSection = "SCALESETTINGS";
constexpr std::string_view kMaximized = "SetPluForm_Maximized";

struct TChoiceKey {
    std::string_view key;
    int TLineChoices::*index;
    std::size_t count;
};
constexpr std::array<TChoiceKey, 3> kChoices = {{
    {"PriceRadio_ItemIndex", &TLineChoices::price, kPriceCaptions.size()},
    {"cbPluName1_ItemIndex", &TLineChoices::name1, kNameChoices.size()},
    {"cbPluName2_ItemIndex", &TLineChoices::name2, kNameChoices.size()},
}};

struct TPlaceKey {
    std::string_view key;
    std::int32_t TRunWindowPlace::*value;
};
constexpr std::array<TPlaceKey, 4> kPlace = {{
    {"SetPluForm_Left", &TRunWindowPlace::left},
    {"SetPluForm_Top", &TRunWindowPlace::top},
    {"SetPluForm_Width", &TRunWindowPlace::width},
    {"SetPluForm_Height", &TRunWindowPlace::height},
}};

}  // namespace

TRunSettings LoadRunSettings(const TIniDocument& document) {
    TRunSettings settings;
    for (const TChoiceKey& choice : kChoices) {
        const std::int32_t index = document.ReadInteger(kSection, choice.key, -1);
        if (index >= 0 && static_cast<std::size_t>(index) < choice.count)
            settings.choices.*choice.index = index;
    }
    TRunWindowPlace place;
    for (const TPlaceKey& key : kPlace)
        place.*key.value = document.ReadInteger(kSection, key.key, 0);
    place.maximized = document.ReadBoolean(kSection, kMaximized, false);
    if (place.width > 0 && place.height > 0) settings.place = place;
    return settings;
}

void SaveRunSettings(const TRunSettings& settings, TIniDocument& document) {
    if (settings.place) {
        for (const TPlaceKey& key : kPlace)
            document.WriteInteger(kSection, key.key, (*settings.place).*key.value);
        document.WriteBoolean(kSection, kMaximized, settings.place->maximized);
    }
    for (const TChoiceKey& choice : kChoices)
        document.WriteInteger(kSection, choice.key, settings.choices.*choice.index);
}

}  // namespace tolvane
