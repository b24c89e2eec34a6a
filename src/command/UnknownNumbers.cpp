#include "command/UnknownNumbers.h"

#include <algorithm>
#include <string>

#include "upload/ArticleLine.h"

namespace tolvane {

std::vector<TRefusedArticle> UnknownNumbers(const std::set<std::int32_t>& chosen,
                                            const TArticleTable& table,
                                            const std::vector<TScaleRec>& scales) {
    std::set<std::int32_t> there;
    std::set<std::int32_t> meant;
    for (const TRowId row : table.Order()) {
        const std::int32_t number = table.Integer(row, TField::PLU_SCALE_NUMB);
        if (!chosen.contains(number)) continue;
        there.insert(number);
        const bool isMeant = std::any_of(scales.begin(), scales.end(), [&](const TScaleRec& rec) {
            return IsForScale(table.Text(row, TField::PLU_FORSCALES), rec.ScaleNumb);
        });
        if (isMeant) meant.insert(number);
    }
    std::vector<TRefusedArticle> unknown;
    for (const std::int32_t number : chosen) {
        if (meant.contains(number)) continue;
        unknown.push_back({.number = number,
                           .reason = there.contains(number)
                                         ? "no article of these scales has this number"
                                         : "no article has this number"});
    }
    return unknown;
}

}  // namespace tolvane
