#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "command/EventLog.h"
#include "command/Progress.h"
#include "command/ScaleJob.h"

namespace tolvane {

// One scale's way to the people and the log. Used by one thread.
class TScaleView : public TJobView {
public:
    // All parts outlive the view. `verbose`: each article is shown.
    TScaleView(TProgress& progress, TEventLog& log, bool verbose, const TScaleRec& rec);

    void Begins(std::size_t total) override;
    void Progress(std::size_t done) override;
    void Article(std::string_view what, std::int32_t number, std::string_view text) override;
    // Also tells the articles of the result that Article has not been called for.
    void Ends(const TScaleResult& result);

private:
    TProgress& progress_;
    TEventLog& log_;
    bool verbose_;
    const TScaleRec& rec_;
    std::size_t index_;
    std::size_t refused_ = 0;  // by the scale
};

// Logs what became of a scale, and the articles that it does not get: those refused before
// anything was sent, which come before the `refused` others, and those that are left out.
void LogResult(TEventLog& log, const TScaleResult& result, std::size_t refused);

}  // namespace tolvane
