#include "articles/ArticleSort.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

// A row and its key, a number with the same order as what is sorted by: a value, or eight
// characters of a text. The place tells rows with equal keys apart.
struct TEntry {
    std::uint64_t key = 0;
    TRowId row = 0;
    std::uint32_t place = 0;
};
using TEntries = std::span<TEntry>;

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

// Sorts entries, which stand in the order of their places, by key and place.
class TKeySort {
public:
    explicit TKeySort(std::size_t most) : spare_(most) {}

    void Sort(TEntries entries) {
        std::uint64_t differing = 0;
        bool sorted = true;
        for (std::size_t i = 1; i < entries.size(); ++i) {
            differing |= entries[i].key ^ entries[i - 1].key;
            sorted = sorted && entries[i - 1].key <= entries[i].key;
        }
        if (sorted) return;
        if (entries.size() < kFew)
            std::ranges::sort(entries, [](const TEntry& a, const TEntry& b) {
                return a.key != b.key ? a.key < b.key : a.place < b.place;
            });
        else
            SortByDigits(entries, differing);
    }

private:
    static constexpr std::size_t kFew = 512;
    static constexpr int kDigitBits = 11;
    static constexpr std::size_t kDigits = std::size_t{1} << kDigitBits;

    // From the last digit to the first; bits in which no keys differ are left out.
    void SortByDigits(TEntries entries, std::uint64_t differing) {
        TEntries from = entries;
        TEntries to = TEntries(spare_).first(entries.size());
        while (differing != 0) {
            const int shift = std::countr_zero(differing);
            Distribute(from, to, shift);
            std::swap(from, to);
            differing &= ~(std::uint64_t{kDigits - 1} << shift);
        }
        if (from.data() != entries.data()) std::ranges::copy(from, entries.begin());
    }

    static void Distribute(TEntries from, TEntries to, int shift) {
        const auto digit = [&](const TEntry& entry) {
            return static_cast<std::size_t>(entry.key >> shift) % kDigits;
        };
        std::array<std::uint32_t, kDigits> next{};
        for (const TEntry& entry : from)
            ++next[digit(entry)];
        std::uint32_t sum = 0;
        for (std::uint32_t& start : next)
            sum += std::exchange(start, sum);
        for (const TEntry& entry : from)
            to[next[digit(entry)]++] = entry;
    }

    std::vector<TEntry> spare_;
};

// The texts of a column in upper case.
class TUpperTexts {
public:
    static constexpr std::size_t kWord = sizeof(std::uint64_t);

    // In the order of the rows.
    void Add(std::string_view text) {
        starts_.push_back(static_cast<std::uint32_t>(bytes_.size()));
        sizes_.push_back(static_cast<std::uint8_t>(text.size()));
        AppendUpperCase(bytes_, text);
        bytes_.append(kWord, '\0');
    }
    std::size_t Size(TRowId row) const { return sizes_[row]; }
    // What follows the first `depth` characters.
    std::string_view Rest(TRowId row, std::size_t depth) const {
        if (depth >= sizes_[row]) return {};
        return {bytes_.data() + starts_[row] + depth, sizes_[row] - depth};
    }
    // The next characters as a number, zeros after the last.
    std::uint64_t Word(TRowId row, std::size_t depth) const {
        if (depth >= sizes_[row]) return 0;
        const char* const at = bytes_.data() + starts_[row] + depth;
        std::uint64_t word = 0;
        for (std::size_t i = 0; i < kWord; ++i)
            word = word << 8 | static_cast<unsigned char>(at[i]);
        return word;
    }

private:
    std::string bytes_;
    std::vector<std::uint32_t> starts_;
    std::vector<std::uint8_t> sizes_;
};

class TSorter {
public:
    TSorter(const TArticleTable& articles, TField field, bool ascending)
        : articles_(articles), field_(field), ascending_(ascending), sort_(articles.RowCount()) {
        AddRows();
    }

