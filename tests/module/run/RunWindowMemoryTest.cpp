// A run that finds no memory any more. That it then claims nothing wrong, wherever that is, is what
// test_memory is for.
#include <windows.h>

#include <optional>

#include "RunWindowFixture.h"
#include "tests/support/ShortMemory.h"

namespace tolvane::test {
namespace {

// No allocation of the run's thread succeeds from one of its pauses on.
class TShortMemoryClock : public TClock {
public:
    explicit TShortMemoryClock(int pause) : left_(pause) {}
    TTimePoint Now() const override { return SystemClock().Now(); }
    void Sleep(TMilliseconds) override {
        if (--left_ == 0) memory_.emplace(1, TShortMemory::ForGood);
    }
    bool IsShort() const { return memory_.has_value(); }

private:
    int left_;
    std::optional<TShortMemory> memory_;
};

// The pause from which on memory is short.
class RunWindowMemory : public TRunWindowTest, public ::testing::WithParamInterface<int> {
protected:
    RunWindowMemory() { context_.clock = &clock_; }

    TShortMemoryClock clock_{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Pauses, RunWindowMemory, ::testing::Range(1, 6));

TEST_P(RunWindowMemory, AShortageIsToldInWordsThatNeedNoneAndTheWindowCloses) {
    ThenStart("SaveBtn");
    ThenAnswer(IDOK);
    script_.When([] { return Box() == nullptr; }, [] { PostKey(VK_ESCAPE); });
    Show(2);
    EXPECT_TRUE(clock_.IsShort());
    EXPECT_EQ(box_.text, "Няма достатъчно памет");
    EXPECT_EQ(box_.icon, TBoxIcon::Error);
    EXPECT_EQ(Form(), nullptr);
    EXPECT_TRUE(IsWindowEnabled(frame_));
}

}  // namespace
}  // namespace tolvane::test
