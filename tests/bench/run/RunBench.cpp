// Prints how long an article takes, written or deleted, by model, label mode and link: with the
// protocol's own pauses, against a virtual scale, which answers at once. A serial line of the
// virtual scale has no speed, so its times are worked out from the bytes that went over the wire.
//
//   bench_run           this table, then a run of 300 articles into one ETS over TCP
//   bench_run --ets     only that run, in a minute and a half
//   bench_run --quick   both with few articles, and with pauses a tenth as long

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "comm/TDevCommRS232.h"
#include "comm/TDevCommUDP.h"
#include "simulator/VirtualScale.h"
#include "tests/bench/measure/Quick.h"
#include "tests/bench/run/BenchLine.h"
#include "tests/bench/run/EtsRun.h"
#include "tests/support/Clocks.h"
#include "tests/support/scales/TestScales.h"
#include "tests/support/upload/NullView.h"
#include "text/Cp1251.h"
#include "upload/ScaleSession.h"

namespace tolvane::bench {
namespace {

using simulator::TModel;

constexpr int kArticles = 20;
constexpr int kEtsArticles = 300;
constexpr double kTextPauseMs = 30;
constexpr double kPollMs = 10;

struct TKind {
    const char* name;
    TModel model;
    std::int32_t scaleType;
    int mode;
};

const TKind kKinds[] = {
    {"EVL mode 0", TModel::Evl, kScaleTypeEvl, 0},
    {"EVL mode 1, 3", TModel::Evl, kScaleTypeEvl, 1},
    {"EVL mode 2", TModel::Evl, kScaleTypeEvl, 2},
    {"ETS", TModel::Ets, kScaleTypeEts, 0},
    {"S300 mode 0", TModel::S300, kScaleTypeS300, 0},
    {"S300 mode 1", TModel::S300, kScaleTypeS300, 1},
    {"S300 mode 2", TModel::S300, kScaleTypeS300, 2},
    {"S300 mode 3", TModel::S300, kScaleTypeS300, 3},
};

struct TExchange {
    std::size_t bytes;  // both ways
    bool text;          // a pause follows
};

[[noreturn]] void End(const char* kind, const std::string& error) {
    std::fprintf(stderr, "%s: %s\n", kind, ToUtf8(error).c_str());
    std::exit(1);
}

class TBenchView : public test::TNullView {
public:
    void ShowRunError(std::string text) override { End("run", text); }
};

// Makes drivers for one virtual scale over the links that it has opened, whatever the settings
// name.
class TFactory : public TRealScaleFactory {
public:
    TFactory(const simulator::TVirtualScale& scale, TClock& clock)
        : TRealScaleFactory(clock), scale_(scale), clock_(clock) {}
    std::unique_ptr<TElicomScale> CreateRS232(std::int32_t, std::int32_t) override {
        auto channel = std::make_unique<TDevCommRS232>(clock_);
        channel->SetPort(scale_.SerialDevice());
        channel->SetBaudRate(br38400);
        channel->SetDataBits(dbEight);
        channel->SetStopBits(sbOneStopBit);
        channel->SetParity(prNone);
        channel->SetFlowControl(fcNone);
        return std::make_unique<TElicomScale>(std::move(channel), true, clock_);
    }
    std::unique_ptr<TElicomScale> CreateUDP(const std::string& host) override {
        auto channel = std::make_unique<TDevCommUDP>(clock_, std::uint16_t{0});
        channel->SetHost(host);
        channel->SetPort(scale_.UdpPort());
        return std::make_unique<TElicomScale>(std::move(channel), false, clock_);
    }

private:
    const simulator::TVirtualScale& scale_;
    TClock& clock_;
};

// How much is measured.
struct TScope {
    int articles;
    TClock& clock;
    std::span<const TKind> kinds;
};

class TBench {
public:
    TBench(const TKind& kind, const TScope& scope) : kind_(kind), scope_(scope), scale_(Options()) {
        scale_.Start();
    }

