// Prints how long an article takes, written or deleted, by model, label mode and link: with the
// protocol's own pauses, against a virtual scale, which answers at once. A serial line of the
// virtual scale has no speed, so its times are worked out from the bytes that went over the wire.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "comm/TDevCommRS232.h"
#include "comm/TDevCommUDP.h"
#include "simulator/VirtualScale.h"
#include "tests/support/scales/TestScales.h"
#include "tests/support/upload/NullView.h"
#include "text/Cp1251.h"
#include "upload/ScaleSession.h"

namespace tolvane::bench {
namespace {

using simulator::TModel;

constexpr int kArticles = 20;
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
    explicit TFactory(const simulator::TVirtualScale& scale)
        : TRealScaleFactory(SystemClock()), scale_(scale) {}
    std::unique_ptr<TElicomScale> CreateRS232(std::int32_t, std::int32_t) override {
        auto channel = std::make_unique<TDevCommRS232>(SystemClock());
        channel->SetPort(scale_.SerialDevice());
        channel->SetBaudRate(br38400);
        channel->SetDataBits(dbEight);
        channel->SetStopBits(sbOneStopBit);
        channel->SetParity(prNone);
        channel->SetFlowControl(fcNone);
        return std::make_unique<TElicomScale>(std::move(channel), true, SystemClock());
    }
    std::unique_ptr<TElicomScale> CreateUDP(const std::string& host) override {
        auto channel = std::make_unique<TDevCommUDP>(SystemClock(), std::uint16_t{0});
        channel->SetHost(host);
        channel->SetPort(scale_.UdpPort());
        return std::make_unique<TElicomScale>(std::move(channel), false, SystemClock());
    }

private:
    const simulator::TVirtualScale& scale_;
};

class TBench {
public:
    explicit TBench(const TKind& kind) : kind_(kind), scale_(Options()) { scale_.Start(); }

    // Milliseconds of one run over a link.
    double Run(std::uint8_t commType, const std::function<bool(TScaleSession&)>& pass) {
        TBenchView view;
        TRunStop stop;
        TFactory factory(scale_);
        TScaleSession session(factory, SystemClock(), view, stop, '.');
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
            lines.push_back(LineOf(number));
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
        options.scale.capacity = kArticles;
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
    static std::string LineOf(int number) {
        std::string line = std::to_string(number);
        line += "|22012|1|0|0|7.10|0|5|";
        line +=
            "Свински врат без кос|Свински врат без кос|Съхранение от 0 до +4 гр.С|"
            "Произход: България|Да се консумира след термична обработка|L240502-1|"_cp1251;
        return line + "0|0|" + std::to_string(1000 + number) + "|";
    }

    TKind kind_;
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

void PrintRow(const char* name, TBench& bench, double tcp, double udp, double pty) {
    const std::vector<TExchange>& all = bench.Exchanges();
    std::printf("%-22s %8.1f %8.1f %8.1f %8.1f %8.1f %8.1f %8.1f\n", name,
                static_cast<double>(all.size()) / kArticles, tcp / kArticles, udp / kArticles,
                pty / kArticles, BytesOf(all) / kArticles, SerialMs(all, 9600) / kArticles,
                SerialMs(all, 38400) / kArticles);
    std::fflush(stdout);
}

// A run without any article takes as long as connecting and changing the mode do; the rest is the
// articles' time.
void Measure(const TKind& kind) {
    TBench bench(kind);
    const double nothing = bench.Write(kCommTcp, 0);
    if (kind.model == TModel::Evl && kind.mode == 0)
        std::printf("a scale without articles: %.1f ms\n\n%-22s %8s %8s %8s %8s %8s %8s %8s\n",
                    nothing, "ms per article", "requests", "TCP", "UDP", "pty", "bytes", "9600",
                    "38400");
    const double tcp = bench.Write(kCommTcp, kArticles) - nothing;
    const double udp = bench.Write(kCommUdp, kArticles) - nothing;
    const double pty = bench.Write(kCommSerial, kArticles) - nothing;
    PrintRow(kind.name, bench, tcp, udp, pty);
}

void MeasureDelete() {
    TBench bench(kKinds[0]);
    const double nothing = bench.Write(kCommTcp, 0);
    const double tcp = bench.DeleteEverything(kCommTcp) - nothing;
    const double udp = bench.DeleteEverything(kCommUdp) - nothing;
    const double pty = bench.DeleteEverything(kCommSerial) - nothing;
    PrintRow("delete, per number", bench, tcp, udp, pty);
}

}  // namespace
}  // namespace tolvane::bench

int main() {
    for (const tolvane::bench::TKind& kind : tolvane::bench::kKinds)
        tolvane::bench::Measure(kind);
    tolvane::bench::MeasureDelete();
    return 0;
}
