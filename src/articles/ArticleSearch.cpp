#include "articles/ArticleSearch.h"

#include "text/Cp1251.h"

namespace tolvane {

std::optional<std::size_t> FindInColumn(const TArticleTable& articles, TField field,
                                        std::size_t fromIndex, std::string_view text,
                                        const TRegionalSettings& regional) {
    const std::string needle = UpperCase(text);
    const bool isText = FieldInfo(field).type == TFieldType::Text;
    const std::vector<TRowId>& order = articles.Order();
    for (std::size_t index = fromIndex; index < order.size(); ++index) {
        const bool found =
            isText ? ContainsUpperCased(articles.Text(order[index], field), needle)
                   : ContainsUpperCased(articles.AsText(order[index], field, regional), needle);
        if (found) return index;
    }
    return std::nullopt;
}

}  // namespace tolvane