    std::vector<TRowId> Sorted() {
        switch (FieldInfo(field_).type) {
            case TFieldType::Integer:
                SortBy([&](TRowId row) { return IntegerKey(articles_.Integer(row, field_)); });
                break;
            case TFieldType::Float:
                SortBy([&](TRowId row) { return FloatKey(articles_.Float(row, field_)); });
                break;
            case TFieldType::Boolean:
                SortBy([&](TRowId row) { return articles_.Boolean(row, field_) ? 1U : 0U; });
                break;
            case TFieldType::Text:
                for (TRowId row = 0; row < articles_.RowCount(); ++row)
                    texts_.Add(articles_.Text(row, field_));
                SortTexts(entries_, 0);
        }
        std::vector<TRowId> order;
        order.reserve(entries_.size());
        for (const TEntry& entry : entries_)
            order.push_back(entry.row);
        if (!ascending_) std::ranges::reverse(order);
        return order;
    }

private:
    // In ascending order of the article numbers. Rows of one number stand in their current order,
    // or in the opposite one where the result will be reversed.
    void AddRows() {
        const std::size_t count = articles_.RowCount();
        const auto number = [&](TRowId row) { return articles_.Integer(row, TField::PLU_NUMB); };
        bool loadedInOrder = true;  // spares jumps in memory
        for (TRowId row = 1; row < count; ++row)
            loadedInOrder = loadedInOrder && number(row - 1) < number(row);
        entries_.reserve(count);
        for (std::uint32_t place = 0; place < count; ++place) {
            const TRowId row =
                loadedInOrder ? place : articles_.RowAt(ascending_ ? place : count - 1 - place);
            entries_.push_back({IntegerKey(number(row)), row, place});
        }
        if (loadedInOrder) return;
        sort_.Sort(entries_);
        for (std::uint32_t place = 0; place < count; ++place)
            entries_[place].place = place;
    }

    template <class Key>
    void SortBy(Key key) {
        for (TEntry& entry : entries_)
            entry.key = key(entry.row);
        sort_.Sort(entries_);
    }

    // Sorts a group whose texts are equal in their first `depth` characters, then each group that
    // is equal in the next word.
    void SortTexts(TEntries group, std::size_t depth) {
        if (group.size() < 2) return;
        depth += CommonSize(group, depth);
        const bool ended = std::ranges::all_of(
            group, [&](const TEntry& entry) { return texts_.Size(entry.row) <= depth; });
        for (TEntry& entry : group)
            entry.key = ended ? EndKey(entry.row) : texts_.Word(entry.row, depth);
        sort_.Sort(group);
        if (ended) return;
        for (auto from = group.begin(); from != group.end();) {
            const auto to = std::find_if(
                from, group.end(), [&](const TEntry& entry) { return entry.key != from->key; });
            SortTexts({from, to}, depth + TUpperTexts::kWord);
            from = to;
        }
    }
    // Zero characters at the end of a text count only behind its first two words.
    std::uint64_t EndKey(TRowId row) const {
        return std::max(texts_.Size(row), 2 * TUpperTexts::kWord);
    }
    std::size_t CommonSize(TEntries group, std::size_t depth) const {
        std::string_view common = texts_.Rest(group.front().row, depth);
        for (const TEntry& entry : group) {
            const std::string_view rest = texts_.Rest(entry.row, depth);
            if (rest.starts_with(common)) continue;
            const auto end = std::ranges::mismatch(common, rest).in1;
            common = common.substr(0, static_cast<std::size_t>(end - common.begin()));
            if (common.empty()) break;
        }
        return common.size();
    }

    const TArticleTable& articles_;
    TField field_;
    bool ascending_;
    std::vector<TEntry> entries_;
    TKeySort sort_;
    TUpperTexts texts_;
};

}  // namespace

void SortArticles(TArticleTable& articles, TField field, bool ascending) {
    articles.SetOrder(TSorter(articles, field, ascending).Sorted());
}

}  // namespace tolvane
