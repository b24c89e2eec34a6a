#include "upload/RunSettings.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace tolvane {
namespace {

constexpr std::string_view kSection = "SCALESETTINGS";
constexpr std::string_view kWindow = "SetPluForm";

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

}  // namespace

TRunSettings LoadRunSettings(const TIniDocument& document) {
    TRunSettings settings;
    for (const TChoiceKey& choice : kChoices) {
        const std::int32_t index = document.ReadInteger(kSection, choice.key, -1);
        if (index >= 0 && static_cast<std::size_t>(index) < choice.count)
            settings.choices.*choice.index = index;
    }
    settings.place = LoadWindowPlace(document, kSection, kWindow);
    return settings;
}

void SaveRunSettings(const TRunSettings& settings, TIniDocument& document) {
    if (settings.place) SaveWindowPlace(*settings.place, kSection, kWindow, document);
    for (const TChoiceKey& choice : kChoices)
        document.WriteInteger(kSection, choice.key, settings.choices.*choice.index);
}

}  // namespace tolvane
