#pragma once

#include <string>
#include <vector>

#include "simulator/ScaleState.h"

namespace tolvane::simulator {

// What lies on the scale, and what its barcodes begin with.
struct TPlate {
    int grams = 500;                   // 0 to kMostGrams
    std::string barcodePrefix = "20";  // two digits

    static constexpr int kMostGrams = 99999;
};

// One printed label, as texts in UTF-8. What an article has not got is empty.
struct TLabel {
    int number = 0;
    std::vector<std::string> names{};
    std::vector<std::string> comments{};
    std::string lot{};
    std::string bestBefore{};  // days
    bool pieces = false;
    std::string price{};   // of a kilogram or a piece
    std::string amount{};  // kilograms, or 1
    std::string total{};
    std::string barcode{};  // thirteen digits
    std::string text5{};    // the article's own text for the barcode
};

// The protocol gives a scale only a text for the barcode; what it prints of it is set in the scale.
// Here five digits become an EAN-13 as shops use it: the prefix, the five digits, grams or pieces
// in five digits, the check digit. Any other text makes no barcode.
TLabel MakeLabel(const TArticle& article, TCodeTable table, const TPlate& plate);

}  // namespace tolvane::simulator
