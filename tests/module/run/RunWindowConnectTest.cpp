#include <windows.h>

#include <commctrl.h>

#include <memory>
#include <string>

#include "DeafListener.h"
#include "RunWindowFixture.h"
#include "tests/support/Clocks.h"
#include "window/CheckList.h"

namespace tolvane::test {
namespace {

// What the user does while a scale is being connected. The scales of slots 1 and 2 never answer a
// connection; that of slot 3 has room for two articles.
class RunWindowDeafScales : public TRunWindowTest {
protected:
    RunWindowDeafScales() {
        simulator::TScaleOptions options;
        options.scale.capacity = 2;
        ReplaceScale(2, options);
        scales_[3] = scales_[2];
        scales_[3].ScaleNumb = 3;
        scales_[3].ScaleName = "Везна 3"_cp1251;
        for (const int slot : {1, 2}) {
            scales_[slot].TCPPort = deaf_.Port();
            scales_[slot].Checked = true;
        }
        context_.clock = &clock_;
    }
    // Slot 3 has the virtual scale that was made for slot 2.
    simulator::TVirtualScale& LivingScale() { return Scale(2); }
    // Clicks an item's check box; the list must be enabled.
    static void ClickMark(int item) {
        const HWND list = Part("ScaleList");
        ASSERT_NE(IsWindowEnabled(list), 0);
        RECT rect{};
        rect.left = LVIR_BOUNDS;
        SendMessageW(list, LVM_GETITEMRECT, static_cast<WPARAM>(item),
                     reinterpret_cast<LPARAM>(&rect));
        const LPARAM point = MAKELPARAM(rect.left + 9, (rect.top + rect.bottom) / 2);
        const bool before = TCheckList(list).IsChecked(item);
        // The list waits for the button's release or a drag before it returns.
        PostMessageW(list, WM_LBUTTONUP, 0, point);
        SendMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, point);
        ASSERT_NE(TCheckList(list).IsChecked(item), before);
    }
    void ThenClickMarkWhileConnecting(int item) {
        script_.When([] { return LogHas("Старт на запис във везна: Везна 1"); },
                     [item] { ClickMark(item); });
    }

    TDeafListener deaf_;
    // At this pace a run gives up a scale that it cannot reach after one second.
    TQuickClock clock_{{.faster = 3}};
};

TEST_F(RunWindowDeafScales, AScaleUntickedBeforeItsTurnIsNotErased) {
    scales_[3].Checked = true;
    ThenStart("DeleteBtn");
    ThenAnswer(IDYES);
    ThenClickMarkWhileConnecting(2);
    ThenClose();
    Show(2);
    EXPECT_NE(log_.find("Старт на запис във везна: Везна 2\r\n"), std::string::npos) << log_;
    EXPECT_EQ(log_.find("Везна 3"), std::string::npos) << log_;
    EXPECT_TRUE(LivingScale().Requests().empty());
    EXPECT_FALSE(scales_[3].Checked);
}

TEST_F(RunWindowDeafScales, AScaleTickedBeforeItsTurnIsErased) {
    ThenStart("DeleteBtn");
    ThenAnswer(IDYES);
    ThenClickMarkWhileConnecting(2);
    ThenClose();
    Show(2);
    EXPECT_NE(log_.find("Успешно изтрити артикули от везна: Везна 3\r\n"), std::string::npos)
        << log_;
    EXPECT_EQ(PriceWrites(2), 2);
    EXPECT_TRUE(scales_[3].Checked);
}

// Slots 1 and 3 are swapped, so that the scale that can be connected comes first.
TEST_F(RunWindowDeafScales, AMarkThatAnotherProgramChangesOnceTheListIsDisabledCountsForNoRun) {
    std::swap(scales_[1], scales_[3]);
    scales_[1].Checked = true;
    scales_[2].Checked = false;
    scales_[3].Checked = false;
    ThenStart("DeleteBtn");
    ThenAnswer(IDYES);
    script_.When([] { return IsRunning(); },
                 [] {
                     EXPECT_EQ(IsWindowEnabled(Part("ScaleList")), 0);
                     TCheckList(Part("ScaleList")).SetChecked(1, true);
                 });
    ThenClose();
    Show(2);
    EXPECT_NE(log_.find("Успешно изтрити артикули от везна: Везна 3\r\n"), std::string::npos)
        << log_;
    EXPECT_EQ(log_.find("Старт на запис във везна: Везна 2"), std::string::npos) << log_;
}

class RunWindowClosedWhileConnecting : public TRunWindowTest,
                                       public ::testing::WithParamInterface<const char*> {};

TEST_P(RunWindowClosedWhileConnecting, AScaleThatIsConnectedAfterwardsGetsNothing) {
    TDeafListener scale;
    scales_[1].TCPPort = scale.Port();
    ThenStart(GetParam());
    if (std::string(GetParam()) == "DeleteBtn") ThenAnswer(IDYES);
    script_.When([] { return LogHas("Старт на запис във везна: Везна 1"); },
                 [&scale] {
                     SendMessageW(Form(), WM_CLOSE, 0, 0);
                     scale.Hear();
                 });
    Show(2);
    EXPECT_EQ(Form(), nullptr);
    // It was connected.
    EXPECT_EQ(scale.BytesReceived(), std::optional<std::size_t>(0));
}

std::string ButtonName(const ::testing::TestParamInfo<const char*>& info) {
    return info.param;
}
INSTANTIATE_TEST_SUITE_P(Runs, RunWindowClosedWhileConnecting,
                         ::testing::Values("SaveBtn", "DeleteBtn"), ButtonName);

}  // namespace
}  // namespace tolvane::test
