#include "command/ScaleRunner.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "command/EventLog.h"
#include "command/LinkFactory.h"
#include "command/Progress.h"
#include "command/ScaleLanes.h"
#include "command/Shop.h"
#include "command/Trace.h"
#include "command/UtcTime.h"
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

// One scale's way to the people and the log.
class TScaleView : public TJobView {
public:
    // `verbose`: each article is shown.
    TScaleView(TProgress& progress, TEventLog& log, bool verbose, const TScaleRec& rec)
        : progress_(progress), log_(log), verbose_(verbose), rec_(rec), index_(progress.Add(rec)) {}

    void Begins(std::size_t total) override {
        progress_.Begins(index_, total);
        log_.Write("connected", {Scale(), {"articles", static_cast<std::int64_t>(total)}});
    }
    void Progress(std::size_t done) override { progress_.Done(index_, done); }
    void Article(std::string_view what, std::int32_t number, std::string_view text) override {
        if (verbose_)
            progress_.Says(index_, std::to_string(number) + " " + std::string(what) +
                                       (text.empty() ? "" : ": " + ToUtf8(text)));
        log_.Write(std::string(what),
                   {Scale(), {"number", std::int64_t{number}}, {"text", ToUtf8(text)}});
    }
    void Ends(const TScaleResult& result) {
        progress_.Ends(index_, result);
        log_.Write("scale", {Scale(),
                             {"name", ToUtf8(rec_.ScaleName.View())},
                             {"outcome", std::string(OutcomeName(result.outcome))},
                             {"written", static_cast<std::int64_t>(result.written)},
                             {"unchanged", static_cast<std::int64_t>(result.unchanged)},
                             {"deleted", static_cast<std::int64_t>(result.deleted)},
                             {"refused", static_cast<std::int64_t>(result.refused.size())},
                             {"pending", static_cast<std::int64_t>(result.pending)},
                             {"mayBeProgramming", result.mayBeProgramming},
                             {"error", ToUtf8(result.error)}});
    }

private:
    std::pair<std::string, TCell> Scale() const { return {"scale", std::int64_t{rec_.ScaleNumb}}; }

    TProgress& progress_;
    TEventLog& log_;
    bool verbose_;
    const TScaleRec& rec_;
    std::size_t index_;
};

// A job's own failures are in its result; what is left is the memory.
TScaleResult ResultOf(const TJobParts& parts, const TScaleRec& rec, const TMakeJob& makeJob) {
    try {
        return makeJob(parts, rec)->Run();
    } catch (const std::exception& error) {
        return {.rec = rec, .outcome = TScaleOutcome::Failed, .error = MessageOf(error)};
    }
}

// The links themselves, or through the trace.
std::unique_ptr<TScaleFactory> FactoryFor(const TScaleRec& rec, const TLinkFactory& links,
                                          std::optional<TTraceFile>& trace) {
    if (!trace) return std::make_unique<TLinkFactory>(links);
    return std::make_unique<TTracedLinks>(links, rec, *trace);
}

void CheckStateFolder(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    const std::u8string name = folder.u8string();
    if (error)
        throw TUsageError("The state folder " + std::string(name.begin(), name.end()) +
                          " cannot be made: " + error.message() +
                          ". Name another one with --state.");
}

void OpenTrace(const std::filesystem::path& file, std::optional<TTraceFile>& trace) {
    if (file.empty()) return;
    try {
        trace.emplace(file, [] { return std::chrono::system_clock::now(); });
    } catch (const TFailure& failure) {
        throw TUsageError(ToUtf8(failure.Text()));
    }
}

// Ends the jobs when the user or the deadline wants it.
class TStopWatch {
public:
    TStopWatch(const TCommandOptions& options, TWorld& world)
        : world_(world), start_(world.clock.Now()), deadline_(options.deadline) {}

    void Look(TRunStop& stop, TScaleResults& results) const {
        if (!results.interrupted && world_.interrupts() > 0) {
            results.interrupted = true;
            world_.err
                << "Interrupted: each scale ends with the article in work. Again: ends at once."
                << std::endl;
        }
        if (!results.deadline && deadline_ && world_.clock.Now() - start_ >= *deadline_) {
            results.deadline = true;
            world_.err << "The deadline has passed: each scale ends with the article in work."
                       << std::endl;
        }
        if (results.interrupted || results.deadline) stop.Abandon();
    }

private:
    TWorld& world_;
    TTimePoint start_;
    std::optional<std::chrono::seconds> deadline_;
};

