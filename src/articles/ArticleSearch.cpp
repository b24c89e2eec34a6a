#include "articles/ArticleSearch.h"

#include <algorithm>
#include <array>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

// In an order other than that of loading, each text is a jump in memory. Reading the lengths of
// some first lets the processor fetch them side by side.
constexpr std::size_t kSideBySide = 32;

std::optional<std::size_t> FindInTexts(const TArticleTable& articles, TField field,
                                       std::size_t fromIndex, const TTextFinder& finder) {
    const std::vector<TRowId>& order = articles.Order();
    std::array<std::string_view, kSideBySide> texts;
    for (std::size_t start = fromIndex; start < order.size(); start += kSideBySide) {
        const std::size_t count = std::min(kSideBySide, order.size() - start);
        for (std::size_t i = 0; i < count; ++i)
            texts[i] = articles.Text(order[start + i], field);
        for (std::size_t i = 0; i < count; ++i) {
            if (finder.IsIn(texts[i])) return start + i;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::size_t> FindInColumn(const TArticleTable& articles, TField field,
                                        std::size_t fromIndex, std::string_view text,
                                        const TRegionalSettings& regional) {
    const TTextFinder finder(text);
    if (FieldInfo(field).type == TFieldType::Text)
        return FindInTexts(articles, field, fromIndex, finder);
    const std::vector<TRowId>& order = articles.Order();
    for (std::size_t index = fromIndex; index < order.size(); ++index) {
        if (finder.IsIn(articles.AsText(order[index], field, regional))) return index;
    }
    return std::nullopt;
}

}  // namespace tolvane
