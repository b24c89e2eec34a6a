#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "upload/ProgrammingMode.h"
#include "upload/ScalePass.h"

namespace tolvane {

// Deletes articles from one scale: sets the price to zero and clears the name. Blocks for all
// exchanges and pauses; runs on the run's thread.
class TDeletePass {
public:
    explicit TDeletePass(const TPassParts& parts);

    // The failure's text, code page 1251.
    std::string LastError;

    // Deletes the articles of the lines, or every article of the scale when there are no lines.
    // Skips an incomplete line and an article whose number the scale does not have. Returns false
    // after a failure or a stop and leaves the text in LastError. The scale stays in programming
    // mode only after a stop. Throws only std::bad_alloc, when memory is too short for the text or
    // for taking the scale back.
    bool Run(const std::vector<std::string>& lines);

private:
    // These return false when the user has stopped the pass or the run was abandoned, and throw
    // when something fails.
    bool Delete(const std::vector<std::string>& lines);
    bool DeleteEverything(std::int32_t maxPlu);
    bool DeleteListed(const std::vector<std::string>& lines, std::int32_t maxPlu);
    // Does nothing for a line that is to be skipped.
    void DeleteLine(const std::string& line, std::int32_t maxPlu);

    TPassParts parts_;
    TProgrammingMode mode_;
};

}  // namespace tolvane
