#include "tests/bench/run/EtsRun.h"

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "simulator/VirtualScale.h"
#include "tests/bench/measure/Sides.h"
#include "tests/bench/run/BenchLine.h"
#include "tests/support/scales/TestScales.h"
#include "tests/support/upload/NullView.h"
#include "upload/ScaleSession.h"

namespace tolvane::bench {
namespace {

using TMs = std::chrono::duration<double, std::milli>;

constexpr double kAtMostOfPauses = 1.05;

// The system's clock, which adds up the pauses that are asked for. 0: makes none.
class TAddingClock : public TClock {
public:
    explicit TAddingClock(int shorter) : shorter_(shorter) {}
    TTimePoint Now() const override { return SystemClock().Now(); }
    void Sleep(TMilliseconds pause) override {
        if (shorter_ == 0) return;
        const auto shortened = std::chrono::microseconds(pause) / shorter_;
        asked += shortened;
        ++pauses;
        std::this_thread::sleep_for(shortened);
    }

    TMs asked{};
    int pauses = 0;

private:
    int shorter_;
};

// Keeps the time and the pauses until each article.
class TArticleView : public test::TNullView {
public:
    explicit TArticleView(const TAddingClock& clock) : clock_(clock) {}
    void SetProgress(std::string) override { Look(); }
    void Look() {
        times.push_back(TMs(clock_.Now().time_since_epoch()).count());
        pauses.push_back(clock_.asked.count());
    }
    void ShowRunError(std::string text) override {
        std::fprintf(stderr, "%s\n", ToUtf8(text).c_str());
        std::exit(1);
    }

    std::vector<double> times;
    std::vector<double> pauses;

private:
    const TAddingClock& clock_;
};

struct TProcessorTime {
    double user = 0;
    double system = 0;
};

double MsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
}

TProcessorTime OfThisThread() {
    rusage used{};
    getrusage(RUSAGE_THREAD, &used);
    return {MsOf(used.ru_utime), MsOf(used.ru_stime)};
}

struct TEtsRun {
    double ms = 0;
    TProcessorTime worked{};
};

TEtsRun Write(const simulator::TVirtualScale& scale, int articles, TAddingClock& clock,
              TArticleView& view) {
    std::vector<std::string> lines;
    for (int number = 1; number <= articles; ++number)
        lines.push_back(BenchLine(number));
    TScaleRec rec = NetworkScale(1, "A", "127.0.0.1", scale.Port());
    rec.CommType = kCommTcp;
    rec.ScaleType = kScaleTypeEts;
    rec.Encoding = kCodeTablePc866;
    TRealScaleFactory factory(clock);
    TRunStop stop;
    TScaleSession session(factory, clock, view, stop, '.');
    const TProcessorTime before = OfThisThread();
    TEtsRun run;
    run.ms = MillisecondsOf([&] {
        if (!session.InitComm(rec) || !session.ProcessUpload(lines, rec))
            view.ShowRunError(session.LastError);
        session.Close();
    });
    const TProcessorTime after = OfThisThread();
    run.worked = {after.user - before.user, after.system - before.system};
    return run;
}

// The last article's end is not seen.
TSpread RatiosByArticle(const TArticleView& view) {
    std::vector<double> ratios;
    for (std::size_t i = 1; i < view.times.size(); ++i)
        ratios.push_back((view.times[i] - view.times[i - 1]) /
                         (view.pauses[i] - view.pauses[i - 1]));
    return TSpread(ratios);
}

void PrintProcessorTime(const char* what, const TEtsRun& run, int articles) {
    std::printf("%-44s %9.3f ms an article: %.3f in the program, %.3f in the system\n", what,
                (run.worked.user + run.worked.system) / articles, run.worked.user / articles,
                run.worked.system / articles);
}

}  // namespace

void MeasureEtsRun(int articles, int shorter) {
    simulator::TScaleOptions options;
    options.scale = simulator::DefaultProperties(simulator::TModel::Ets);
    options.scale.capacity = articles;
    options.keepsRequests = false;
    simulator::TVirtualScale scale(options);
    scale.Start();

    TAddingClock clock(shorter);
    TArticleView view(clock);
    const TEtsRun run = Write(scale, articles, clock, view);
    const TSpread byArticle = RatiosByArticle(view);
    std::printf("%d articles into one ETS over TCP\n", articles);
    std::printf("%-44s %9.0f ms\n", "the run", run.ms);
    std::printf("%-44s %9.0f ms, %d pauses\n", "the protocol's pauses", clock.asked.count(),
                clock.pauses);
    std::printf("%44s %9.3f    (%.3f to %.3f by article), at most %.2f\n", "ratio",
                run.ms / clock.asked.count(), byArticle.least, byArticle.most, kAtMostOfPauses);

    TAddingClock noPauses(0);
    TArticleView unpaused(noPauses);
    PrintProcessorTime("processor time", run, articles);
    PrintProcessorTime("the same without any pause", Write(scale, articles, noPauses, unpaused),
                       articles);
    std::printf("\n");
    std::fflush(stdout);
}

}  // namespace tolvane::bench
