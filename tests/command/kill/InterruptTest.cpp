// `tolvane write` gets Ctrl+C or SIGTERM, once and twice.

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <thread>

#include "KillShop.h"

namespace tolvane::test {
namespace {

using simulator::TFaultKind;
using std::chrono::milliseconds;

// The longest time-out of a network scale, 3 seconds, with the pause before its mode is changed and
// what the system takes.
constexpr milliseconds kLongestEnd{3000 + 500 + 700};
// Far below any time-out.
constexpr milliseconds kAtOnce{1000};
constexpr int kInterrupted = 130;

// Before its first article a run asks for weighing mode twice, for programming mode and for the
// version.
constexpr int kBeforeArticles = 4;
// Of an article in label mode 1: a price and eight texts.
constexpr int kOfAnArticle = 9;

class InterruptedWrite : public testing::Test {
protected:
    void Start(const std::string& which = "--all") { run_ = shop_.Write(0, which); }
    // From the request of that number on, nothing is answered.
    void Silence(std::size_t scale, int request) {
        shop_.Scale(scale).SetFaults({{{.kind = TFaultKind::Silent, .request = request}}});
    }
    void AwaitRequest(std::size_t scale, int request) {
        ASSERT_TRUE(shop_.Scale(scale).WaitForRequests(request, kDeadline)) << run_->Error();
    }
    void ExpectInterrupted(milliseconds within) {
        const auto end = run_->WaitFor(within);
        ASSERT_TRUE(end) << "still runs after " << within.count() << " ms";
        EXPECT_EQ(end->exitCode, kInterrupted) << run_->Error();
    }
    // Each scale holds whole articles, and its ledger claims exactly those.
    void ExpectWholeArticles(std::size_t scale) {
        const THeld held = HeldBy(shop_.Scale(scale).State());
        const TClaimed claimed = shop_.Claimed(scale);
        EXPECT_EQ(held.size(), claimed.size());
        for (const auto& [number, article] : held) {
            EXPECT_TRUE(article == ReferenceAt(0).held.at(scale).at(number)) << number;
            EXPECT_TRUE(claimed.contains(number)) << number;
        }
    }
    void ExpectThatTheNextRunCompletes() {
        for (std::size_t i = 0; i < kScales; ++i)
            shop_.Scale(i).SetFaults({});
        Start("--changed");
        const auto end = run_->WaitFor(kDeadline);
        ASSERT_TRUE(end && end->exitCode == 0) << run_->Error();
        ExpectComplete(shop_, 0);
    }

