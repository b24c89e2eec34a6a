#include "simulator/FaultSwitches.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tolvane::simulator {
namespace {

const TFaultSwitch* Find(const TFaultSwitches& switches, const std::string& text) {
    const auto& all = switches.All();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const auto& entry) { return entry.text == text; });
    return found == all.end() ? nullptr : &*found;
}

TEST(FaultSwitchesTest, AFault_IsToldAsTheCommandLineTakesIt) {
    for (const std::string text :
         {"no-reply", "error,command=SetPrice,from=3,to=9,code=7",
          "bad-checksum,command=0x50,request=2", "late,percent=12.5,ms=1500,times=3",
          "noise-after,count=2,bytes=55AA", "silent,ms=0"})
        EXPECT_EQ(FaultText(FaultFromText(text)), text);
}

TEST(FaultSwitchesTest, EveryKindIsThereAndOff) {
    const TFaultSwitches switches({});
    EXPECT_EQ(switches.All().size(), 26U);
    EXPECT_TRUE(switches.Script().faults.empty());
    ASSERT_NE(Find(switches, "half-close"), nullptr);
    EXPECT_FALSE(Find(switches, "half-close")->on);
}

TEST(FaultSwitchesTest, TheScalesOwnFaultsAreThereAndOn) {
    const TFaultSwitches switches(
        {.faults = {FaultFromText("slow"), FaultFromText("error,code=7")}, .seed = 9});
    EXPECT_EQ(switches.All().size(), 27U);
    EXPECT_EQ(switches.All()[0].text, "slow");
    EXPECT_TRUE(switches.All()[1].on);
    EXPECT_EQ(switches.Script().faults.size(), 2U);
    EXPECT_EQ(switches.Script().seed, 9U);
}

TEST(FaultSwitchesTest, Set_SwitchesWhatIsThereAndAddsTheRest) {
    TFaultSwitches switches({});
    switches.Set("drop", true);
    switches.Set("error,code=7,from=3", true);
    EXPECT_EQ(switches.All().size(), 27U);
    ASSERT_EQ(switches.Script().faults.size(), 2U);
    EXPECT_EQ(switches.Script().faults[0].kind, TFaultKind::Drop);
    EXPECT_EQ(switches.Script().faults[1].from, 3);
    switches.Set("error,from=3,code=7", false);
    EXPECT_EQ(switches.All().size(), 27U);
    EXPECT_EQ(switches.Script().faults.size(), 1U);
    ASSERT_NE(Find(switches, "error,from=3,code=7"), nullptr);
    EXPECT_FALSE(Find(switches, "error,from=3,code=7")->on);
}

TEST(FaultSwitchesTest, Set_RefusesNonsenseAndTooMany) {
    TFaultSwitches switches({});
    EXPECT_THROW(switches.Set("", true), std::runtime_error);
    EXPECT_THROW(switches.Set("<script>", true), std::runtime_error);
    EXPECT_THROW(switches.Set("slow,ms=x", true), std::runtime_error);
    for (std::size_t i = 26; i < TFaultSwitches::kMost; ++i)
        switches.Set("slow,ms=" + std::to_string(i), true);
    EXPECT_THROW(switches.Set("slow,ms=5", true), std::runtime_error);
    switches.Set("slow,ms=30", false);
    EXPECT_EQ(switches.All().size(), TFaultSwitches::kMost);
}

}  // namespace
}  // namespace tolvane::simulator
