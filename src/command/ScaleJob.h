#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command/RunLock.h"
#include "command/ScaleArticles.h"
#include "command/ScaleResult.h"
#include "scale/DevElicomScaleUnit.h"
#include "system/Clock.h"
#include "upload/RunView.h"
#include "upload/ScaleFactory.h"

namespace tolvane {

// Where a job reports how far it is. Called on the job's thread.
class TJobView {
public:
    virtual ~TJobView() = default;
    // The scale answers; `total` articles are to be sent.
    virtual void Begins(std::size_t total) = 0;
    virtual void Progress(std::size_t done) = 0;
    // "written", "deleted" or "refused": an article, by its number in the scale. Texts are code
    // page 1251.
    virtual void Article(std::string_view what, std::int32_t number, std::string_view text) = 0;
};

// What a job works with. All parts outlive the job.
struct TJobParts {
    TScaleFactory& factory;
    TClock& clock;
    // Abandon ends the job between two articles; the scale is then put back to weighing.
    const TRunStop& stop;
    TJobView& view;
    std::filesystem::path stateFolder;  // of the locks and ledgers
    TMilliseconds lockWait;             // for another run that works on the scale
    std::vector<TComputerLock> locks{};
};

// Work on one scale: takes its lock, opens it, does what the kind of job does, and puts it back to
// weighing. Blocks for all exchanges and pauses. Throws nothing that concerns the scale: the result
// tells it.
class TScaleJob {
public:
    // `rec` is copied.
    TScaleJob(const TJobParts& parts, const TScaleRec& rec);
    TScaleJob(const TScaleJob&) = delete;
    TScaleJob& operator=(const TScaleJob&) = delete;
    virtual ~TScaleJob() = default;

    TScaleResult Run();

protected:
    // Before the scale is opened, with its lock held. What this throws ends the job.
    virtual void Begin() {}
    // With the scale in programming mode. A failure of the link is thrown and ends the job.
    virtual void Work(TElicomScale& scale, const TScaleVersion& version) = 0;
    // The scale answers, and is told next to go into programming mode. When this throws, it is not.
    virtual void Entering() {}
    // A reply of the scale did not fit its request. May be called twice; what this throws joins the
    // result's error.
    virtual void ReplyDidNotFit() {}
    // With the scale closed and the result complete. What this throws joins the result's error.
    virtual void End() {}
    // Instead of all that, when another run has the scale or this one was stopped before it.
    virtual void NotBegun() {}
    // Whether the scale has to be put into programming mode for this job.
    virtual bool NeedsProgramming() const { return true; }

    bool IsStopped() const { return parts_.stop.IsStopped(); }
    // Whether the scale may be in programming mode, by its last answer to this job; nothing when it
    // has not told.
    std::optional<bool> MayBeProgramming() const { return mayBeProgramming_; }

    TJobParts parts_;
    TScaleRec rec_;
    TScaleResult result_;

private:
    std::optional<bool> mayBeProgramming_;

    void WithLock();
    void InScale();
    bool HasStopped();
    void LookAtReplies(const TElicomScale& scale);
    void InOpenScale(TElicomScale& scale);
    // Puts the scale into weighing mode, where it should be, and measures how long that takes.
    // False when it does not answer, twice.
    bool FirstExchange(TElicomScale& scale);
    static void DropLateReplies(TElicomScale& scale);
    void InProgramming(TElicomScale& scale);
    // Sends nothing when it is stopped before the scale is told to go into programming mode.
    void WorkInMode(TElicomScale& scale, TProgrammingMode& mode);
    void AddError(const std::string& error);
};

}  // namespace tolvane
