#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tolvane {

enum class TSeverity : std::uint8_t {
    Error,    // something does not reach a scale, or reaches it wrong
    Warning,  // it does, but not as it is in the database
};

// Something that would go wrong. Texts are code page 1251.
struct TProblem {
    TSeverity severity = TSeverity::Error;
    std::int32_t scale = 0;   // 0: of all
    std::int32_t number = 0;  // of the article, not cut; 0: of the scale itself
    std::string name{};       // of the article or the scale
    std::string problem{};
    std::string cure{};
};

inline std::string Quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

}  // namespace tolvane
