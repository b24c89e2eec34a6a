#include "simulator/ScaleState.h"

#include <algorithm>

namespace tolvane::simulator {

TScaleProperties DefaultProperties(TModel model) {
    TScaleProperties properties;
    properties.model = model;
    properties.version = PropertiesOf(model).versionText;
    properties.capacity = PropertiesOf(model).capacity;
    return properties;
}

std::string TArticle::Text(int parameter, TCodeTable table) const {
    const auto found = texts.find(parameter);
    return found == texts.end() ? std::string() : DecodeText(found->second.bytes, table);
}

std::optional<int> TArticle::BestBefore() const {
    const auto found = texts.find(kBestBeforeParameter);
    if (found == texts.end() || found->second.bytes.size() < 2) return std::nullopt;
    return found->second.bytes[1];
}

bool TArticle::IsCleared() const {
    const auto name = texts.find(0);
    return price == 0 && name != texts.end() && !name->second.bytes.empty() &&
           name->second.bytes.front() == 0;
}

}  // namespace tolvane::simulator
