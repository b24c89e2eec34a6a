#include "articles/ArticleSort.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

// The first characters, upper-cased, as one number: most comparisons end here.
std::uint64_t TextPrefix(std::string_view text) {
    std::uint64_t prefix = 0;
    for (std::size_t i = 0; i < sizeof(prefix); ++i) {
        const auto byte =
            i < text.size() ? static_cast<unsigned char>(UpperCase(text[i])) : std::uint64_t{0};
        prefix = prefix << 8 | byte;
    }
    return prefix;
}

// Numbers whose order as unsigned is the order of the values.
constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;

std::uint64_t FloatKey(double value) {
    if (value == 0) value = 0;  // one zero, whatever its sign
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    return (bits & kSignBit) != 0 ? ~bits : bits | kSignBit;
}

std::uint64_t KeyOf(const TArticleTable& articles, TRowId row, TField field) {
    switch (FieldInfo(field).type) {
        case TFieldType::Integer:
            return static_cast<std::uint64_t>(std::int64_t{articles.Integer(row, field)}) ^
                   kSignBit;
        case TFieldType::Float:
            return FloatKey(articles.Float(row, field));
        case TFieldType::Boolean:
            return articles.Boolean(row, field) ? 1 : 0;
        case TFieldType::Text:
            break;
    }
    return TextPrefix(articles.Text(row, field));
}

struct TEntry {
    std::uint64_t key;
    std::int32_t number;
    TRowId row;
};

}  // namespace

void SortArticles(TArticleTable& articles, TField field, bool ascending) {
    std::vector<TEntry> entries;
    entries.reserve(articles.RowCount());
    for (const TRowId row : articles.Order())
        entries.push_back(
            {KeyOf(articles, row, field), articles.Integer(row, TField::PLU_NUMB), row});

    const bool text = FieldInfo(field).type == TFieldType::Text;
    const auto before = [&](const TEntry& a, const TEntry& b) {
        if (a.key != b.key) return a.key < b.key;
        if (text) {
            const int order =
                CompareIgnoringCase(articles.Text(a.row, field), articles.Text(b.row, field));
            if (order != 0) return order < 0;
        }
        return a.number < b.number;
    };
    if (ascending) {
        std::stable_sort(entries.begin(), entries.end(), before);
    } else {
        std::stable_sort(entries.begin(), entries.end(),
                         [&](const TEntry& a, const TEntry& b) { return before(b, a); });
    }

    std::vector<TRowId> order;
    order.reserve(entries.size());
    for (const TEntry& entry : entries)
        order.push_back(entry.row);
    articles.SetOrder(std::move(order));
}

}  // namespace tolvane
