#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tolvane {

// A dotted IPv4 address, most significant byte first: four decimal numbers 0 to 255, leading zeros
// and blanks around each allowed ("192.168.001. 10"). Nothing when the text is anything else; names
// are never looked up.
std::optional<std::uint32_t> ParseIpV4(std::string_view text);

}  // namespace tolvane
