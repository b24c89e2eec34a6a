#include <optional>
#include <ostream>

#include "tests/module/settings/ExpectedScale.h"
#include "tests/module/settings/ScaleListFixture.h"

namespace tolvane::test {
namespace {

// What is pressed, character by character: Tab '\t', Enter '\r', the space bar ' ', the arrows as
// such, '⇤' Shift+Tab. All else is typed.
struct TTransportKeys {
    const char* transport;
    const wchar_t* add;  // in the connection dialog
    TExpectedScale added;
    const wchar_t* edit;  // in the dialog of the scale that was added
    TExpectedScale edited;
};
void PrintTo(const TTransportKeys& transport, std::ostream* out) {
    *out << transport.transport;
}

// The dialog's fields: number, name, type, code table, transport, then those of the transport.
const TTransportKeys kTransportKeys[] = {
    {"RS232",
     L"5\tРиба\t↓\t↑\t\t17\t↓↓\t\t↓↓\r",
     {5, "Риба", "COM3", 1001, 5000, 0, 2, 1, 17},
     L"6\t\t↓\t↑\t\t18\t↑\t\t↓\r",
     {6, "Риба", "COM1", 1001, 300, 0, 3, 0, 18}},
    {"TCP",
     L"9\tКайма\t↓\t\t→\t10.0.0.7\t\t\t4001\r",
     {9, "Кайма", "10.0.0.7", 4001, 5000, 1, 0, 2, 0},
     L"10\tЛук\t↑\t\t\t192.168.1.20\t\t\t100\r",
     {10, "Лук", "192.168.1.20", 100, 16, 1, 0, 2, 0}},
    {"UDP",
     L"60\t\t↓↓\t\t→→\t192.168.001.030\r",
     {60, "(SI) - 192.168.1.30 (60)", "192.168.1.30", 1001, 300, 2, 0, 2, 0},
     L"1\tСирена\t\t\t\t10.0.0.8\r",
     {1, "Сирена", "10.0.0.8", 1001, 300, 2, 0, 2, 0}},
};

class ScaleKeyboardTest : public ScaleListFixture,
                          public testing::WithParamInterface<TTransportKeys> {
protected:
    // A step for each key.
    TSteps Keys(const wchar_t* keys) {
        TSteps steps;
        for (; *keys != L'\0'; ++keys)
            steps.push_back([this, key = *keys](HWND) { PressOrType(key); });
        return steps;
    }

    std::vector<TScaleObj> Three() const {
        std::vector<TScaleObj> scales = kTwo;
        scales.push_back(ScaleOf(GetParam().added));
        return scales;
    }

private:
    void PressOrType(wchar_t key) {
        constexpr std::pair<wchar_t, int> kKeys[] = {
            {L'\t', VK_TAB}, {L'\r', VK_RETURN}, {L' ', VK_SPACE}, {L'↓', VK_DOWN},
            {L'↑', VK_UP},   {L'→', VK_RIGHT},   {L'⇤', VK_TAB},
        };
        // Held until the next key: this one is handled when the step is over.
        held_.reset();
        if (key == L'⇤') held_.emplace(VK_SHIFT);
        for (const auto& [character, virtualKey] : kKeys) {
            if (character != key) continue;
            PostKey(virtualKey);
            return;
        }
        PostText(std::wstring(1, key));
    }

    std::optional<THeldKey> held_;
};

}  // namespace

// The list has the focus at first. The fifth Tab reaches the button that adds a scale, three more
// from there the one that confirms.
TEST_P(ScaleKeyboardTest, AddsAScale) {
    const TDialogScript dialog(kScaleSettingsFormClass, Keys(GetParam().add));
    EXPECT_EQ(Show(kTwo, Keys(L"\t\t\t\t\t \t\t\t\r")), IDOK);
    ASSERT_EQ(scales_.size(), 3U);
    ExpectScale(scales_[2].Rec, GetParam().added);
    EXPECT_TRUE(scales_[2].Rec.Checked);
}

// The arrows go to the third scale, Shift+Tab back past the cancel and OK buttons to the one that
// edits, and Tab on to OK.
TEST_P(ScaleKeyboardTest, EditsAScale) {
    const TDialogScript dialog(kScaleSettingsFormClass, Keys(GetParam().edit));
    EXPECT_EQ(Show(Three(), Keys(L"↓↓⇤⇤⇤⇤ \t\t\r")), IDOK);
    ASSERT_EQ(scales_.size(), 3U);
    ExpectScale(scales_[2].Rec, GetParam().edited);
    ExpectScale(scales_[0].Rec, {3, "Месна витрина", "192.168.1.10", 100, 5000, 1, 0, 2, 0});
}

TEST_P(ScaleKeyboardTest, DeletesAScale) {
    EXPECT_EQ(Show(Three(), Keys(L"↓↓⇤⇤⇤\r\t\r")), IDOK);
    ASSERT_EQ(scales_.size(), 2U);
    EXPECT_EQ(scales_[0].Rec.ScaleNumb, 3);
    EXPECT_EQ(scales_[1].Rec.ScaleNumb, 8);
}

INSTANTIATE_TEST_SUITE_P(Transports, ScaleKeyboardTest, testing::ValuesIn(kTransportKeys),
                         [](const auto& test) { return std::string(test.param.transport); });

}  // namespace tolvane::test