    TKillShop shop_;
    std::unique_ptr<TProgramRun> run_;
};

class InterruptedWriteBy : public InterruptedWrite, public testing::WithParamInterface<int> {};

TEST_P(InterruptedWriteBy, EndsBetweenTwoArticlesAndPutsTheScalesBackToWeighing) {
    Start();
    // In the middle of its second article.
    ASSERT_NO_FATAL_FAILURE(AwaitRequest(2, kBeforeArticles + kOfAnArticle + 4));
    run_->Signal(GetParam());
    ASSERT_NO_FATAL_FAILURE(ExpectInterrupted(kLongestEnd));
    const nlohmann::json report = ReportOf(*run_);
    EXPECT_EQ(report.at("exitCode"), kInterrupted);
    for (std::size_t i = 0; i < kScales; ++i) {
        SCOPED_TRACE("scale " + std::to_string(i + 1));
        EXPECT_FALSE(shop_.Scale(i).State().programming);
        ExpectWholeArticles(i);
        const nlohmann::json& scale = report.at("scales").at(i);
        EXPECT_EQ(scale.at("outcome"), "stopped");
        EXPECT_EQ(scale.at("mayBeProgramming"), false);
        EXPECT_EQ(scale.at("written"), shop_.Claimed(i).size());
        EXPECT_EQ(scale.at("pending"), kArticles - shop_.Claimed(i).size());
        EXPECT_GE(shop_.Claimed(i).size(), 2U);
        EXPECT_LT(shop_.Claimed(i).size(), std::size_t{kArticles});
    }
    ExpectThatTheNextRunCompletes();
}
INSTANTIATE_TEST_SUITE_P(Signals, InterruptedWriteBy, testing::Values(SIGINT, SIGTERM),
                         [](const auto& signal) {
                             return std::string(signal.param == SIGINT ? "CtrlC" : "Termination");
                         });

TEST_F(InterruptedWrite, WaitsForASilentScaleOnceAtMost) {
    Silence(0, kBeforeArticles + 3);
    Start();
    ASSERT_NO_FATAL_FAILURE(AwaitRequest(0, kBeforeArticles + 3));
    run_->Signal(SIGINT);
    ASSERT_NO_FATAL_FAILURE(ExpectInterrupted(kLongestEnd));
    const nlohmann::json report = ReportOf(*run_);
    EXPECT_EQ(report.at("scales").at(0).at("mayBeProgramming"), true);
    for (const std::size_t answering : {1U, 2U}) {
        EXPECT_FALSE(shop_.Scale(answering).State().programming);
        ExpectWholeArticles(answering);
    }
    ExpectThatTheNextRunCompletes();
}

TEST_F(InterruptedWrite, WaitsOnceAtMostForAScaleThatHasNeverAnswered) {
    Silence(0, 1);
    Start();
    ASSERT_NO_FATAL_FAILURE(AwaitRequest(0, 1));
    run_->Signal(SIGINT);
    ASSERT_NO_FATAL_FAILURE(ExpectInterrupted(kLongestEnd));
    EXPECT_EQ(ReportOf(*run_).at("scales").at(0).at("mayBeProgramming"), false);
    ExpectThatTheNextRunCompletes();
}

TEST_F(InterruptedWrite, TheSecondSignalEndsAtOnceAndLosesNothingThatWasSaved) {
    // Scale 3 is silent in its sixth article, when a second has passed since its first.
    Silence(2, kBeforeArticles + 5 * kOfAnArticle + 3);
    Start();
    ASSERT_NO_FATAL_FAILURE(AwaitRequest(2, kBeforeArticles + 5 * kOfAnArticle + 3));
    const TClaimed saved = shop_.Claimed(2);
    EXPECT_GE(saved.size(), 1U);
    run_->Signal(SIGINT);
    const auto deadline = std::chrono::steady_clock::now() + kDeadline;
    while (run_->Error().find("Interrupted") == std::string::npos &&
           std::chrono::steady_clock::now() < deadline)
        std::this_thread::yield();
    run_->Signal(SIGINT);
    ASSERT_NO_FATAL_FAILURE(ExpectInterrupted(kAtOnce));
    EXPECT_EQ(shop_.Claimed(2), saved);
    ExpectClaimsRight(shop_, 0);
    ExpectThatTheNextRunCompletes();
}

// Whether the program catches SIGINT by now.
bool CatchesInterrupts(const TProgramRun& run) {
    std::ifstream status("/proc/" + std::to_string(run.Process()) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("SigCgt:"))
            return (std::stoull(line.substr(7), nullptr, 16) >> (SIGINT - 1) & 1U) != 0;
    return false;
}

TEST_F(InterruptedWrite, EndsWhileItWaitsForAnotherRun) {
    for (std::size_t i = 0; i < kScales; ++i)
        shop_.Scale(i).SetFaults({{{.kind = TFaultKind::Slow, .ms = milliseconds(1000)}}});
    Start();
    for (std::size_t i = 0; i < kScales; ++i)
        ASSERT_NO_FATAL_FAILURE(AwaitRequest(i, 1));
    const auto other = std::move(run_);
    // A database of its own: the embedded engine opens a file for one program.
    run_ = shop_.Start(
        {"write", "--all", "--lock-wait", "10m", "--database", (shop_ / kMoments[1]).string()},
        "waiting");
    const auto deadline = std::chrono::steady_clock::now() + kDeadline;
    while (!CatchesInterrupts(*run_) && std::chrono::steady_clock::now() < deadline)
        std::this_thread::yield();
    run_->Signal(SIGINT);
    ExpectInterrupted(kLongestEnd);
    EXPECT_FALSE(other->WaitFor(milliseconds(0)));
}

}  // namespace
}  // namespace tolvane::test
