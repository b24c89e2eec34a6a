#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "config/TypesUnit.h"
#include "upload/ProgrammingMode.h"

namespace tolvane {

// One text of an article as a scale would hold it. Code page 1251.
struct TShownText {
    std::int32_t parameter = 0;
    std::string label{};  // as in the scale's errors
    std::string wanted{};
    std::string shown{};  // cut to the scale's length and brought through its code table
    std::string lost{};   // letters that the scale would show as others
    bool isCut = false;
};

// The texts that a scale of this kind takes, in the order of sending.
std::vector<TShownText> ShownTexts(const TPLUD& plu, std::int32_t uncutScaleNumber,
                                   const TScaleRec& rec, const TScaleVersion& version);

}  // namespace tolvane
