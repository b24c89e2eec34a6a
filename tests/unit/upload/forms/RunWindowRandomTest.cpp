#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "RunWindowFixture.h"
#include "window/CheckList.h"

namespace tolvane::test {
namespace {

enum class TEnding { StopThenClose, Escape, CloseBox, OwnerGoes, Count };

// About as long as a run over both scales takes.
constexpr unsigned kLongestMs = 4500;

int RunCount() {
    const char* count = std::getenv("TOLVANE_RANDOM_STOPS");
    return count == nullptr ? 8 : std::atoi(count);
}

class RunWindowRandom : public TRunWindowTest {
protected:
    // From 0 to `limit` - 1; a distribution of the standard library would depend on the library.
    unsigned Draw(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
    // The list window's stand-in of one run; it may go in the middle of it.
    HWND NewOwner() const {
        return CreateWindowExW(0, L"STATIC", L"List", WS_CHILD | WS_VISIBLE, 0, 0, 500, 400, frame_,
                               nullptr, nullptr, nullptr);
    }
    void OneRun();
    void ThenEnd(TEnding ending, DWORD delayMs, HWND owner);

    std::mt19937 random_{20240611};
    std::array<int, static_cast<std::size_t>(TEnding::Count)> endings_{};
};

void RunWindowRandom::ThenEnd(TEnding ending, DWORD delayMs, HWND owner) {
    script_.When([start = GetTickCount(), delayMs] { return GetTickCount() - start >= delayMs; },
                 [this, ending, owner] {
                     if (IsRunning()) NoteThreads();
                     if (ending == TEnding::StopThenClose && IsRunning())
                         Click(Part("StopReadBtn"));
                     if (ending == TEnding::Escape) PressKey(VK_ESCAPE);
                     if (ending == TEnding::CloseBox) PostMessageW(Form(), WM_CLOSE, 0, 0);
                     if (ending == TEnding::OwnerGoes) DestroyWindow(owner);
                 });
    if (ending == TEnding::StopThenClose)
        script_.When([] { return LogEnds(); }, [] { PressKey(VK_ESCAPE); });
}

void RunWindowRandom::OneRun() {
    const auto ending = static_cast<TEnding>(Draw(static_cast<unsigned>(TEnding::Count)));
    const DWORD delay = Draw(kLongestMs);
    const int kind = static_cast<int>(Draw(4)) + 1;
    const bool everything = kind == 4 || Draw(3) == 0;
    threadsInRun_ = 0;
    ++endings_.at(static_cast<std::size_t>(ending));
    const HWND owner = NewOwner();
    script_.When([] { return IsAtRest(); },
                 [=, this] {
                     Click(Part(everything ? "DeleteBtn" : "SaveBtn"));
                     if (!everything) ThenEnd(ending, delay, owner);
                 });
    if (everything)
        script_.When([] { return Box() != nullptr; },
                     [=, this] {
                         Click(GetDlgItem(Box(), IDYES));
                         ThenEnd(ending, delay, owner);
                     });
    ShowRunWindow(owner, kind, context_);
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
    const int runs = RunCount();
    DWORD longest = 0;
    int inTheMiddle = 0;
    for (int i = 0; i < runs; ++i) {
        SCOPED_TRACE("run " + std::to_string(i));
        script_.Measure();
        OneRun();
        longest = std::max(longest, script_.LongestGap());
        inTheMiddle += threadsInRun_ != 0 ? 1 : 0;
        ASSERT_TRUE(script_.IsDone());
        if (threadsInRun_ != 0) ExpectThreadGone();
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
    // The scales are as they should be after all that.
    script_.When([] { return IsAtRest(); }, [] { Click(Part("SaveBtn")); });
    ThenClose();
    Show(2);
    EXPECT_NE(log_.find("Успешно записани артикули във везна: Везна 2\r\n"), std::string::npos)
        << log_;
}

}  // namespace
}  // namespace tolvane::test