    // Milliseconds of one run over a link.
    double Run(std::uint8_t commType, const std::function<bool(TScaleSession&)>& pass) {
        TBenchView view;
        TRunStop stop;
        TFactory factory(scale_, scope_.clock);
        TScaleSession session(factory, scope_.clock, view, stop, '.');
        exchanges_.clear();
        const auto start = std::chrono::steady_clock::now();
        if (!session.InitComm(Rec(commType)) || !pass(session)) End(kind_.name, session.LastError);
        session.Close();
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
            .count();
    }
    double Write(std::uint8_t commType, int articles) {
        std::vector<std::string> lines;
        for (int number = 1; number <= articles; ++number)
            lines.push_back(BenchLine(number));
        return Run(commType, [&](TScaleSession& session) {
            return session.ProcessUpload(lines, Rec(commType));
        });
    }
    double DeleteEverything(std::uint8_t commType) {
        return Run(commType, [](TScaleSession& session) { return session.ProcessDelete({}); });
    }
    // The article commands of the last run.
    const std::vector<TExchange>& Exchanges() const { return exchanges_; }

private:
    simulator::TScaleOptions Options() {
        simulator::TScaleOptions options;
        options.scale = simulator::DefaultProperties(kind_.model);
        options.scale.capacity = scope_.articles;
        options.scale.labelMode = kind_.mode;
        options.udpPort = 0;
        options.pty = true;
        options.keepsRequests = false;
        options.onExchange = [this](const simulator::TBytes& frame,
                                    const simulator::TReplyPlan& plan) {
            const std::uint8_t command = simulator::DecodeRequest(frame).command;
            if (command < 0x49 || command > 0x4C) return;
            std::size_t bytes = frame.size();
            for (const simulator::TSendStep& step : plan.steps)
                bytes += step.bytes.size();
            exchanges_.push_back({bytes, command == 0x4C});
        };
        return options;
    }
    TScaleRec Rec(std::uint8_t commType) const {
        TScaleRec rec = NetworkScale(1, "A", "127.0.0.1", scale_.Port());
        rec.CommType = commType;
        rec.ScaleType = kind_.scaleType;
        rec.Encoding = kCodeTablePc866;
        return rec;
    }

    TKind kind_;
    TScope scope_;
    std::vector<TExchange> exchanges_;
    simulator::TVirtualScale scale_;
};

double PauseMs(const std::vector<TExchange>& exchanges) {
    double pause = 0;
    for (const TExchange& exchange : exchanges)
        pause += exchange.text ? kTextPauseMs : 0;
    return pause;
}

// Ten bits a byte; the channel looks for an answer every 10 ms.
double SerialMs(const std::vector<TExchange>& exchanges, int bitsPerSecond) {
    double line = 0;
    for (const TExchange& exchange : exchanges) {
        const double ms = static_cast<double>(exchange.bytes) * 10 * 1000 / bitsPerSecond;
        line += (static_cast<int>(ms / kPollMs) + 1) * kPollMs;
    }
    return line + PauseMs(exchanges);
}

double BytesOf(const std::vector<TExchange>& exchanges) {
    double bytes = 0;
    for (const TExchange& exchange : exchanges)
        bytes += static_cast<double>(exchange.bytes);
    return bytes;
}

void PrintRow(const char* name, TBench& bench, int articles, double tcp, double udp, double pty) {
    const double each = 1.0 / articles;
    const std::vector<TExchange>& all = bench.Exchanges();
    std::printf("%-22s %8.1f %8.1f %8.1f %8.1f %8.1f %8.1f %8.1f\n", name,
                static_cast<double>(all.size()) * each, tcp * each, udp * each, pty * each,
                BytesOf(all) * each, SerialMs(all, 9600) * each, SerialMs(all, 38400) * each);
    std::fflush(stdout);
}

// A run without any article takes as long as connecting and changing the mode do; the rest is the
// articles' time.
void Measure(const TKind& kind, const TScope& scope) {
    TBench bench(kind, scope);
    const double nothing = bench.Write(kCommTcp, 0);
    if (kind.model == TModel::Evl && kind.mode == 0)
        std::printf("a scale without articles: %.1f ms\n\n%-22s %8s %8s %8s %8s %8s %8s %8s\n",
                    nothing, "ms per article", "requests", "TCP", "UDP", "pty", "bytes", "9600",
                    "38400");
    const double tcp = bench.Write(kCommTcp, scope.articles) - nothing;
    const double udp = bench.Write(kCommUdp, scope.articles) - nothing;
    const double pty = bench.Write(kCommSerial, scope.articles) - nothing;
    PrintRow(kind.name, bench, scope.articles, tcp, udp, pty);
}

void MeasureDelete(const TScope& scope) {
    TBench bench(kKinds[0], scope);
    const double nothing = bench.Write(kCommTcp, 0);
    const double tcp = bench.DeleteEverything(kCommTcp) - nothing;
    const double udp = bench.DeleteEverything(kCommUdp) - nothing;
    const double pty = bench.DeleteEverything(kCommSerial) - nothing;
    PrintRow("delete, per number", bench, scope.articles, tcp, udp, pty);
}

void MeasureAll(const TScope& scope) {
    for (const TKind& kind : scope.kinds)
        Measure(kind, scope);
    MeasureDelete(scope);
    std::printf("\n");
}

void RunAll(bool quick, bool onlyEts) {
    constexpr int kShorter = 10;
    if (quick) {
        test::TQuickClock clock({.shorterPauses = kShorter});
        MeasureAll({2, clock, std::span(kKinds).first(1)});
        MeasureEtsRun(10, kShorter);
        return;
    }
    if (!onlyEts) MeasureAll({kArticles, SystemClock(), kKinds});
    MeasureEtsRun(kEtsArticles, 1);
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    const std::span<char* const> all(arguments, static_cast<std::size_t>(count));
    const bool onlyEts =
        std::ranges::any_of(all, [](std::string_view text) { return text == "--ets"; });
    tolvane::bench::RunAll(tolvane::bench::IsQuick(count, arguments), onlyEts);
    return 0;
}