TReportTable ScaleTableOf(const std::vector<TScaleResult>& scales) {
    TReportTable table{.key = "scales",
                       .title = {},
                       .columns = {{"number", "No"},
                                   {"name", "Scale"},
                                   {"outcome", "Outcome"},
                                   {"written", "Written"},
                                   {"unchanged", "Unchanged"},
                                   {"deleted", "Deleted"},
                                   {"refused", "Refused"},
                                   {"leftOut", "Left out"},
                                   {"pending", "Pending"},
                                   {"version", "Version"},
                                   {"capacity", "Capacity"},
                                   {"labelMode", "Label mode"},
                                   {"exchangeMs", "Exchange, ms"},
                                   {"seconds", "Seconds"},
                                   {"mayBeProgramming", "May not weigh"},
                                   {"ledger", "Ledger"},
                                   {"error", "Error"}}};
    for (const TScaleResult& scale : scales) {
        const auto count = [](std::size_t number) {
            return TCell(static_cast<std::int64_t>(number));
        };
        const auto version = [&](auto cell) {
            return scale.version ? TCell(cell(*scale.version)) : TCell();
        };
        table.rows.push_back(
            {std::int64_t{scale.rec.ScaleNumb}, ToUtf8(scale.rec.ScaleName.View()),
             std::string(OutcomeName(scale.outcome)), count(scale.written), count(scale.unchanged),
             count(scale.deleted), count(scale.refused.size()), count(scale.leftOut.size()),
             count(scale.pending), version([](const TScaleVersion& v) { return ToUtf8(v.text); }),
             version([](const TScaleVersion& v) { return std::int64_t{v.maxPlu}; }),
             version([](const TScaleVersion& v) { return std::int64_t{v.mode}; }),
             scale.exchange ? TCell(static_cast<double>(scale.exchange->count()) / 1000.0)
                            : TCell(),
             static_cast<double>(scale.duration.count()) / 1000.0, scale.mayBeProgramming,
             ToUtf8(scale.ledgerNote), ToUtf8(scale.error)});
    }
    return table;
}

TReportTable ArticleTableOf(const TScaleResults& results) {
    TReportTable table{.key = "articles",
                       .title = "Articles that the scales do not hold as they are in the database",
                       .columns = {{"scale", "Scale"},
                                   {"number", "Number"},
                                   {"name", "Name"},
                                   {"state", "State"},
                                   {"reason", "Reason"}}};
    const auto addRow = [&](TCell scale, const TRefusedArticle& article, const char* state) {
        table.rows.push_back({std::move(scale), std::int64_t{article.number}, ToUtf8(article.name),
                              std::string(state), ToUtf8(article.reason)});
    };
    for (const TRefusedArticle& article : results.unknown)
        addRow({}, article, "left out");
    for (const TScaleResult& scale : results.scales) {
        const auto add = [&](const TRefusedArticle& article, const char* state) {
            addRow(std::int64_t{scale.rec.ScaleNumb}, article, state);
        };
        for (const TRefusedArticle& article : scale.refused)
            add(article, "refused");
        for (const TRefusedArticle& article : scale.leftOut)
            add(article, "left out");
        for (const std::int32_t number : scale.strays)
            add({.number = number,
                 .name = {},
                 .reason = "the scale holds it and its list does not; --prune deletes it"},
                "left over");
    }
    return table;
}

}  // namespace

TScaleResults RunScales(const TCommandOptions& options, TWorld& world,
                        const std::vector<TScaleRec>& scales, const TMakeJob& makeJob) {
    CheckStateFolder(options.state);
    TEventLog log(options.log, [&world] { return UtcText(world.now()); });
    TProgress progress(world.err, options.progress, world.terminal && !options.verbose,
                       world.clock);
    TLinkFactory links(world.clock, options.serialPorts, options.udpPort);
    std::optional<TTraceFile> trace;
    OpenTrace(options.trace, trace);
    TRunStop stop;
    TScaleResults results;
    results.scales.resize(scales.size());
    std::vector<std::unique_ptr<TScaleView>> views;
    views.reserve(scales.size());
    for (const TScaleRec& rec : scales)
        views.push_back(std::make_unique<TScaleView>(progress, log, options.verbose, rec));
    std::vector<TScaleLanes::TTask> tasks;
    for (std::size_t i = 0; i < scales.size(); ++i) {
        tasks.push_back({.needs = NeedsOf(scales[i]), .run = [&, i] {
                             const auto factory = FactoryFor(scales[i], links, trace);
                             const TJobParts parts{.factory = *factory,
                                                   .clock = world.clock,
                                                   .stop = stop,
                                                   .view = *views[i],
                                                   .stateFolder = options.state,
                                                   .lockWait = options.lockWait};
                             results.scales[i] = ResultOf(parts, scales[i], makeJob);
                             views[i]->Ends(results.scales[i]);
                         }});
    }
    const TStopWatch watch(options, world);
    TScaleLanes lanes(std::move(tasks), options.jobs);
    while (!lanes.WaitFor(kPoll)) {
        watch.Look(stop, results);
        progress.Draw();
    }
    progress.Draw();
    if (trace)
        if (const auto failure = trace->TakeFailure()) world.err << ToUtf8(*failure) << std::endl;
    if (log.Failed()) world.err << "The log could not be written to its end." << std::endl;
    return results;
}

TExitCode ExitCodeOf(const TScaleResults& results) {
    if (results.interrupted) return TExitCode::Interrupted;
    const auto count = [&](TScaleOutcome outcome) {
        return static_cast<std::size_t>(
            std::count_if(results.scales.begin(), results.scales.end(),
                          [&](const TScaleResult& scale) { return scale.outcome == outcome; }));
    };
    const std::size_t done = count(TScaleOutcome::Done);
    if (done == results.scales.size())
        return results.unknown.empty() ? TExitCode::Done : TExitCode::SomeFailed;
    if (count(TScaleOutcome::NotReached) == results.scales.size()) return TExitCode::NoScaleReached;
    if (done + count(TScaleOutcome::Locked) == results.scales.size()) return TExitCode::Locked;
    return TExitCode::SomeFailed;
}

TReport ReportOf(std::string command, const TScaleResults& results) {
    return {.command = std::move(command),
            .tables = {ScaleTableOf(results.scales), ArticleTableOf(results)}};
}

}  // namespace tolvane
