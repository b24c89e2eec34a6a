#include <ostream>
#include <variant>

#include "tests/module/settings/ExpectedScale.h"
#include "tests/module/settings/ScaleListFixture.h"

namespace tolvane::test {
namespace {

// One thing that the user does with the mouse.
struct TClick {  // into the middle of a control
    const char* control;
};
struct TArrow {  // on the upper or the lower of the arrows of a number
    const char* arrows;
    bool up;
};
struct TPick {  // opens a list by a click and clicks an item of it
    const char* combo;
    int item;
};
struct TFill {  // clicks into the address at its left end and types
    const wchar_t* text;
};
using TDeed = std::variant<TClick, TArrow, TPick, TFill>;
using TDeeds = std::vector<TDeed>;

constexpr TArrow Up(const char* arrows) {
    return {arrows, true};
}
constexpr TArrow Down(const char* arrows) {
    return {arrows, false};
}

struct TTransportClicks {
    const char* transport;
    TDeeds add;  // in the connection dialog
    TExpectedScale added;
    TDeeds edit;  // in the dialog of the scale that was added
    TExpectedScale edited;
};
void PrintTo(const TTransportClicks& transport, std::ostream* out) {
    *out << transport.transport;
}

// Typing over a group replaces digit by digit: a third digit would stay, so each group gets three.
const TTransportClicks kTransportClicks[] = {
    {"RS232",
     {Up("udScaleNumb"), TPick{"cbScaleType", 2}, TPick{"cbbEncoding", 0}, Up("udScaleAddr"),
      Up("udScaleAddr"), TPick{"cbPickComPort", 1}, TPick{"cbBaudRate", 4}},
     {2, "(SI) - COM3 (2)", "COM3", 1001, 300, 0, 4, 0, 2},
     {Down("udScaleNumb"), Down("udScaleAddr"), TClick{"btnRefreshComList"},
      TPick{"cbPickComPort", 0}, TPick{"cbBaudRate", 1}},
     {1, "(SI) - COM3 (2)", "COM1", 1001, 300, 0, 1, 0, 1}},
    {"TCP",
     {TPick{"cbScaleType", 1}, TClick{"rbTCP"}, TFill{L"10.0.0.7"}},
     {1, "(ETS) - 10.0.0.7 (1)", "10.0.0.7", 100, 5000, 1, 0, 2, 0},
     {Up("udScaleNumb"), TPick{"cbbEncoding", 1}, TFill{L"192168001020"}},
     {2, "(ETS) - 10.0.0.7 (1)", "192.168.1.20", 100, 5000, 1, 0, 1, 0}},
    {"UDP",
     {TClick{"rbTCP"}, TClick{"rbUDP"}, TFill{L"192.168.1.30"}},
     {1, "(EVL) - 192.168.1.30 (1)", "192.168.1.30", 1001, 16, 2, 0, 2, 0},
     {TFill{L"010000000008"}, TPick{"cbScaleType", 2}},
     {1, "(EVL) - 192.168.1.30 (1)", "10.0.0.8", 1001, 300, 2, 0, 2, 0}},
};

// The click must reach the control: nothing else may lie at that point of the screen.
void Click(HWND control, POINT at) {
    POINT screen = at;
    ClientToScreen(control, &screen);
    ASSERT_EQ(WindowFromPoint(screen), control);
    ASSERT_NE(IsWindowEnabled(control), 0);
    ClickAt(control, at);
}

POINT Middle(HWND control) {
    RECT client{};
    GetClientRect(control, &client);
    return {client.right / 2, client.bottom / 2};
}

void ClickItem(HWND list, int item) {
    RECT rect{};
    SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&rect));
    Click(list, {rect.left + 5, (rect.top + rect.bottom) / 2});
}

