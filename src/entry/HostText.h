#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace tolvane {

// The characters of a host's text, zero bytes included; a null pointer is the empty text. Reads
// nothing in front of the length.
inline std::string ReadHostText(const char* text) {
    if (text == nullptr) return {};
    std::int32_t length = 0;
    std::memcpy(&length, text - sizeof length, sizeof length);
    return length > 0 ? std::string(text, static_cast<std::size_t>(length)) : std::string();
}

// Whether the text can be read from its length to its last character, or is a null pointer.
bool IsHostText(const char* text) noexcept;

// A text for the host: a constant on the process heap, made once and never freed, so that it
// outlives the module. Each call makes a new block: a caller that wants one block keeps the
// pointer. Throws std::bad_alloc.
const char* MakeHostText(std::string_view text);

}  // namespace tolvane
