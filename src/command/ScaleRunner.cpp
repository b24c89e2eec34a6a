#include "command/ScaleRunner.h"

#include <chrono>
#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "command/EnglishWords.h"
#include "command/LinkFactory.h"
#include "command/NamedFile.h"
#include "command/Progress.h"
#include "command/ScaleLanes.h"
#include "command/ScaleView.h"
#include "command/Shop.h"
#include "command/Trace.h"
#include "system/SystemError.h"
#include "text/Cp1251.h"
#include "text/Failure.h"

namespace tolvane {
namespace {

constexpr TMilliseconds kPoll{100};

// Links of one scale, through the trace.
class TTracedLinks : public TTracingFactory {
public:
    TTracedLinks(const TLinkFactory& links, const TScaleRec& rec, TTraceFile& trace)
        : TTracingFactory(links_, trace), links_(links) {
        SetScale(rec);
    }

private:
    TLinkFactory links_;
};

// The links themselves, or through the trace.
std::unique_ptr<TScaleFactory> FactoryFor(const TScaleRec& rec, const TLinkFactory& links,
                                          TTraceFile* trace) {
    if (trace == nullptr) return std::make_unique<TLinkFactory>(links);
    return std::make_unique<TTracedLinks>(links, rec, *trace);
}

void CheckStateFolder(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw TUsageError("The state folder " + Utf8Path(folder) + " cannot be made: " +
                          ToUtf8(SystemErrorText(error)) + ". Name another one with --state.");
}

// Null without a name.
std::unique_ptr<TTraceFile> OpenTrace(const std::filesystem::path& file) {
    if (file.empty()) return nullptr;
    try {
        return std::make_unique<TTraceFile>(file, [] { return std::chrono::system_clock::now(); });
    } catch (const TFailure& failure) {
        throw TUsageError(ToUtf8(failure.Text()));
    }
}

// Ends the jobs when the user or the deadline wants it.
class TStopWatch {
public:
    TStopWatch(const TCommandOptions& options, TWorld& world, TProgress& progress)
        : world_(world), progress_(progress), deadline_(options.deadline) {}

    void Look(TRunStop& stop, TScaleResults& results) const {
        if (!results.interrupted && world_.interrupts() > 0) {
            results.interrupted = true;
            progress_.Tell(
                "Interrupted: each scale ends with the article in work. Again: ends at once.");
        }
        if (!results.deadline && deadline_ && world_.clock.Now() - world_.start >= *deadline_) {
            results.deadline = true;
            progress_.Tell("The deadline has passed: each scale ends with the article in work.");
        }
        if (results.interrupted || results.deadline) stop.Abandon();
    }

private:
    TWorld& world_;
    TProgress& progress_;
    std::optional<std::chrono::seconds> deadline_;
};

// All jobs and what they share.
class TScalesRun {
public:
    TScalesRun(const TCommandOptions& options, TWorld& world,
               const std::vector<TListedScale>& scales, const TMakeJob& makeJob)
        : options_(options),
          world_(world),
          scales_(scales),
          makeJob_(makeJob),
          progress_(world.err, options.progress, world.terminal && !options.verbose, world.clock,
                    world.columns),
          links_(world.clock, options.serialPorts, options.udpPort),
          trace_(OpenTrace(options.trace)) {
        results_.scales.resize(scales.size());
        for (const TListedScale& scale : scales)
            views_.push_back(
                std::make_unique<TScaleView>(progress_, world.log, options.verbose, scale.rec));
    }

    TScaleResults Run() {
        const TStopWatch watch(options_, world_, progress_);
        watch.Look(stop_, results_);
        TScaleLanes lanes(Tasks(), options_.jobs);
        while (!lanes.WaitFor(kPoll)) {
            watch.Look(stop_, results_);
            progress_.Draw();
        }
        progress_.Draw();
        if (trace_)
            if (const auto failure = trace_->TakeFailure()) {
                results_.traceFailed = true;
                world_.err << "tolvane: " << ToUtf8(*failure) << std::endl;
            }
        return std::move(results_);
    }

private:
    std::vector<TScaleLanes::TTask> Tasks() {
        std::vector<TScaleLanes::TTask> tasks;
        for (std::size_t i = 0; i < scales_.size(); ++i) {
            if (scales_[i].IsUsable()) {
                tasks.push_back({.needs = NeedsOf(i), .run = [this, i] {
                                     results_.scales[i] = ResultOf(i);
                                     Tell(i);
                                 }});
            } else {
                results_.scales[i] = UnusableResult(scales_[i]);
                Tell(i);
            }
        }
        return tasks;
    }
    // Two names may lead to one serial port, which only the locks know.
    std::vector<std::string> NeedsOf(std::size_t i) const {
        std::vector<std::string> needs = tolvane::NeedsOf(scales_[i].rec);
        for (const TComputerLock& lock : links_.LocksOf(scales_[i].rec))
            needs.push_back(lock.name);
        return needs;
    }
    // A job's own failures are in its result; what is left is the memory.
    TScaleResult ResultOf(std::size_t i) {
        const TScaleRec& rec = scales_[i].rec;
        try {
            const auto factory = FactoryFor(rec, links_, trace_.get());
            const TJobParts parts{.factory = *factory,
                                  .clock = world_.clock,
                                  .stop = stop_,
                                  .view = *views_[i],
                                  .stateFolder = options_.state,
                                  .lockWait = options_.lockWait,
                                  .locks = links_.LocksOf(rec)};
            return makeJob_(parts, rec)->Run();
        } catch (const std::exception& error) {
            return {
                .rec = rec, .outcome = TScaleOutcome::Failed, .error = InEnglish(MessageOf(error))};
        }
    }
    void Tell(std::size_t i) {
        TScaleResult& result = results_.scales[i];
        try {
            views_[i]->Ends(result);
        } catch (const std::exception& error) {
            result.outcome = TScaleOutcome::Failed;
            result.error += (result.error.empty() ? "" : "; ") + InEnglish(MessageOf(error));
        }
    }

    const TCommandOptions& options_;
    TWorld& world_;
    const std::vector<TListedScale>& scales_;
    const TMakeJob& makeJob_;
    TProgress progress_;
    TLinkFactory links_;
    std::unique_ptr<TTraceFile> trace_;
    TRunStop stop_;
    TScaleResults results_;
    std::vector<std::unique_ptr<TScaleView>> views_;
};

}  // namespace

TScaleResults RunScales(const TCommandOptions& options, TWorld& world,
                        const std::vector<TListedScale>& scales, const TMakeJob& makeJob) {
    CheckStateFolder(options.state);
    return TScalesRun(options, world, scales, makeJob).Run();
}

}  // namespace tolvane
