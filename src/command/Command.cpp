#include "command/Command.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "command/EnglishWords.h"
#include "command/NamedFile.h"
#include "command/Shop.h"
#include "command/UtcTime.h"
#include "config/IniFile.h"
#include "database/DatabaseError.h"
#include "text/Cp1251.h"
#include "text/Failure.h"

namespace tolvane {
namespace {

TAnswer Answer(const TCommandOptions& options, TWorld& world) {
    switch (options.verb) {
        case TVerb::Check:
            return options.show ? ShowArticle(options, world) : CheckShop(options, world);
        case TVerb::Write:
            return WriteArticles(options, world);
        case TVerb::Delete:
            return DeleteArticles(options, world);
        case TVerb::Test:
            return TestScales(options, world);
        case TVerb::Release:
            return ReleaseScales(options, world);
        case TVerb::Status:
            return ShowStatus(options, world);
        case TVerb::Articles:
            return ListArticles(options, world);
        case TVerb::Lines:
            return ListLines(options, world);
        case TVerb::Scales:
            return ListScales(options, world);
        case TVerb::Discover:
            return DiscoverModules(options, world);
        case TVerb::LedgerForget:
            return ForgetScale(options, world);
    }
    return {};
}

std::string_view NameOf(TVerb verb) {
    constexpr auto kNames = std::to_array<std::string_view>(
        {"check", "write", "delete", "test", "release", "status", "articles", "lines", "scales",
         "discover", "ledger forget"});
    return kNames.at(static_cast<std::size_t>(verb));
}

// The scales that are named; without any the checked ones.
std::string ScalesOf(const TCommandOptions& options) {
    if (options.verb == TVerb::LedgerForget) return options.forget;
    std::string names;
    for (const std::string& name : options.scales)
        names += (names.empty() ? "" : ",") + name;
    return names.empty() ? "checked" : names;
}

// What was asked for, as on a command line.
std::string RequestText(const TCommandOptions& options) {
    std::string text(NameOf(options.verb));
    if (options.changedOnly) text += " --changed";
    if (options.prune) text += " --prune";
    if (options.dryRun) text += " --dry-run";
    if (options.show) text += " --show " + std::to_string(*options.show);
    if (options.numbers) {
        std::string numbers;
        for (const std::int32_t number : *options.numbers)
            numbers += (numbers.empty() ? "" : ",") + std::to_string(number);
        text += " --plu " + numbers;
    }
    return text;
}

void LogBegin(const TCommandOptions& options, TEventLog& log) {
    log.Write("begin", {{"command", std::string(NameOf(options.verb))},
                        {"version", std::string(TOLVANE_VERSION)},
                        {"scales", ScalesOf(options)}});
}

// A log that lacks its end is a failure where everything else went well.
TExitCode WithLog(TExitCode code, const TEventLog& log) {
    return code == TExitCode::Done && log.Failed() ? TExitCode::SomeFailed : code;
}

// How a command has ended.
struct TEnd {
    TExitCode code = TExitCode::Done;
    std::string error{};  // UTF-8; empty when nothing was thrown
};

void Say(TWorld& world, const std::string& text) {
    if (!text.empty()) world.err << "tolvane: " << text << std::endl;
}

std::string TwoDigits(int number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

// "2026-11-23 09:05:00", as the computer's clock shows it.
std::string LocalText(const TLocalDateTime& now) {
    return std::to_string(now.date.year) + "-" + TwoDigits(now.date.month) + "-" +
           TwoDigits(now.date.day) + " " + TwoDigits(now.time.hour) + ":" +
           TwoDigits(now.time.minute) + ":" + TwoDigits(now.time.second);
}

std::string PageTitle(const TCommandOptions& options) {
    if (options.verb == TVerb::Check) return "Check of articles and scales";
    return options.dryRun ? "What a run would write" : "Articles written into scales";
}

void OpenPage(const TCommandOptions& options, TWorld& world) {
    world.page.Open(
        options,
        {.title = PageTitle(options),
         .facts = {{"Begun", LocalText(world.localClock.Now())},
                   {"Asked for", RequestText(options)},
                   {"Scales", options.scales.empty() ? "the checked ones" : ScalesOf(options)},
                   {"Scale list", Utf8Path(options.ini)},
                   {"Database", options.database},
                   {"Made by", std::string("tolvane ") + TOLVANE_VERSION}}},
        [&world] {
            const std::chrono::duration<double> taken = world.clock.Now() - world.start;
            return taken.count();
        });
}

// So is a report that is missing.
TExitCode WithPage(TExitCode code, TWorld& world) {
    const std::string failure = world.page.Write(code, {});
    Say(world, failure);
    return code == TExitCode::Done && !failure.empty() ? TExitCode::SomeFailed : code;
}

TEnd AnswerAndPrint(const TCommandOptions& options, TWorld& world) {
    OpenPage(options, world);
    TAnswer answer = Answer(options, world);
    world.page.SetContent(std::move(answer.page));
    const TExitCode code = WithPage(WithLog(answer.exitCode, world.log), world);
    world.out << FormatReport(answer.report, options.format, code) << std::flush;
    if (!world.out)
        return {.code = TExitCode::Internal, .error = "Standard output cannot be written."};
    return {.code = code};
}

TEnd FailedBy(const std::exception& error, TExitCode code) {
    return {.code = code, .error = ToUtf8(InEnglish(MessageOf(error)))};
}

TEnd AnswerOrFail(const TCommandOptions& options, TWorld& world) {
    try {
        return AnswerAndPrint(options, world);
    } catch (const TUsageError& error) {
        return {.code = TExitCode::Usage, .error = error.what()};
    } catch (const TFileError& error) {
        return FailedBy(error, TExitCode::Usage);
    } catch (const TDatabaseError& error) {
        return FailedBy(error, TExitCode::Database);
    } catch (const std::exception& error) {
        return FailedBy(error, TExitCode::Internal);
    }
}

TExitCode Run(const TCommandOptions& options, TWorld& world) {
    try {
        world.log.Open(options.log, [&world] { return UtcText(world.now()); });
    } catch (const TUsageError& error) {
        Say(world, error.what());
        return TExitCode::Usage;
    }
    LogBegin(options, world.log);
    const TEnd end = AnswerOrFail(options, world);
    Say(world, end.error);
    if (!end.error.empty()) Say(world, world.page.Write(end.code, end.error));
    LogEnd(world.log, end.code, end.error);
    if (world.log.Failed()) Say(world, "The log could not be written to its end.");
    return WithLog(end.code, world.log);
}

}  // namespace

TExitCode RunCommand(const TCommandOptions& options, TWorld& world) noexcept {
    try {
        return Run(options, world);
    } catch (...) {
        return TExitCode::Internal;
    }
}

}  // namespace tolvane
