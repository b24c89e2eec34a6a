#pragma once

#include <string>
#include <string_view>

namespace tolvane {

// The characters of a host's text, zero bytes included; a null pointer is the empty text. Reads
// nothing in front of the length.
std::string ReadHostText(const char* text);

// A text for the host: a constant on the process heap, made once and never freed, so that it
// outlives the module. Each call makes a new block: a caller that wants one block keeps the
// pointer. Throws std::bad_alloc.
const char* MakeHostText(std::string_view text);

}  // namespace tolvane
