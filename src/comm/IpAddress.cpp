#include "comm/IpAddress.h"

#include <charconv>
#include <system_error>

namespace tolvane {
namespace {

constexpr int kGroups = 4;
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

std::optional<std::uint32_t> ParseIpV4(std::string_view text) {
    std::uint32_t address = 0;
    for (int group = 0; group < kGroups; ++group) {
        const std::size_t dot = text.find('.');
        if ((dot == std::string_view::npos) != (group == kGroups - 1)) return std::nullopt;
        const auto number = ParseGroup(text.substr(0, dot));
        if (!number) return std::nullopt;
        address = address << 8 | *number;
        text.remove_prefix(dot == std::string_view::npos ? text.size() : dot + 1);
    }
    return address;
}

}  // namespace tolvane
