#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "config/TypesUnit.h"
#include "scale/DevElicomScaleUnit.h"
#include "text/Failure.h"
#include "upload/LabelTexts.h"
#include "upload/ProgrammingMode.h"

namespace tolvane {

// The scale has answered a command with an error code of its own: the link works, and other
// articles may be accepted.
class TScaleRefusal : public TFailure {
public:
    using TFailure::TFailure;
};

// Throws TScaleRefusal when the scale has sent an error code, else TFailure.
[[noreturn]] void FailCommand(const TElicomScale& scale, std::string_view command,
                              std::int32_t errCode);

// Writes single articles into a scale in programming mode: the price and the texts that its model
// and label mode take. Blocks for the exchanges and their pauses.
class TArticleWriter {
public:
    // `scale` and `rec` outlive the writer; `rec` is the scale's record in the configuration.
    TArticleWriter(TElicomScale& scale, const TScaleRec& rec, const TScaleVersion& version)
        : scale_(scale), rec_(rec), maxPlu_(version.maxPlu), mode_(version.mode) {}

    // Cuts the article's number to the digits that the scale has. Returns whether the scale has an
    // article of this number.
    bool CutNumber(TPLUD& plu) const;
    // Writes the article, whose number is cut and whose price is above 0. Throws TScaleRefusal
    // when the scale refuses a command, TFailure for all else; both name the command. `goesOn` is
    // asked before each text; when it says no, the article stays as far as it is, and the result
    // is false.
    bool Write(const TPLUD& plu, std::int32_t uncutScaleNumber,
               const std::function<bool()>& goesOn = {});

private:
    void WritePrice(const TPLUD& plu);
    void WriteText(const TLabelText& text, const TPLUD& plu, std::int32_t uncutScaleNumber);

    TElicomScale& scale_;
    const TScaleRec& rec_;
    std::int32_t maxPlu_;
    std::int32_t mode_;
};

}  // namespace tolvane
