#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tolvane::simulator {

// How the scale's display interprets text bytes. Windows is code page 1251; Pc866 the DOS code page
// 866; Pc855 the scales' DOS Cyrillic, with the letters А to я in one row from 0x80 to 0xBF.
enum class TCodeTable { Windows, Pc855, Pc866 };

// "win", "pc855", "pc866".
std::string_view CodeTableName(TCodeTable table);
std::optional<TCodeTable> CodeTableByName(std::string_view name);

// The text as UTF-8. Drops zero bytes, which are padding, and trailing blanks; a byte without a
// character becomes U+FFFD.
std::string DecodeText(std::span<const std::uint8_t> bytes, TCodeTable table);

}  // namespace tolvane::simulator
