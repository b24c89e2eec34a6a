#pragma once

#include <string>

namespace tolvane {

// Without control characters, which would leave the line.
inline std::string OnOneLine(std::string text) {
    for (char& letter : text)
        if (static_cast<unsigned char>(letter) < ' ') letter = ' ';
    return text;
}

}  // namespace tolvane
