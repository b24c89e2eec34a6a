#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane {

// A dotted IPv4 address, most significant byte first: four decimal numbers 0 to 255, leading zeros
// and blanks around each allowed ("192.168.001. 10"). Nothing when the text is anything else; names
// are never looked up.
std::optional<std::uint32_t> ParseIpV4(std::string_view text);

// "192.168.1.10", of an address with its most significant byte first.
std::string IpV4Text(std::uint32_t address);

// The pieces between the dots, blanks included; the whole text when it has no dot.
std::vector<std::string_view> SplitAtDots(std::string_view text);

}  // namespace tolvane
