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
    constexpr std::size_t kMostBytes = 4;  // the first one and 24 bits
    if (found == texts.end()) return std::nullopt;
    const TBytes& bytes = found->second.bytes;
    if (bytes.size() < 2 || bytes.size() > kMostBytes) return std::nullopt;
    int days = 0;
    for (std::size_t i = 1; i < bytes.size(); ++i)
        days = days * 256 + bytes[i];
    return days;
}

bool TArticle::IsCleared() const {
    const auto name = texts.find(0);
    return price == 0 && name != texts.end() && !name->second.bytes.empty() &&
           name->second.bytes.front() == 0;
}

}  // namespace tolvane::simulator
