#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tolvane::simulator {

enum class TModel { Evl, Ets, S300 };

struct TModelProperties {
    std::string_view name;
    std::string_view versionText;  // the default reply of this model
    int capacity;                  // default highest article number
    int longTextLength;            // of the text parameters 19 to 22
};

inline constexpr std::array<TModelProperties, 3> kModels = {{
    {"EVL", "1.04", 4000, 31},
    {"ETS", "2.10", 9999, 63},
    {"S300", "3.02", 9999, 63},
}};

constexpr const TModelProperties& PropertiesOf(TModel model) {
    return kModels[static_cast<std::size_t>(model)];
}
std::optional<TModel> ModelByName(std::string_view name);

// Command codes.
inline constexpr std::uint8_t kSetPrgMode = 0x36;
inline constexpr std::uint8_t kSetWeightMode = 0x3C;
inline constexpr std::uint8_t kGetVersion = 0x48;
inline constexpr std::uint8_t kSetPrice = 0x49;
inline constexpr std::uint8_t kSetPriceWeight = 0x4A;
inline constexpr std::uint8_t kSetPriceC = 0x4B;
inline constexpr std::uint8_t kSetParam = 0x4C;

struct TCommandName {
    std::uint8_t code;
    std::string_view name;
};

inline constexpr std::array<TCommandName, 7> kCommands = {{
    {kSetPrgMode, "SetPrgMode"},
    {kSetWeightMode, "SetWeightMode"},
    {kGetVersion, "GetVersion"},
    {kSetPrice, "SetPrice"},
    {kSetPriceWeight, "SetPriceWeight"},
    {kSetPriceC, "SetPriceC"},
    {kSetParam, "SetParam"},
}};

// A command's name, or its code as "0x5A" when it has none.
std::string CommandText(std::uint8_t code);
// The code of either; nothing for any other text.
std::optional<std::uint8_t> CommandByText(std::string_view text);

// The first data byte of every reply.
enum class TRefusal : std::uint8_t {
    None = 0,
    UnknownCommand = 1,
    WrongLength = 2,       // too few or too many data bytes, or the first of them is not 0
    NotProgramming = 3,    // an article command in weighing mode
    WrongNumber = 4,       // article number 0 or above the capacity
    WrongDecimal = 5,      // a packed decimal byte with a digit above 9
    OutOfRange = 6,        // piece flag above 1, tare above 99, label above 20
    UnknownParameter = 7,  // text parameter above 31
    WrongTextLength = 8,   // not the length of this parameter, or not the length that came
    WrongChecksum = 9,     // when the scale is set to answer it
    WrongAddress = 10      // when the scale is set to answer it
};

// The length of a text parameter (0 to 31); nothing for 4 and 5, which have any length.
std::optional<int> TextLength(TModel model, int parameter);
inline constexpr int kHighestParameter = 31;
inline constexpr int kBestBeforeParameter = 4;
inline constexpr int kBarcodeParameter = 5;

}  // namespace tolvane::simulator
