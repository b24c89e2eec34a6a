#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <csignal>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include "simulator/Console.h"
#include "simulator/Hex.h"
#include "simulator/PageServer.h"
#include "simulator/ProgramOptions.h"
#include "simulator/RequestLog.h"
#include "simulator/VirtualScale.h"

namespace tolvane::simulator {

namespace {

void SaveReporting(const TScaleState& state, const std::string& path) {
    try {
        SaveState(state, path);
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
    }
}

void Trace(const TBytes& frame, const TReplyPlan& plan) {
    std::cout << "< " << ToHex(frame, " ") << '\n';
    if (plan.steps.empty()) std::cout << "> nothing\n";
    for (const TSendStep& step : plan.steps)
        std::cout << "> " << ToHex(step.bytes, " ") << '\n';
    std::cout.flush();
}

// Prints where the scale and its page listen. A file, if wanted, is written first, and appears only
// when it is complete.
void PrintReady(const TVirtualScale& scale, const TPageServer* page, const std::string& path) {
    std::string lines;
    for (const std::string& endpoint : scale.Endpoints())
        lines += "ready " + endpoint + '\n';
    if (page != nullptr) lines += "ready " + page->Endpoint() + '\n';
    if (!path.empty()) {
        const std::string temporary = path + ".new";
        std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
        file << lines;
        file.close();
        if (!file) throw std::runtime_error("cannot write " + temporary);
        std::filesystem::rename(temporary, path);
    }
    std::cout << lines << std::flush;
}

// Takes the signals that end the program from its construction on.
class TEndSignals {
public:
    TEndSignals() : signals_(io_, SIGINT, SIGTERM) {
#ifdef SIGBREAK
        signals_.add(SIGBREAK);
#endif
        signals_.async_wait([](const std::error_code&, int) {});
    }
    void Wait() {
        io_.run();
    }

private:
    asio::io_context io_;
    asio::signal_set signals_;
};

std::unique_ptr<TPageServer> ServePage(const TProgramOptions& program, TVirtualScale& scale,
                                       const TRequestLog& log) {
    if (!program.page) return nullptr;
    return std::make_unique<TPageServer>(
        *program.page,
        TPageScale{.state = [&scale] { return scale.State(); },
                   .endpoints = [endpoints = scale.Endpoints()] { return endpoints; },
                   .requests = [&log] { return log.Lines(); },
                   .setFaults = [&scale](const TFaultScript& faults) { scale.SetFaults(faults); }},
        program.scale.faults);
}

void Serve(const TProgramOptions& program) {
    TScaleOptions options = program.scale;
    if (program.saveOnWeighing) {
        options.onWeighing = [path = program.savePath](const TScaleState& state) {
            SaveReporting(state, path);
        };
    }
    TRequestLog log(options.scale.codeTable);
    if (program.trace || program.page) {
        options.onExchange = [&program, &log](const TBytes& frame, const TReplyPlan& plan) {
            if (program.trace) Trace(frame, plan);
            if (program.page) log.Add(frame, plan);
        };
    }
    TEndSignals signals;
    TVirtualScale scale(std::move(options));
    scale.Start();
    std::unique_ptr<TPageServer> page = ServePage(program, scale, log);
    PrintReady(scale, page.get(), program.readyPath);
    signals.Wait();
    page.reset();
    scale.Stop();
    if (program.print) std::cout << PrintState(scale.State()) << std::flush;
    if (!program.savePath.empty()) SaveState(scale.State(), program.savePath);
}

int Run(int argc, char** argv) {
    ShowUtf8();
    try {
        const TProgramOptions program = ParseProgramOptions(argc, argv);
        if (program.exitCode) return *program.exitCode;
        if (!program.showPath.empty())
            std::cout << PrintState(LoadState(program.showPath)) << std::flush;
        else
            Serve(program);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "virtual-scale: " << error.what() << std::endl;
        return 1;
    }
}

}  // namespace

}  // namespace tolvane::simulator

int main(int argc, char** argv) {
    return tolvane::simulator::Run(argc, argv);
}
