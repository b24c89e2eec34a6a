#pragma once

#include <string>
#include <vector>

#include "config/TypesUnit.h"
#include "upload/ProgrammingMode.h"
#include "upload/ScalePass.h"

namespace tolvane {

class TArticleWriter;

// Writes articles into one scale: the price and the texts that the scale's model and label mode
// take. Blocks for all exchanges and pauses; runs on the run's thread.
class TWritePass {
public:
    // `rec` outlives the pass.
    TWritePass(const TPassParts& parts, const TScaleRec& rec);

    // The failure's text (code page 1251), with the article at which the pass ended.
    std::string LastError;

    // Writes the article lines in order. Skips an incomplete line, an article whose number the
    // scale does not have, and an article without a price. Returns false after a failure or a stop
    // and leaves the text in LastError; the scale then stays in programming mode. Throws only
    // std::bad_alloc, when memory is too short for the text.
    bool Run(const std::vector<std::string>& lines);

private:
    void WriteLines(const std::vector<std::string>& lines);
    void LogVersion(const TScaleVersion& version);
    // Writes plu_; returns false for an article that is skipped.
    bool WriteArticle(TArticleWriter& writer);

    TPassParts parts_;
    const TScaleRec& rec_;
    TProgrammingMode mode_;
    TPLUD plu_;  // the article that is being written
};

}  // namespace tolvane
