#include "simulator/Label.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

#include "simulator/Ean13.h"
#include "simulator/Fixed.h"

namespace tolvane::simulator {

namespace {

constexpr int kLotText = 7;
// A comment's text in a long and in a short parameter.
constexpr std::array<std::array<int, 2>, 3> kCommentTexts = {{{19, 2}, {20, 3}, {21, 6}}};
constexpr std::size_t kArticleCodeLength = 5;

std::string BarcodeOf(const TLabel& label, const TPlate& plate) {
    const std::string& code = label.text5;
    const bool digits =
        std::all_of(code.begin(), code.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (code.size() != kArticleCodeLength || !digits) return {};
    std::array<char, 16> amount{};
    std::snprintf(amount.data(), amount.size(), "%05d", label.pieces ? 1 : plate.grams);
    std::string barcode = plate.barcodePrefix + code + amount.data();
    const auto check = Ean13CheckDigit(barcode);
    return check ? barcode + *check : std::string();
}

void AddUnlessEmpty(std::vector<std::string>& texts, std::string text) {
    if (!text.empty()) texts.push_back(std::move(text));
}

}  // namespace

TLabel MakeLabel(const TArticle& article, TCodeTable table, const TPlate& plate) {
    TLabel label;
    label.number = article.number;
    AddUnlessEmpty(label.names, article.Text(0, table));
    AddUnlessEmpty(label.names, article.Text(1, table));
    for (const auto& parameters : kCommentTexts) {
        std::string text = article.Text(parameters[0], table);
        if (text.empty()) text = article.Text(parameters[1], table);
        AddUnlessEmpty(label.comments, std::move(text));
    }
    label.lot = article.Text(kLotText, table);
    if (const int days = article.BestBefore().value_or(0); days > 0)
        label.bestBefore = std::to_string(days);
    label.pieces = article.pieces.value_or(false);
    label.amount = label.pieces ? "1" : Fixed(plate.grams, 3);
    if (article.price) {
        const std::int64_t price = *article.price;
        label.price = Fixed(price, 2);
        const std::int64_t total = label.pieces ? price : (price * plate.grams + 500) / 1000;
        label.total = Fixed(total, 2);
    }
    label.text5 = article.Text(kBarcodeParameter, table);
    label.barcode = BarcodeOf(label, plate);
    return label;
}

}  // namespace tolvane::simulator
