// A scale whose stored number lies outside the limits of the number field. Opening and confirming
// its dialog must not give it another number, and with that another scale's articles.
#include <climits>

#include "tests/module/settings/ScaleListFixture.h"
#include "tests/module/settings/SettingsFixture.h"
#include "tests/support/window/BoxAnswerer.h"

namespace tolvane::test {
namespace {

class StoredNumberTest : public ScaleSettingsFixture {
protected:
    // The dialog of a listed scale with this number, beside another scale.
    int ShowStored(std::int32_t number, TSteps steps) {
        const TScaleRec rec = EtsScale(number, "A", "10.0.0.7").Rec;
        listed_ = {number, 5};
        return Show(SettingsOf(rec, ports_), std::move(steps));
    }
    // Sets the focus to the number field and presses a key.
    static TStep KeyInTheNumber(int virtualKey) {
        return [virtualKey](HWND window) {
            SetFocus(ControlOf(window, "edtScaleNumb"));
            PostKey(virtualKey);
        };
    }
    static TStep Typing(std::wstring text) {
        return [text = std::move(text)](HWND window) {
            SetFocus(ControlOf(window, "edtScaleNumb"));
            SendMessageW(GetFocus(), EM_SETSEL, 0, -1);
            PostText(text);
        };
    }
    static TStep ExpectNumber(std::string number) {
        return [number = std::move(number)](HWND window) {
            EXPECT_EQ(TextOf(window, "edtScaleNumb"), number);
        };
    }
    static TStep Leaving() {
        return [](HWND window) { SetFocus(ControlOf(window, "edtScaleName")); };
    }
};

struct TStored {
    std::int32_t number;
    const char* shown;
    std::int32_t kept;
};

}  // namespace

TEST_F(StoredNumberTest, IsShownAsItIsAndKept) {
    const TStored stored[] = {{61, "61", 61},       {75, "75", 75},
                              {1000, "1000", 1000}, {INT_MAX, "2147483647", INT_MAX},
                              {-75, "75", 75},      {INT_MIN, "2147483647", INT_MAX}};
    for (const TStored& one : stored) {
        EXPECT_EQ(ShowStored(one.number, {ExpectNumber(one.shown), Pressing("btnOk")}), IDOK);
        EXPECT_EQ(confirmed_.number, one.kept);
    }
}

TEST_F(StoredNumberTest, IsKeptWhenTheUserGoesThroughTheField) {
    const TStep tab = [](HWND) { PostKey(VK_TAB); };
    EXPECT_EQ(ShowStored(75, {KeyInTheNumber(VK_TAB), ExpectNumber("75"), KeyInTheNumber(VK_END),
                              tab, ExpectNumber("75"), tab, [](HWND) { PostKey(VK_RETURN); }}),
              IDOK);
    EXPECT_EQ(confirmed_.number, 75);
}

TEST_F(StoredNumberTest, IsTheOnlyOneThatMayLieOutside) {
    EXPECT_EQ(ShowStored(75, {Typing(L"76"), Leaving(), ExpectNumber("60"), Typing(L"12"),
                              Leaving(), ExpectNumber("12"), Typing(L"75"), Leaving(),
                              ExpectNumber("75"), Typing(L"74"), Pressing("btnOk")}),
              IDOK);
    EXPECT_EQ(confirmed_.number, 60);
}

TEST_F(StoredNumberTest, StepsIntoTheLimitsByAnArrow) {
    for (const int arrow : {VK_UP, VK_DOWN}) {
        EXPECT_EQ(ShowStored(75, {KeyInTheNumber(arrow), ExpectNumber("60"), Pressing("btnOk")}),
                  IDOK);
        EXPECT_EQ(confirmed_.number, 60);
        EXPECT_EQ(ShowStored(0, {KeyInTheNumber(arrow), ExpectNumber("1"), Pressing("btnOk")}),
                  IDOK);
        EXPECT_EQ(confirmed_.number, 1);
    }
}

TEST_F(StoredNumberTest, ZeroIsShownAndRefused) {
    const TBoxAnswerer boxes;
    EXPECT_EQ(ShowStored(0, {ExpectNumber("0"), KeyInTheNumber(VK_TAB), ExpectNumber("0"),
                             Pressing("btnOk"),
                             [](HWND window) {
                                 EXPECT_EQ(GetFocus(), ControlOf(window, "edtScaleNumb"));
                                 EXPECT_EQ(TextOf(window, "edtScaleNumb"), "0");
                                 Press(window, "btnCancel");
                             }}),
              IDCANCEL);
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Такъв номер на везна вече съществува.\r\nМоля променете го.");
}

using StoredNumberInListTest = ScaleListFixture;

TEST_F(StoredNumberInListTest, StaysInTheListWhenSomethingElseIsChanged) {
    const TDialogScript dialog(kScaleSettingsFormClass, {[](HWND window) {
                                   SetFocus(ControlOf(window, "edtScaleNumb"));
                                   SetFocus(ControlOf(window, "edtScaleName"));
                                   SetTextOf(window, "edtScaleName", L"Риба");
                                   Press(window, "btnOk");
                               }});
    EXPECT_EQ(Show({EtsScale(75, "A", "10.0.0.7"), EtsScale(5, "B", "10.0.0.8")},
                   {Pressing("btnEditScale"),
                    [](HWND window) {
                        ExpectDetails(window, "75", "Риба", "10.0.0.7", "100");
                        Press(window, "btnOk");
                    }}),
              IDOK);
    ASSERT_EQ(scales_.size(), 2U);
    EXPECT_EQ(scales_[0].Rec.ScaleNumb, 75);
    EXPECT_EQ(scales_[0].Rec.ScaleName.View(), "Риба"_cp1251);
    EXPECT_EQ(scales_[1].Rec.ScaleNumb, 5);
}

}  // namespace tolvane::test
