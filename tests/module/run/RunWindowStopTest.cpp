#include <atomic>
#include <cstdio>
#include <functional>
#include <memory>
#include <ostream>
#include <string>

#include "DeafListener.h"
#include "RunWindowFixture.h"
#include "simulator/Commands.h"

namespace tolvane::test {
namespace {

enum class TPhase {
    Connecting,
    WaitingForAReply,
    PausingBeforeProgramming,
    PausingBeforeTheVersion,
    BetweenArticles,
    BetweenScales,
};

struct TCase {
    const char* name;
    TPhase phase;
    const char* button;
};

void PrintTo(const TCase& value, std::ostream* out) {
    *out << value.name;
}

constexpr TCase kWriteCases[] = {
    {"Connecting", TPhase::Connecting, "SaveBtn"},
    {"WaitingForAReply", TPhase::WaitingForAReply, "SaveBtn"},
    {"PausingBeforeProgramming", TPhase::PausingBeforeProgramming, "SaveBtn"},
    {"PausingBeforeTheVersion", TPhase::PausingBeforeTheVersion, "SaveBtn"},
    {"BetweenArticles", TPhase::BetweenArticles, "SaveBtn"},
    {"BetweenScales", TPhase::BetweenScales, "SaveBtn"},
};
constexpr TCase kDeleteCases[] = {
    {"DeletingConnecting", TPhase::Connecting, "DeleteBtn"},
    {"DeletingWaitingForAReply", TPhase::WaitingForAReply, "DeleteBtn"},
    {"DeletingPausing", TPhase::PausingBeforeProgramming, "DeleteBtn"},
    {"DeletingBetweenArticles", TPhase::BetweenArticles, "DeleteBtn"},
    {"DeletingBetweenScales", TPhase::BetweenScales, "DeleteBtn"},
};

// One pause of a run, counted from 1, lasts until the user has done something, however busy this
// computer is; a minute at most.
class THeldPauseClock : public TClock {
public:
    explicit THeldPauseClock(int held) : held_(held) {}
    TTimePoint Now() const override { return SystemClock().Now(); }
    void Sleep(TMilliseconds pause) override {
        SystemClock().Sleep(pause);
        if (++pauses_ != held_) return;
        const TTimePoint deadline = Now() + TMilliseconds(60'000);
        while (!released_ && Now() < deadline)
            SystemClock().Sleep(TMilliseconds(1));
        wasHeld_ = released_.load();
    }
    void Release() { released_ = true; }
    // A pause was held until Release.
    bool WasHeld() const { return wasHeld_; }

private:
    int held_;
    int pauses_ = 0;  // on the run's thread alone
    std::atomic<bool> released_ = false;
    std::atomic<bool> wasHeld_ = false;
};

// A run over two scales that the user ends in the middle of a phase of the first one.
class TRunWindowPhase : public TRunWindowTest, public ::testing::WithParamInterface<TCase> {
protected:
    TRunWindowPhase() {
        scales_[2].Checked = true;
        ReplaceScale(2, WithCapacity(3));
        const TPhase phase = GetParam().phase;
        if (phase == TPhase::Connecting) {
            deaf_ = std::make_unique<TDeafListener>();
            scales_[1].TCPPort = deaf_->Port();
        } else if (phase == TPhase::WaitingForAReply) {
            SetSilent(1);
        } else if (phase == TPhase::BetweenArticles) {
            SetArticles(ManyGoods(200));
        } else if (phase == TPhase::BetweenScales && IsDelete()) {
            ReplaceScale(1, WithCapacity(2));
        } else if (phase == TPhase::PausingBeforeProgramming) {
            HoldPause(1);
        } else if (phase == TPhase::PausingBeforeTheVersion) {
            HoldPause(2);
        }
    }
    void HoldPause(int number) {
        heldPause_ = std::make_unique<THeldPauseClock>(number);
        context_.clock = heldPause_.get();
    }
    static simulator::TScaleOptions WithCapacity(int capacity) {
        simulator::TScaleOptions options;
        options.scale.capacity = capacity;
        return options;
    }
    static bool IsDelete() { return std::string(GetParam().button) == "DeleteBtn"; }
    static bool IsBeforeProgramming() {
        const TPhase phase = GetParam().phase;
        return phase == TPhase::Connecting || phase == TPhase::WaitingForAReply ||
               phase == TPhase::PausingBeforeProgramming;
    }
    int Requests() { return Scale(1).State().requests.total; }
    bool IsInPhase() {
        switch (GetParam().phase) {
            case TPhase::Connecting:
                return !TextOf("ReadPropLabel").empty();
            case TPhase::WaitingForAReply:
            case TPhase::PausingBeforeProgramming:
                return IsRunning() && Requests() == 1;
            case TPhase::PausingBeforeTheVersion:
                return Requests() == 2;
            case TPhase::BetweenArticles:
                return PriceWrites(1) >= 3;
            default:
                return LogHas("Старт на запис във везна: Везна 2");
        }
    }
    void ThenStartAndWaitForThePhase(const std::function<void()>& action) {
        ThenStart(GetParam().button);
        if (IsDelete()) ThenAnswer(IDYES);
        script_.When([this] { return IsInPhase(); },
                     [this, action] {
                         NoteThreads();
                         action();
                         // A request that is under way may still reach its scale.
                         mostWrites_ = PriceWrites(1) + 1;
                         if (heldPause_) heldPause_->Release();
                         script_.Measure();
                     });
    }

