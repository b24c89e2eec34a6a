#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "command/Command.h"
#include "command/Options.h"
#include "system/Console.h"
#include "system/Interrupts.h"
#include "system/Library.h"

int main(int argc, char** argv) {
    using namespace tolvane;
    const TTimePoint start = SystemClock().Now();
    IgnoreLibrariesOfCurrentFolder();
    const TConsole console;
    TParsedOptions parsed = ParseOptions(ProgramArguments(argc, argv), &EnvironmentVariable);
    std::cout << parsed.output << std::flush;
    std::cerr << parsed.error << std::flush;
    if (!parsed.options) return static_cast<int>(parsed.exitCode);
    if (WorksOnScales(*parsed.options))
        CatchInterrupts();
    else
        EndAtInterrupt();
    TWorld world{
        .out = std::cout,
        .err = std::cerr,
        .terminal = console.ErrorIsTerminal(),
        .clock = SystemClock(),
        .localClock = SystemLocalClock(),
        .now =
            [] {
                return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
            },
        .interrupts = &InterruptCount,
        .regional = SystemRegionalSettings(),
        .start = start,
        .leave = [](TExitCode code) { EndProcess(static_cast<int>(code)); },
        .columns = [&console] { return console.ErrorColumns(); }};
    return static_cast<int>(RunCommand(*parsed.options, world));
}
