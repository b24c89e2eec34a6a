// Prints what sorting and searching a list of articles takes beside sorting and searching the same
// values plainly. The number of articles may be given.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "articles/ArticleSearch.h"
#include "articles/ArticleSort.h"
#include "tests/bench/measure/Quick.h"
#include "tests/bench/measure/Sides.h"
#include "text/Cp1251.h"

namespace tolvane::bench {
namespace {

constexpr double kSortAtMost = 1;
constexpr double kSearchAtMost = 1.5;

// Typical texts; all comments of one kind begin alike.
TArticleTable MakeArticles(std::int32_t count) {
    constexpr std::string_view kFirstLetters = "ябвгдежзийклмнопрстуфхцчшщю"_cp1251;
    std::mt19937 random(1);
    TArticleTable articles;
    for (std::int32_t number = 1; number <= count; ++number) {
        const auto spread = static_cast<std::int32_t>(random() % 100000);
        const std::string digits = std::to_string(spread);
        const TRowId row = articles.Append();
        const auto text = [&](TField field, std::string_view beginning,
                              std::string_view middle = {}, std::string_view end = {}) {
            articles.SetText(row, field, std::string(beginning).append(middle).append(end));
        };
        articles.SetInteger(row, TField::PLU_NUMB, number);
        articles.SetInteger(row, TField::PLU_SCALE_NUMB, number % 10000 == 0 ? 0 : number);
        articles.SetInteger(row, TField::PR_ID, spread);
        articles.SetFloat(row, TField::PLU_SELL_PRICE, 2.34 + spread % 70);
        articles.SetFloat(row, TField::PLU_BUY_PRICE, spread / 1.7);
        const auto letter = static_cast<std::size_t>(spread) % kFirstLetters.size();
        text(TField::PLU_NAME, kFirstLetters.substr(letter, 1), "ртикул "_cp1251, digits);
        text(TField::PLU_ECR_NAME, "АРТИКУЛ "_cp1251, digits);
        text(TField::PLU_FOREGHN_NAME, "Етикет "_cp1251, digits);
        text(TField::PRIMARYUNIT_NAME, "кг"_cp1251);
        text(TField::PLU_GRP_NAME, "Група артикули "_cp1251, std::to_string(number / 30 % 40));
        text(TField::LABEL_COMMENT1, "Съставки на артикул "_cp1251, digits, ", сол"_cp1251);
        text(
            TField::LABEL_COMMENT2,
            "Да се съхранява на сухо и хладно място при температура от 0 до +4 градуса, партида "_cp1251,
            digits);
        text(TField::LABEL_COMMENT3, "Произход: България"_cp1251);
    }
    return articles;
}

void Shuffle(TArticleTable& articles) {
    std::vector<TRowId> order = articles.Order();
    std::ranges::sort(order);
    std::shuffle(order.begin(), order.end(), std::mt19937(1));
    articles.SetOrder(order);
}

std::vector<std::string> TextsOf(const TArticleTable& articles, TField field) {
    std::vector<std::string> texts;
    for (const TRowId row : articles.Order())
        texts.emplace_back(articles.Text(row, field));
    return texts;
}
std::vector<std::int32_t> IntegersOf(const TArticleTable& articles, TField field) {
    std::vector<std::int32_t> values;
    for (const TRowId row : articles.Order())
        values.push_back(articles.Integer(row, field));
    return values;
}
std::vector<double> FloatsOf(const TArticleTable& articles, TField field) {
    std::vector<double> values;
    for (const TRowId row : articles.Order())
        values.push_back(articles.Float(row, field));
    return values;
}

// From the current order, as after another sort.
template <class Values>
void CompareSort(std::string_view name, TArticleTable& articles, TField field,
                 const Values& unsorted) {
    const std::vector<TRowId> order = articles.Order();
    Values values;
    Compare({name, [&] { SortArticles(articles, field, true); }, [&] { articles.SetOrder(order); }},
            {"  std::stable_sort", [&] { std::stable_sort(values.begin(), values.end()); },
             [&] { values = unsorted; }},
            kSortAtMost);
    articles.SetOrder(order);
}

void CompareSorts(TArticleTable& articles, std::string_view order) {
    std::printf("Sorting a list in %s\n\n", order.data());
    const auto texts = [&](std::string_view name, TField field) {
        CompareSort(name, articles, field, TextsOf(articles, field));
    };
    const auto integers = [&](std::string_view name, TField field) {
        CompareSort(name, articles, field, IntegersOf(articles, field));
    };
    const auto floats = [&](std::string_view name, TField field) {
        CompareSort(name, articles, field, FloatsOf(articles, field));
    };
    texts("names", TField::PLU_NAME);
    texts("comments of 80 equal characters", TField::LABEL_COMMENT2);
    texts("groups", TField::PLU_GRP_NAME);
    texts("comments all equal", TField::LABEL_COMMENT3);
    integers("integers in order", TField::PLU_NUMB);
    integers("integers in order but for a few", TField::PLU_SCALE_NUMB);
    integers("integers in no order", TField::PR_ID);
    floats("prices, 70 different ones", TField::PLU_SELL_PRICE);
    floats("prices in no order", TField::PLU_BUY_PRICE);
}

std::size_t FoundPlainly(const TArticleTable& articles, TField field, std::string_view text) {
    std::size_t found = 0;
    for (TRowId row = 0; row < articles.RowCount(); ++row)
        found += articles.Text(row, field).find(text) != std::string_view::npos ? 1U : 0U;
    return found;
}

// From match to match, as F3 goes.
std::size_t FoundOneByOne(const TArticleTable& articles, TField field, std::string_view text) {
    std::size_t found = 0;
    std::optional<std::size_t> index = FindInColumn(articles, field, 0, text, {});
    for (; index; index = FindInColumn(articles, field, *index + 1, text, {}))
        ++found;
    return found;
}

void CompareSearch(std::string_view name, const TArticleTable& articles, TField field,
                   std::string_view text) {
    std::size_t plainly = 0;
    std::size_t oneByOne = 0;
    Compare({name, [&] { oneByOne = FoundOneByOne(articles, field, text); }},
            {"  a plain scan of the same bytes",
             [&] { plainly = FoundPlainly(articles, field, text); }},
            kSearchAtMost);
    if (plainly != oneByOne) std::printf("%zu matches, but %zu plainly\n", oneByOne, plainly);
}

void CompareSearches(const TArticleTable& articles, std::string_view order) {
    std::printf("Searching a list in %s\n\n", order.data());
    CompareSearch("names, no match", articles, TField::PLU_NAME, "тикулище"_cp1251);
    CompareSearch("names, no match of one letter", articles, TField::PLU_NAME, "ы"_cp1251);
    CompareSearch("names, about a thousand matches", articles, TField::PLU_NAME, "77"_cp1251);
    CompareSearch("comments, no match", articles, TField::LABEL_COMMENT1, "тикулище"_cp1251);
    CompareSearch("long comments, no match", articles, TField::LABEL_COMMENT2, "тикулище"_cp1251);
    CompareSearch("long comments, about a thousand matches", articles, TField::LABEL_COMMENT2,
                  "а 77"_cp1251);
}

void Run(std::int32_t count) {
    TArticleTable articles = MakeArticles(count);
    CompareSorts(articles, "the order of loading");
    CompareSearches(articles, "the order of loading");
    Shuffle(articles);
    CompareSorts(articles, "another order");
    CompareSearches(articles, "another order");
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    const bool quick = tolvane::bench::IsQuick(count, arguments);
    const std::int32_t usual = count > 1 ? std::atoi(arguments[1]) : 100000;
    tolvane::bench::Run(quick ? 5000 : usual);
}
