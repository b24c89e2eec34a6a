#include "articles/ArticleSort.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

constexpr std::size_t kPrefix = sizeof(std::uint64_t);

// A row and its sort key. For a number, the key is an unsigned number with the same order. For a
// text, it is the first characters in upper case, packed into two numbers; the rest is kept
// elsewhere.
struct TEntry {
    std::uint64_t key = 0;
    std::uint64_t second = 0;
    std::uint32_t rest = 0;  // where the rest of the text starts
    std::uint32_t restSize = 0;
    std::int32_t number = 0;
    std::uint32_t index = 0;
    TRowId row = 0;
};

constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;

std::uint64_t IntegerKey(std::int32_t value) {
    return static_cast<std::uint64_t>(std::int64_t{value}) ^ kSignBit;
}

std::uint64_t FloatKey(double value) {
    if (value == 0) value = 0;  // makes -0 the same as 0
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    return (bits & kSignBit) != 0 ? ~bits : bits | kSignBit;
}

std::uint64_t Prefix(std::string_view text) {
    std::uint64_t prefix = 0;
    for (std::size_t i = 0; i < kPrefix; ++i)
        prefix = prefix << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
    return prefix;
}

class TSorter {
public:
    // Reads the rows in their order in memory, not in the current order.
    TSorter(const TArticleTable& articles, TField field) : articles_(articles), field_(field) {
        entries_.reserve(articles.RowCount());
        for (TRowId row = 0; row < articles.RowCount(); ++row)
            Add(row);
    }

    std::vector<TRowId> Sorted(bool ascending) {
        std::sort(entries_.begin(), entries_.end(), [&](const TEntry& a, const TEntry& b) {
            const int order = Compare(a, b);
            if (order != 0) return ascending ? order < 0 : order > 0;
            return a.index < b.index;
        });
        std::vector<TRowId> order;
        order.reserve(entries_.size());
        for (const TEntry& entry : entries_)
            order.push_back(entry.row);
        return order;
    }

private:
    void Add(TRowId row) {
        TEntry entry;
        entry.row = row;
        entry.index = static_cast<std::uint32_t>(articles_.IndexOf(row));
        entry.number = articles_.Integer(row, TField::PLU_NUMB);
        switch (FieldInfo(field_).type) {
            case TFieldType::Integer:
                entry.key = IntegerKey(articles_.Integer(row, field_));
                break;
            case TFieldType::Float:
                entry.key = FloatKey(articles_.Float(row, field_));
                break;
            case TFieldType::Boolean:
                entry.key = articles_.Boolean(row, field_) ? 1 : 0;
                break;
            case TFieldType::Text:
                SetText(entry, articles_.Text(row, field_));
        }
        entries_.push_back(entry);
    }

    void SetText(TEntry& entry, std::string_view text) {
        const std::string upper = UpperCase(text);
        const std::string_view view = upper;
        entry.key = Prefix(view);
        if (view.size() <= kPrefix) return;
        entry.second = Prefix(view.substr(kPrefix));
        if (view.size() <= 2 * kPrefix) return;
        entry.rest = static_cast<std::uint32_t>(rests_.size());
        entry.restSize = static_cast<std::uint32_t>(view.size() - 2 * kPrefix);
        rests_.append(view.substr(2 * kPrefix));
    }

    int Compare(const TEntry& a, const TEntry& b) const {
        if (a.key != b.key) return a.key < b.key ? -1 : 1;
        if (a.second != b.second) return a.second < b.second ? -1 : 1;
        if ((a.restSize | b.restSize) != 0) {
            const int order = Rest(a).compare(Rest(b));
            if (order != 0) return order;
        }
        if (a.number != b.number) return a.number < b.number ? -1 : 1;
        return 0;
    }
    std::string_view Rest(const TEntry& entry) const {
        return std::string_view(rests_).substr(entry.rest, entry.restSize);
    }

    const TArticleTable& articles_;
    TField field_;
    std::vector<TEntry> entries_;
    std::string rests_;
};

}  // namespace

void SortArticles(TArticleTable& articles, TField field, bool ascending) {
    articles.SetOrder(TSorter(articles, field).Sorted(ascending));
}

}  // namespace tolvane
