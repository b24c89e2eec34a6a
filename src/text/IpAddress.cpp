#include "text/IpAddress.h"

#include <charconv>
#include <system_error>

namespace tolvane {
namespace {

constexpr std::size_t kGroups = 4;
constexpr std::uint32_t kLargestGroup = 255;

std::string_view WithoutBlanks(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

std::optional<std::uint32_t> ParseGroup(std::string_view text) {
    text = WithoutBlanks(text);
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number > kLargestGroup) return std::nullopt;
    return number;
}

}  // namespace

std::vector<std::string_view> SplitAtDots(std::string_view text) {
    std::vector<std::string_view> pieces;
    for (;;) {
        const std::size_t dot = text.find('.');
        pieces.push_back(text.substr(0, dot));
        if (dot == std::string_view::npos) return pieces;
        text.remove_prefix(dot + 1);
    }
}

std::optional<std::uint32_t> ParseIpV4(std::string_view text) {
    const std::vector<std::string_view> groups = SplitAtDots(text);
    if (groups.size() != kGroups) return std::nullopt;
    std::uint32_t address = 0;
    for (const std::string_view group : groups) {
        const auto number = ParseGroup(group);
        if (!number) return std::nullopt;
        address = address << 8 | *number;
    }
    return address;
}

std::string IpV4Text(std::uint32_t address) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += std::to_string(address >> shift & kLargestGroup) + (shift > 0 ? "." : "");
    return text;
}

}  // namespace tolvane
