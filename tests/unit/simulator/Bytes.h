#pragma once

#include <sstream>
#include <string>

#include "simulator/Frame.h"

namespace tolvane::simulator {

// "04 0D 14" as bytes.
inline TBytes Bytes(const std::string& hex) {
    std::istringstream text(hex);
    TBytes bytes;
    for (int byte = 0; text >> std::hex >> byte;)
        bytes.push_back(static_cast<std::uint8_t>(byte));
    return bytes;
}

// `count` times the same byte, to be put between two pieces of hexadecimal text.
inline std::string Repeat(int count, const std::string& hex) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += " " + hex;
    return text + " ";
}

// What a new EVL scale (version "1.04", 4000 articles, label mode 2, address 0) reads and says.
inline const std::string kAskVersion = "04 0D 14 5C 5C 03";
inline const std::string kVersion =
    "02 0D 14 5C 14 45 42 44 48 14 14 14 14 B4 23 14 14 14 14 14 16 D0 03";
inline const std::string kAskPrgMode = "04 0D 14 4A 4A 03";
inline const std::string kPrgMode = "02 0D 14 4A 14 4A 03";
inline const std::string kAskWeightMode = "04 0D 14 50 50 03";
inline const std::string kWeightMode = "02 0D 14 50 14 50 03";

}  // namespace tolvane::simulator
