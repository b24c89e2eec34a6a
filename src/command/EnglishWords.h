#pragma once

#include <string>
#include <string_view>

#include "text/Failure.h"

namespace tolvane {

// All that the command says is English, but the layers below tell of a lack of memory in the
// module's language. A text (code page 1251) with those words in English.
inline std::string InEnglish(std::string text) {
    constexpr std::string_view kEnglish = "not enough memory";
    const std::size_t at = text.find(kOutOfMemory);
    if (at != std::string::npos) text.replace(at, kOutOfMemory.size(), kEnglish);
    return text;
}

}  // namespace tolvane
