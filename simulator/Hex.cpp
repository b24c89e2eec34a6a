#include "simulator/Hex.h"

namespace tolvane::simulator {

namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";

std::optional<unsigned> Digit(char c) {
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
    return std::nullopt;
}

}  // namespace

std::string ToHex(std::span<const std::uint8_t> bytes, std::string_view separator) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        if (!text.empty()) text += separator;
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0x0F];
    }
    return text;
}

std::optional<TBytes> FromHex(std::string_view text) {
    TBytes bytes;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == ' ') {
            ++i;
            continue;
        }
        const std::optional<unsigned> high = Digit(text[i]);
        const std::optional<unsigned> low = i + 1 < text.size() ? Digit(text[i + 1]) : std::nullopt;
        if (!high || !low) return std::nullopt;
        bytes.push_back(static_cast<std::uint8_t>(*high << 4 | *low));
        i += 2;
    }
    return bytes;
}

}  // namespace tolvane::simulator
