#include "upload/LabelTexts.h"

#include <array>
#include <cstddef>

#include "text/Cp1251.h"
#include "text/Numbers.h"

namespace tolvane {
namespace {

std::string LabelName1(const TPLUD& plu, std::int32_t) {
    return std::string(Trim(plu.LabelName1));
}
std::string LabelName2(const TPLUD& plu, std::int32_t) {
    return std::string(Trim(plu.LabelName2));
}
std::string Comment1(const TPLUD& plu, std::int32_t) {
    return std::string(Trim(plu.Comment1));
}
std::string Comment2(const TPLUD& plu, std::int32_t) {
    return std::string(Trim(plu.Comment2));
}
std::string Comment3(const TPLUD& plu, std::int32_t) {
    return std::string(Trim(plu.Comment3));
}
std::string ShipmentNumber(const TPLUD& plu, std::int32_t) {
    return std::string(Trim(plu.ShipmentNumber));
}
std::string BestBefore(const TPLUD& plu, std::int32_t) {
    return '\x01' + ValueToBytesText(plu.BestBeforeDays);
}
std::string Barcode(const TPLUD& plu, std::int32_t) {
    return std::string(Trim(plu.Barcode).substr(0, 8));
}
std::string ScaleNumber(const TPLUD&, std::int32_t uncutScaleNumber) {
    return std::to_string(uncutScaleNumber);
}
std::string ArticleNumber(const TPLUD& plu, std::int32_t) {
    return std::to_string(plu.ArticleNumber);
}

constexpr std::string_view kComment1 = "Етикет1"_cp1251;
constexpr std::string_view kComment2 = "Етикет2"_cp1251;
constexpr std::string_view kComment3 = "Етикет3"_cp1251;

// Sets of modes.
constexpr std::uint8_t kNone = 0b0000;
constexpr std::uint8_t kAll = 0b1111;
constexpr std::uint8_t kOnly2 = 0b0100;
constexpr std::uint8_t k0And2 = 0b0101;
constexpr std::uint8_t kAbove0 = 0b1110;
constexpr std::uint8_t kAbove1 = 0b1100;

constexpr std::array<TLabelText, 13> kLabelTexts = {{
    // clang-format off
    // parameter, label, raw, text, EVL, ETS, S300, others
    {0,  "Име1"_cp1251,     false, &LabelName1,     kAll,   kAll,  kAll,    kAll},
    {4,  "Годност"_cp1251,  true,  &BestBefore,     kAll,   kAll,  kAll,    kAll},
    {5,  "Баркод"_cp1251,   false, &Barcode,        kAll,   kAll,  kAll,    kAll},
    {1,  "Име2"_cp1251,     false, &LabelName2,     k0And2, kAll,  kAbove0, kNone},
    {2,  kComment1,         false, &Comment1,       k0And2, kAll,  kAbove0, kNone},
    {3,  kComment2,         false, &Comment2,       k0And2, kAll,  kAbove0, kNone},
    {6,  kComment3,         false, &Comment3,       kOnly2, kAll,  kAbove0, kNone},
    {7,  "Партида"_cp1251,  false, &ShipmentNumber, kOnly2, kAll,  kAbove0, kNone},
    {14, "КодВезна"_cp1251, false, &ScaleNumber,    kNone,  kAll,  kAbove1, kNone},
    {15, "КодАрт"_cp1251,   false, &ArticleNumber,  kNone,  kAll,  kAbove1, kNone},
    {19, kComment1,         false, &Comment1,       kNone,  kNone, kOnly2,  kNone},
    {20, kComment2,         false, &Comment2,       kNone,  kNone, kOnly2,  kNone},
    {21, kComment3,         false, &Comment3,       kNone,  kNone, kOnly2,  kNone},
    // clang-format on
}};

std::uint8_t ModesOf(const TLabelText& text, std::int32_t scaleType) {
    switch (scaleType) {
        case kScaleTypeEvl:
            return text.evlModes;
        case kScaleTypeEts:
            return text.etsModes;
        case kScaleTypeS300:
            return text.s300Modes;
        default:
            return text.otherModes;
    }
}

}  // namespace

std::span<const TLabelText> LabelTexts() {
    return kLabelTexts;
}

bool IsSent(const TLabelText& text, std::int32_t scaleType, std::int32_t mode) {
    return ((ModesOf(text, scaleType) >> (mode & 3)) & 1) != 0;
}

std::string ValueToBytesText(std::int32_t value) {
    const auto bits = static_cast<std::uint32_t>(value);
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto byte = static_cast<char>(static_cast<unsigned char>(bits >> shift));
        if (byte != '\0' || !text.empty() || shift == 0) text += byte;
    }
    return text;
}

std::int32_t PluTail(std::int32_t scaleNumber, std::int32_t maxPlu) {
    const std::string number = std::to_string(scaleNumber);
    const std::size_t digits = std::to_string(maxPlu).size();
    const std::size_t start = number.size() > digits ? number.size() - digits : 0;
    return ParseIntegerOr(std::string_view(number).substr(start), 0);
}

}  // namespace tolvane