    void ExpectPauseWasHeld() const {
        if (heldPause_) {
            EXPECT_TRUE(heldPause_->WasHeld());
        }
    }

    std::unique_ptr<TDeafListener> deaf_;
    std::unique_ptr<THeldPauseClock> heldPause_;
    int mostWrites_ = 0;
};

class RunWindowStop : public TRunWindowPhase {};

TEST_P(RunWindowStop, TakesEffectBeforeTheNextArticle) {
    ThenStartAndWaitForThePhase([] { SendMessageW(Part("StopReadBtn"), BM_CLICK, 0, 0); });
    ThenClose();
    Show(2);
    ExpectPauseWasHeld();
    EXPECT_LE(PriceWrites(1), mostWrites_);
    if (IsDelete()) {
        // The stop is reset for the next scale.
        EXPECT_NE(log_.find("Успешно изтрити артикули от везна: Везна 2\r\n"), std::string::npos)
            << log_;
        EXPECT_EQ(PriceWrites(2), 3);
        EXPECT_EQ(log_.find("Успешно изтрити артикули от везна: Везна 1\r\n"), std::string::npos)
            << log_;
    } else {
        EXPECT_NE(log_.find("Fail! Plu: 0 \"\" Операцията прекратена от петребителя.\r\n"
                            "Грешка при запис артикули във везна: Везна 2\r\n"),
                  std::string::npos)
            << log_;
        EXPECT_EQ(PriceWrites(2), 0);
        const bool written =
            log_.find("Успешно записани артикули във везна: Везна 1\r\n") != std::string::npos;
        EXPECT_EQ(written, GetParam().phase == TPhase::BetweenScales) << log_;
    }
}

std::string CaseName(const ::testing::TestParamInfo<TCase>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Write, RunWindowStop, ::testing::ValuesIn(kWriteCases), CaseName);
// While the first scale of such a run is being connected the stop button is not enabled yet, and
// for the second scale of this one the stop is reset.
INSTANTIATE_TEST_SUITE_P(Delete, RunWindowStop,
                         ::testing::Values(kDeleteCases[1], kDeleteCases[2], kDeleteCases[3]),
                         CaseName);

class RunWindowClose : public TRunWindowPhase {};

TEST_P(RunWindowClose, EndsTheRunAndThenTheWindow) {
    bool waited = false;
    ThenStartAndWaitForThePhase([&waited] {
        SendMessageW(Form(), WM_CLOSE, 0, 0);
        waited = Form() != nullptr;
    });
    Show(2);
    EXPECT_TRUE(waited);
    ExpectPauseWasHeld();
    EXPECT_EQ(Form(), nullptr);
    ExpectThreadGone();
    EXPECT_TRUE(IsWindowEnabled(frame_) != 0);
    EXPECT_TRUE(scales_[1].Checked);
    EXPECT_TRUE(scales_[2].Checked);
    EXPECT_LE(PriceWrites(1), mostWrites_);
    EXPECT_EQ(PriceWrites(2), 0);
    if (GetParam().phase != TPhase::BetweenScales) {
        EXPECT_TRUE(Scale(2).Requests().empty());
    }
    if (IsBeforeProgramming()) {
        EXPECT_EQ(Scale(1).State().requests.byCommand.count(simulator::kSetPrgMode), 0U);
    }
    std::printf("closing: %d turns of the message loop, longest gap %u ms\n", script_.Turns(),
                static_cast<unsigned>(script_.LongestGap()));
    // The host's windows stay alive while the run waits for the scale, here for seconds.
    const bool waitsLong =
        GetParam().phase == TPhase::Connecting || GetParam().phase == TPhase::WaitingForAReply;
    if (waitsLong) {
        EXPECT_GE(script_.Turns(), 50);
    }
}

INSTANTIATE_TEST_SUITE_P(Write, RunWindowClose, ::testing::ValuesIn(kWriteCases), CaseName);
INSTANTIATE_TEST_SUITE_P(Delete, RunWindowClose, ::testing::ValuesIn(kDeleteCases), CaseName);

}  // namespace
}  // namespace tolvane::test
