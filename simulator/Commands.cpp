#include "simulator/Commands.h"

#include "simulator/Hex.h"

namespace tolvane::simulator {

namespace {

// One row per range of parameters with the same length. kFree stands for any length, kLong for the
// model's longTextLength.
constexpr int kFree = -1;
constexpr int kLong = -2;
struct TLengthRow {
    int last;
    int length;
};
constexpr std::array<TLengthRow, 6> kTextLengths = {{
    {3, 31},
    {5, kFree},
    {18, 31},
    {22, kLong},
    {23, 31},
    {kHighestParameter, 15},
}};

}  // namespace

std::optional<TModel> ModelByName(std::string_view name) {
    for (std::size_t i = 0; i < kModels.size(); ++i) {
        if (kModels[i].name == name) return static_cast<TModel>(i);
    }
    return std::nullopt;
}

std::string CommandText(std::uint8_t code) {
    for (const TCommandName& command : kCommands) {
        if (command.code == code) return std::string(command.name);
    }
    return "0x" + ToHex(std::span(&code, 1));
}

std::optional<std::uint8_t> CommandByText(std::string_view text) {
    for (const TCommandName& command : kCommands) {
        if (command.name == text) return command.code;
    }
    const auto byte = text.starts_with("0x") ? FromHex(text.substr(2)) : std::nullopt;
    if (!byte || byte->size() != 1) return std::nullopt;
    return byte->front();
}

std::optional<int> TextLength(TModel model, int parameter) {
    for (const TLengthRow& row : kTextLengths) {
        if (parameter > row.last) continue;
        if (row.length == kFree) return std::nullopt;
        return row.length == kLong ? PropertiesOf(model).longTextLength : row.length;
    }
    return std::nullopt;
}

}  // namespace tolvane::simulator