// Makes the steps of each deed, one for each control that is clicked.
struct TStepsOf {
    TSteps operator()(const TClick& click) const {
        return {[=](HWND window) {
            const HWND control = ControlOf(window, click.control);
            Click(control, Middle(control));
        }};
    }
    TSteps operator()(const TArrow& arrow) const {
        return {[=](HWND window) {
            const HWND arrows = ControlOf(window, arrow.arrows);
            const POINT middle = Middle(arrows);
            Click(arrows, {middle.x, arrow.up ? middle.y / 2 : middle.y * 3 / 2});
        }};
    }
    TSteps operator()(const TPick& pick) const {
        return {[=](HWND window) {
                    const HWND combo = ControlOf(window, pick.combo);
                    Click(combo, Middle(combo));
                },
                [=](HWND window) {
                    COMBOBOXINFO info{};
                    info.cbSize = sizeof info;
                    ASSERT_NE(GetComboBoxInfo(ControlOf(window, pick.combo), &info), 0);
                    ClickItem(info.hwndList, pick.item);
                },
                [=](HWND window) { EXPECT_EQ(ComboChoice(window, pick.combo), pick.item); }};
    }
    TSteps operator()(const TFill& fill) const {
        return {[](HWND window) {
                    const HWND field = ControlOf(window, "edtIpAddress");
                    Click(field, {1, Middle(field).y});
                },
                [=](HWND) { PostText(fill.text); }};
    }
};

TSteps Clicks(const TDeeds& deeds) {
    TSteps steps;
    for (const TDeed& deed : deeds) {
        const TSteps more = std::visit(TStepsOf{}, deed);
        steps.insert(steps.end(), more.begin(), more.end());
    }
    return steps;
}

// Clicks in the connection dialog, which is then confirmed.
TSteps ClicksAndOk(TDeeds deeds) {
    deeds.push_back(TClick{"btnOk"});
    return Clicks(deeds);
}

void ClickThird(HWND window) {
    ClickItem(ControlOf(window, "ScaleListBox"), 2);
}

class ScaleMouseTest : public ScaleListFixture,
                       public testing::WithParamInterface<TTransportClicks> {
protected:
    static std::vector<TScaleObj> Three() {
        std::vector<TScaleObj> scales = kTwo;
        scales.push_back(ScaleOf(GetParam().added));
        return scales;
    }
};

}  // namespace

TEST_P(ScaleMouseTest, AddsAScale) {
    const TDialogScript dialog(kScaleSettingsFormClass, ClicksAndOk(GetParam().add));
    EXPECT_EQ(Show(kTwo, Clicks({TClick{"btnAddScale"}, TClick{"btnOk"}})), IDOK);
    ASSERT_EQ(scales_.size(), 3U);
    ExpectScale(scales_[2].Rec, GetParam().added);
    EXPECT_TRUE(scales_[2].Rec.Checked);
}

TEST_P(ScaleMouseTest, EditsAScale) {
    const TDialogScript dialog(kScaleSettingsFormClass, ClicksAndOk(GetParam().edit));
    TSteps steps = Clicks({TClick{"btnEditScale"}, TClick{"btnOk"}});
    steps.insert(steps.begin(), &ClickThird);
    EXPECT_EQ(Show(Three(), steps), IDOK);
    ASSERT_EQ(scales_.size(), 3U);
    ExpectScale(scales_[2].Rec, GetParam().edited);
    ExpectScale(scales_[0].Rec, {3, "Месна витрина", "192.168.1.10", 100, 5000, 1, 0, 2, 0});
}

TEST_P(ScaleMouseTest, DeletesAScale) {
    TSteps steps = Clicks({TClick{"btnDeleteScale"}, TClick{"btnOk"}});
    steps.insert(steps.begin(), &ClickThird);
    EXPECT_EQ(Show(Three(), steps), IDOK);
    ASSERT_EQ(scales_.size(), 2U);
    EXPECT_EQ(scales_[0].Rec.ScaleNumb, 3);
    EXPECT_EQ(scales_[1].Rec.ScaleNumb, 8);
}

INSTANTIATE_TEST_SUITE_P(Transports, ScaleMouseTest, testing::ValuesIn(kTransportClicks),
                         [](const auto& test) { return std::string(test.param.transport); });

}  // namespace tolvane::test
