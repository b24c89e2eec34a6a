#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "simulator/VirtualScale.h"
#include "tests/support/Clocks.h"
#include "tests/support/Draw.h"
#include "tests/support/scales/TestScales.h"
#include "tests/support/upload/UploadFixture.h"
#include "text/Cp1251.h"
#include "upload/RunMarks.h"
#include "upload/ScaleRun.h"

namespace tolvane::test {
namespace {

constexpr int kRuns = 60;
constexpr int kArticles = 8;
constexpr std::size_t kScales = 3;

// What a run has shown so far. The run's thread writes, the interface thread reads.
class TSharedView : public TRunView {
public:
    struct TShown {
        std::string log;  // a line feed after each entry
        std::string connection;
        std::string progress;
        TRunCount count;
        int changes = 0;
        bool running = false;
        bool choices = true;
        bool error = false;
    };

    void ClearLog() override {
        Change([](TShown& shown) { shown.log.clear(); });
    }
    void Log(std::string line) override {
        Change([&](TShown& shown) { shown.log += ToUtf8(line) + "\n"; });
    }
    void SetConnection(std::string text) override {
        Change([&](TShown& shown) { shown.connection = std::move(text); });
    }
    void SetProgress(std::string text) override {
        Change([&](TShown& shown) { shown.progress = std::move(text); });
    }
    void ShowCount(const TRunCount& count) override {
        Change([&](TShown& shown) { shown.count = count; });
    }
    void SetRunning(bool running) override {
        Change([&](TShown& shown) { shown.running = running; });
    }
    void SetChoicesEnabled(bool enabled) override {
        Change([&](TShown& shown) { shown.choices = enabled; });
    }
    void ShowRunError(std::string) override {
        Change([](TShown& shown) { shown.error = true; });
    }
    void ShowMemoryError() noexcept override { ShowRunError({}); }
    TShown Shown() const {
        const std::lock_guard lock(mutex_);
        return shown_;
    }

private:
    template <class Body>
    void Change(Body body) {
        const std::lock_guard lock(mutex_);
        body(shown_);
        ++shown_.changes;
    }

    mutable std::mutex mutex_;
    TShown shown_;
};

enum class TWork { Write, DeleteListed, DeleteEverything, Count };

class RunThreads : public ::testing::Test {
protected:
    RunThreads() {
        simulator::TScaleOptions options;
        options.scale.capacity = kArticles;
        options.keepsRequests = false;
        for (auto& scale : scales_) {
            scale = std::make_unique<simulator::TVirtualScale>(options);
            scale->Start();
            const int number = static_cast<int>(items_.size()) + 1;
            items_.push_back(
                {NetworkScale(number, std::to_string(number), "127.0.0.1", scale->Port())});
        }
        const auto table = TableOf(ManyGoods(kArticles));
        articles_ = {table, table->Order()};
    }

    void DrawFaults();
    void Work(TWork work, TSharedView& view, TRunStop& stop);
    // What the user does during the run. Returns true when the user has abandoned the whole run.
    bool Interfere(const TSharedView& view, TRunStop& stop);
    void OneRun();

    TDraw draw_{471};
    TQuickClock clock_{{.faster = 30}};
    std::array<std::unique_ptr<simulator::TVirtualScale>, kScales> scales_;
    std::vector<TScaleObj> items_;
    TRunArticles articles_;
    int stops_ = 0;
    int abandoned_ = 0;
    int looks_ = 0;
};

// Lets one scale in three misbehave.
void RunThreads::DrawFaults() {
    using simulator::TFaultKind;
    constexpr std::array kKinds = {TFaultKind::Silent, TFaultKind::NoReply, TFaultKind::Split,
                                   TFaultKind::Drop, TFaultKind::NoStx};
    for (const auto& scale : scales_) {
        simulator::TFaultScript script;
        if (draw_(3) == 0) {
            simulator::TFault fault;
            fault.kind = kKinds.at(draw_(kKinds.size()));
            fault.request = static_cast<int>(draw_(20)) + 1;
            script.faults.push_back(fault);
        }
        scale->SetFaults(script);
    }
}

void RunThreads::Work(TWork work, TSharedView& view, TRunStop& stop) {
    TRegionalSettings regional;
    regional.decimalSeparator = ',';
    TRealScaleFactory factory(clock_);
    TScaleRun run(factory, clock_, view, stop, regional);
    if (work == TWork::DeleteEverything) {
        run.RunDeleteEverything(items_, TRunMarks(items_));
    } else {
        run.RunListed(items_, articles_, {}, work == TWork::Write);
    }
}

bool RunThreads::Interfere(const TSharedView& view, TRunStop& stop) {
    const unsigned actions = draw_(6);
    for (unsigned i = 0; i < actions; ++i) {
        std::this_thread::sleep_for(std::chrono::microseconds(draw_(60000)));
        switch (draw_(5)) {
            case 0:
                stop.Stop();
                ++stops_;
                break;
            case 1:
                stop.Abandon();
                ++abandoned_;
                return true;
            default:
                looks_ += view.Shown().changes > 0 ? 1 : 0;
                looks_ += scales_.at(draw_(kScales))->State().requests.total > 0 ? 1 : 0;
                break;
        }
    }
    return false;
}

void RunThreads::OneRun() {
    const auto work = static_cast<TWork>(draw_(static_cast<unsigned>(TWork::Count)));
    DrawFaults();
    TSharedView view;
    TRunStop stop;
    std::thread worker([&] { Work(work, view, stop); });
    const bool abandoned = Interfere(view, stop);
    worker.join();

    const TSharedView::TShown shown = view.Shown();
    EXPECT_FALSE(shown.error);
    EXPECT_FALSE(shown.running);
    EXPECT_TRUE(shown.choices);
    EXPECT_EQ(shown.connection, "");
    EXPECT_EQ(shown.progress, "");
    const std::string end = "-----------------------------------------\n";
    ASSERT_GE(shown.log.size(), end.size());
    EXPECT_EQ(shown.log.substr(shown.log.size() - end.size()), end);
    // Only an abandoned run leaves scales out.
    const std::string last = "Старт на запис във везна: " + std::to_string(kScales) + "\n";
    if (!abandoned) {
        EXPECT_NE(shown.log.find(last), std::string::npos) << shown.log;
    }
}

TEST_F(RunThreads, ARunIsStoppedGivenUpAndWatchedFromAnotherThreadAtRandomTimes) {
    for (int i = 0; i < kRuns; ++i) {
        SCOPED_TRACE("run " + std::to_string(i));
        OneRun();
    }
    std::printf("%d runs: %d stops, %d given up, %d looks at what they had done\n", kRuns, stops_,
                abandoned_, looks_);
    EXPECT_GT(stops_, 0);
    EXPECT_GT(abandoned_, 0);
    EXPECT_GT(looks_, 0);
}

}  // namespace
}  // namespace tolvane::test
