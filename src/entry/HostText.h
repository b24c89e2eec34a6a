#pragma once

#include <string>
#include <string_view>

namespace tolvane {

// The characters of a host's text, whatever they are; a null pointer is the empty text. Reads
// nothing in front of the length.
std::string ReadHostText(const char* text);

// A text for the host: a constant on the process heap, made once and never freed, so that it
// outlives the module. The same place in the code gets the same block at every call only if it
// keeps the pointer. Throws std::bad_alloc.
const char* MakeHostText(std::string_view text);

}  // namespace tolvane
