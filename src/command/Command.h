#pragma once

#include "command/ExitCode.h"
#include "command/Options.h"
#include "command/PageFile.h"
#include "command/Report.h"
#include "command/World.h"

namespace tolvane {

// Does what the options say: prints the report on world.out, and what goes wrong on world.err.
// Throws nothing.
TExitCode RunCommand(const TCommandOptions& options, TWorld& world) noexcept;

// What a command has come to.
struct TAnswer {
    TReport report{};
    TExitCode exitCode = TExitCode::Done;
    TPageContent page{};  // when --report asks for one
};

// Each throws TUsageError, TFileError, TDatabaseError, or what else has gone wrong.
TAnswer CheckShop(const TCommandOptions& options, TWorld& world);
TAnswer ShowArticle(const TCommandOptions& options, TWorld& world);
TAnswer WriteArticles(const TCommandOptions& options, TWorld& world);
TAnswer DeleteArticles(const TCommandOptions& options, TWorld& world);
TAnswer TestScales(const TCommandOptions& options, TWorld& world);
TAnswer ReleaseScales(const TCommandOptions& options, TWorld& world);
TAnswer ShowStatus(const TCommandOptions& options, TWorld& world);
TAnswer ListArticles(const TCommandOptions& options, TWorld& world);
TAnswer ListLines(const TCommandOptions& options, TWorld& world);
TAnswer ListScales(const TCommandOptions& options, TWorld& world);
TAnswer DiscoverModules(const TCommandOptions& options, TWorld& world);
TAnswer ForgetScale(const TCommandOptions& options, TWorld& world);

}  // namespace tolvane
