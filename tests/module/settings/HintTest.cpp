#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include "settings/forms/uHint.h"
#include "tests/support/window/HostFrame.h"
#include "tests/support/window/Screenshot.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

constexpr const char* kRs232 =
    "RS232\r\n\r\nДиректна връзка с везната.\r\nСкорост 38400 kb/s\r\n\r\n"
    "За везни EVL - CASH67\r\nЗа везни ETS - настройва се от меню.";
constexpr const char* kECov =
    "eCov Converter\r\n\r\neCov модула се пуска в режим на TCP сървър.\r\nПорт: 100";
constexpr const char* kWizNet =
    "WizNet Convertor\r\n"
    "\r\n"
    "Инсталирайте и стартирайте \"WIZ100SR/WIZ110SR Configuration Tool\".\r\n"
    "Натиснете бутона \"Search\" за сканиране на мрежата за налични WizNet модули.\r\n"
    "В поле \"Local IP\" посочете уникален за Вашата мрежа IP адрес, на който в бъдеще ще "
    "съответства този модул и везна.\r\n"
    "В поле \"Server IP\" посочете IP адреса на сървъра, от който ще се въвеждат данни във "
    "везната.\r\n"
    "Въведете 1001 в двете полета \"Port\".\r\n"
    "Изберете \"Use UDP mode\".\r\n"
    "Скорост на комуникация 38400kb/s, 8 бита данни, 1 стоп бит.\r\n"
    "Въведето 2 в полето \"Time\" - пакета се формира по време.\r\n"
    "\r\n"
    "Запишете направените настройки в модула с натискане на бутона \"Setting\".";

class HintTest : public testing::Test {
protected:
    void Show(std::vector<TDialogScript::TStep> steps) {
        THintForm form(host_.Frame());
        const TDialogScript script(kHintFormClass, std::move(steps));
        form.ShowModal();
    }

    THostFrame host_;
};

HWND Pages(HWND window) {
    return ControlOf(window, "PageControl");
}

std::string TabCaption(HWND window, int page) {
    std::wstring text(64, L'\0');
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    SendMessageW(Pages(window), TCM_GETITEMW, static_cast<WPARAM>(page),
                 reinterpret_cast<LPARAM>(&item));
    return Utf8(item.pszText);
}

bool IsSeen(HWND window, const char* name) {
    return IsWindowVisible(ControlOf(window, name)) != 0;
}

// Clicks a tab with the mouse.
void ClickTab(HWND window, int page) {
    RECT rect{};
    SendMessageW(Pages(window), TCM_GETITEMRECT, static_cast<WPARAM>(page),
                 reinterpret_cast<LPARAM>(&rect));
    const LPARAM at = MAKELPARAM((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2);
    SendMessageW(Pages(window), WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageW(Pages(window), WM_LBUTTONUP, 0, at);
}

}  // namespace

TEST_F(HintTest, HasThreeTabsWithTheirTexts) {
    Show({[](HWND window) {
              EXPECT_EQ(Utf8TextOf(window), "Помощ...");
              EXPECT_EQ(TextOf(window, "btnOk"), "Потвърди");
              ASSERT_EQ(SendMessageW(Pages(window), TCM_GETITEMCOUNT, 0, 0), 3);
              EXPECT_EQ(TabCaption(window, 0), "RS232");
              EXPECT_EQ(TabCaption(window, 1), "eCov");
              EXPECT_EQ(TabCaption(window, 2), "WizNet");
              EXPECT_EQ(TextOf(window, "lblRS232"), kRs232);
              EXPECT_EQ(TextOf(window, "lbleCov"), kECov);
              EXPECT_EQ(TextOf(window, "lblWizNet"), kWizNet);
          },
          [](HWND window) { Press(window, "btnOk"); }});
}

TEST_F(HintTest, ShowsOneTextAtATime) {
    Show({[](HWND window) {
              EXPECT_TRUE(IsSeen(window, "lblRS232"));
              EXPECT_FALSE(IsSeen(window, "lbleCov"));
              Picture(window, "hint-rs232");
              ClickTab(window, 1);
              EXPECT_FALSE(IsSeen(window, "lblRS232"));
              EXPECT_TRUE(IsSeen(window, "lbleCov"));
              Picture(window, "hint-ecov");
              ClickTab(window, 2);
              EXPECT_FALSE(IsSeen(window, "lbleCov"));
              EXPECT_TRUE(IsSeen(window, "lblWizNet"));
              Picture(window, "hint-wiznet");
          },
          [](HWND window) { Press(window, "btnOk"); }});
}

TEST_F(HintTest, AClickOnTheFormClosesIt) {
    Show({[](HWND window) {
        SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
        SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(2, 2));
    }});
}

TEST_F(HintTest, EnterAndEscapeCloseIt) {
    Show({[](HWND) { PostKey(VK_RETURN); }});
    Show({[](HWND) { PostKey(VK_ESCAPE); }});
}

TEST_F(HintTest, TheKeyboardReachesEveryTab) {
    Show({[](HWND window) {
              SetFocus(Pages(window));
              PostKey(VK_RIGHT);
          },
          [](HWND window) {
              EXPECT_TRUE(IsSeen(window, "lbleCov"));
              PostKey(VK_RIGHT);
          },
          [](HWND window) {
              EXPECT_TRUE(IsSeen(window, "lblWizNet"));
              PostKey(VK_ESCAPE);
          }});
}

TEST_F(HintTest, CtrlTabGoesRoundTheTabs) {
    const THeldKey control(VK_CONTROL);
    Show({[](HWND) { PostKey(VK_TAB); },
          [](HWND window) {
              EXPECT_TRUE(IsSeen(window, "lbleCov"));
              PostKey(VK_TAB);
          },
          [](HWND) { PostKey(VK_TAB); },
          [](HWND window) {
              EXPECT_TRUE(IsSeen(window, "lblRS232"));
              Press(window, "btnOk");
          }});
}

}  // namespace tolvane::test
