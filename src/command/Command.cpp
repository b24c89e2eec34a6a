#include "command/Command.h"

#include <exception>
#include <string>

#include "command/Shop.h"
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

TExitCode Fail(TWorld& world, TExitCode code, const std::string& text) {
    world.err << "tolvane: " << text << std::endl;
    return code;
}

TExitCode AnswerOrFail(const TCommandOptions& options, TWorld& world) {
    try {
        const TAnswer answer = Answer(options, world);
        world.out << FormatReport(answer.report, options.format, answer.exitCode) << std::flush;
        if (!world.out)
            return Fail(world, TExitCode::Internal, "Standard output cannot be written.");
        return answer.exitCode;
    } catch (const TUsageError& error) {
        return Fail(world, TExitCode::Usage, error.what());
    } catch (const TFileError& error) {
        return Fail(world, TExitCode::Usage, ToUtf8(error.what()));
    } catch (const TDatabaseError& error) {
        return Fail(world, TExitCode::Database, ToUtf8(error.what()));
    }
}

}  // namespace

TExitCode RunCommand(const TCommandOptions& options, TWorld& world) noexcept {
    try {
        return AnswerOrFail(options, world);
    } catch (const std::exception& error) {
        return Fail(world, TExitCode::Internal, ToUtf8(MessageOf(error)));
    } catch (...) {
        return TExitCode::Internal;
    }
}

}  // namespace tolvane
