#include "command/Columns.h"

#include <algorithm>

namespace tolvane {
namespace {

constexpr std::string_view kCut = "...";

bool BeginsLetter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

}  // namespace

std::size_t Columns(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), &BeginsLetter));
}

std::string Fitted(const std::string& text, std::size_t columns) {
    if (Columns(text) <= columns) return text;
    const std::size_t kept = columns - std::min(columns, kCut.size());
    std::size_t letters = 0;
    std::size_t end = 0;
    while (end < text.size() && (!BeginsLetter(text[end]) || letters++ < kept))
        ++end;
    return text.substr(0, end) + std::string(kCut.substr(0, columns));
}

}  // namespace tolvane
