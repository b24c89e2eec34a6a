#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <optional>
#include <set>
#include <string>

#include "RunWindowFixture.h"
#include "tests/support/Draw.h"
#include "tests/support/Environment.h"
#include "tests/support/window/ObjectCounts.h"
#include "window/CheckList.h"

namespace tolvane::test {
namespace {

enum class TEnding { StopThenClose, Escape, CloseBox, OwnerGoes, Count };

// About as long as a run over both scales takes with short pauses.
constexpr unsigned kLongestMs = 600;

int RunCount() {
    return CountFromEnvironment("TOLVANE_RANDOM_STOPS", 80);
}

// What runs and their windows could leave behind.
struct THeld {
    int gdi = GdiObjects();
    int user = UserObjects();
    int atom = NextAtom();
    std::uintptr_t handle = NextHandle();
};

// Windows makes a few objects once, when they are first needed. If one way to end a run leaked each
// time, more would be left: each way is drawn in about a quarter of the runs.
constexpr int kMadeOnce = 7;

// Whether the runs have left nothing. The scales' own threads end a little later than the runs.
bool ComesDownTo(const THeld& before) {
    constexpr int kLooks = 200;
    for (int look = 0; look < kLooks && NextHandle() > before.handle; ++look)
        Sleep(50);
    const THeld now;
    std::printf("GDI %d, then %d; user %d, then %d; atom %d, then %d; handle %u, then %u\n",
                before.gdi, now.gdi, before.user, now.user, before.atom, now.atom,
                static_cast<unsigned>(before.handle), static_cast<unsigned>(now.handle));
    return now.gdi <= before.gdi + kMadeOnce && now.user <= before.user + kMadeOnce &&
           now.atom <= before.atom && now.handle <= before.handle;
}

class RunWindowRandom : public TRunWindowTest {
protected:
    // Stands for the list window in one run, and may go in the middle of it.
    HWND NewOwner() const {
        return CreateWindowExW(0, L"STATIC", L"List", WS_CHILD | WS_VISIBLE, 0, 0, 500, 400, frame_,
                               nullptr, nullptr, nullptr);
    }
    // Notes the threads of the run. There are none when it has ended, even before the window shows
    // that.
    void NoteNewThreads() {
        const std::set<TThreadKey> now = Threads();
        std::set_difference(now.begin(), now.end(), threadsAtRest_.begin(), threadsAtRest_.end(),
                            std::inserter(threadsInRun_, threadsInRun_.end()));
    }
    void OneRun();
    void ThenEnd(TEnding ending, DWORD delayMs, HWND owner);

    TDraw draw_{20240611};
    std::set<TThreadKey> threadsAtRest_;
    std::array<int, static_cast<std::size_t>(TEnding::Count)> endings_{};
};

void RunWindowRandom::ThenEnd(TEnding ending, DWORD delayMs, HWND owner) {
    script_.When([start = GetTickCount(), delayMs] { return GetTickCount() - start >= delayMs; },
                 [this, ending, owner] {
                     NoteNewThreads();
                     if (ending == TEnding::StopThenClose && IsRunning())
                         Click(Part("StopReadBtn"));
                     if (ending == TEnding::Escape) PostKey(VK_ESCAPE);
                     if (ending == TEnding::CloseBox) PostMessageW(Form(), WM_CLOSE, 0, 0);
                     if (ending == TEnding::OwnerGoes) DestroyWindow(owner);
                 });
    if (ending == TEnding::StopThenClose)
        script_.When([] { return LogEnds(); }, [] { PostKey(VK_ESCAPE); });
}

void RunWindowRandom::OneRun() {
    const auto ending = static_cast<TEnding>(draw_(static_cast<unsigned>(TEnding::Count)));
    const DWORD delay = draw_(kLongestMs);
    const int kind = static_cast<int>(draw_(4)) + 1;
    const bool everything = kind == 4 || draw_(3) == 0;
    threadsInRun_.clear();
    ++endings_.at(static_cast<std::size_t>(ending));
    const HWND owner = NewOwner();
    script_.When([] { return IsAtRest(); },
                 [=, this] {
                     threadsAtRest_ = Threads();
                     Click(Part(everything ? "DeleteBtn" : "SaveBtn"));
                     if (!everything) ThenEnd(ending, delay, owner);
                 });
    if (everything)
        script_.When([] { return Box() != nullptr; },
                     [=, this] {
                         Click(GetDlgItem(Box(), IDYES));
                         ThenEnd(ending, delay, owner);
                     });
    ShowRunWindow(owner, TRunNumber{kind}, context_);
    EXPECT_EQ(Form(), nullptr);
    EXPECT_EQ(IsWindow(owner) != 0, ending != TEnding::OwnerGoes);
    if (IsWindow(owner) != 0) DestroyWindow(owner);
}

TEST_F(RunWindowRandom, ARunMayBeEndedAtAnyTime) {
    simulator::TScaleOptions small;
    small.scale.capacity = 5;
    small.scale.labelMode = 1;
    ReplaceScale(1, small);
    ReplaceScale(2, small);
    SetArticles(ManyGoods(5));
    scales_[2].Checked = true;
    ShortenPauses();
    const int runs = RunCount();
    DWORD longest = 0;
    int inTheMiddle = 0;
    constexpr int kWarmUp = 20;
    std::optional<THeld> before;
    for (int i = 0; i < runs; ++i) {
        if (i == kWarmUp) before.emplace();
        SCOPED_TRACE("run " + std::to_string(i));
        script_.Measure();
        OneRun();
        longest = std::max(longest, script_.LongestGap());
        inTheMiddle += threadsInRun_.empty() ? 0 : 1;
        ASSERT_TRUE(script_.IsDone());
        if (!threadsInRun_.empty()) ExpectThreadGone();
        ASSERT_TRUE(IsWindowEnabled(frame_) != 0);
        ASSERT_TRUE(scales_[1].Checked && scales_[2].Checked);
    }
    std::printf(
        "%d runs, %d ended in the middle: %d stopped, %d closed with Esc, %d by the box, %d with "
        "their owner; "
        "longest gap %u ms (opening the windows included)\n",
        runs, inTheMiddle, endings_[0], endings_[1], endings_[2], endings_[3],
        static_cast<unsigned>(longest));
    EXPECT_GT(inTheMiddle, runs / 2);
    EXPECT_TRUE(!before || ComesDownTo(*before));
    // After all that the scales still work.
    script_.When([] { return IsAtRest(); }, [] { Click(Part("SaveBtn")); });
    ThenClose();
    Show(2);
    EXPECT_NE(log_.find("Успешно записани артикули във везна: Везна 2\r\n"), std::string::npos)
        << log_;
}

}  // namespace
}  // namespace tolvane::test
