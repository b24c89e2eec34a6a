#include "tests/module/settings/SettingsFixture.h"
#include "tests/support/window/Screenshot.h"

namespace tolvane::test {
namespace {

class ScaleSettingsKeysTest : public ScaleSettingsFixture {
protected:
    // Presses Tab `count` times, and notes before each where the focus is.
    TSteps Tabs(std::size_t count) {
        TSteps steps(count, [this](HWND) {
            names_.push_back(ComponentNameOf(GetFocus()));
            PostKey(VK_TAB);
        });
        steps.push_back([](HWND) { PostKey(VK_ESCAPE); });
        return steps;
    }

    std::vector<std::string> names_;
};

}  // namespace

TEST_F(ScaleSettingsKeysTest, TabGoesThroughTheSerialControls) {
    Show(Tabs(12));
    EXPECT_EQ(names_, (std::vector<std::string>{"edtScaleNumb", "edtScaleName", "cbScaleType",
                                                "cbbEncoding", "rbRS232", "seScaleAddr",
                                                "cbPickComPort", "btnRefreshComList", "cbBaudRate",
                                                "btnHint", "btnOk", "btnCancel"}));
}

TEST_F(ScaleSettingsKeysTest, TabGoesThroughTheNetworkControls) {
    Show(Tcp("1.2.3.4"), Tabs(11));
    EXPECT_EQ(names_,
              (std::vector<std::string>{"edtScaleNumb", "edtScaleName", "cbScaleType",
                                        "cbbEncoding", "rbTCP", "edtIpAddress", "btnFindDevices",
                                        "btnHint", "edtPort", "btnOk", "btnCancel"}));
}

TEST_F(ScaleSettingsKeysTest, ArrowsChangeTheTransport) {
    Show({[](HWND window) {
              SetFocus(ControlOf(window, "rbRS232"));
              PostKey(VK_RIGHT);
          },
          [](HWND window) {
              EXPECT_TRUE(IsRadioOn(window, "rbTCP"));
              EXPECT_EQ(TextOf(window, "edtPort"), "100");
              PostKey(VK_RIGHT);
          },
          [](HWND window) {
              EXPECT_TRUE(IsRadioOn(window, "rbUDP"));
              EXPECT_EQ(TextOf(window, "edtPort"), "1001");
              PostKey(VK_ESCAPE);
          }});
}

TEST_F(ScaleSettingsKeysTest, ArrowsStepTheNumbersWithinTheirLimits) {
    Show({[](HWND window) {
              SetFocus(ControlOf(window, "edtScaleNumb"));
              PostKey(VK_DOWN);
          },
          [](HWND window) {
              EXPECT_EQ(TextOf(window, "edtScaleNumb"), "1");
              PostKey(VK_UP);
          },
          [](HWND window) {
              EXPECT_EQ(TextOf(window, "edtScaleNumb"), "2");
              SetTextOf(window, "edtScaleNumb", L"60");
              PostKey(VK_UP);
          },
          [](HWND window) {
              EXPECT_EQ(TextOf(window, "edtScaleNumb"), "60");
              PostKey(VK_ESCAPE);
          }});
}

TEST_F(ScaleSettingsKeysTest, NumbersTakeDigitsOnly) {
    Show({[](HWND window) {
              SetFocus(ControlOf(window, "edtScaleNumb"));
              SendMessageW(GetFocus(), EM_SETSEL, 0, -1);
              PostText(L"a-3x");
          },
          [](HWND window) {
              EXPECT_EQ(TextOf(window, "edtScaleNumb"), "3");
              PostKey(VK_ESCAPE);
          }});
}

TEST_F(ScaleSettingsKeysTest, AScaleIsEnteredByKeyboardAlone) {
    EXPECT_EQ(Show({[](HWND) {
                        PostText(L"5");
                        PostKey(VK_TAB);
                    },
                    [](HWND) {
                        PostText(L"Риба");
                        PostKey(VK_TAB);
                    },
                    [](HWND) {
                        PostKey(VK_DOWN);
                        PostKey(VK_TAB);
                    },
                    [](HWND) { PostKey(VK_TAB); }, [](HWND) { PostKey(VK_RIGHT); },
                    [](HWND) { PostKey(VK_TAB); }, [](HWND) { PostText(L"10.0.0.7"); },
                    [](HWND window) {
                        // As the list of scales opens it.
                        SetWindowTextW(window, L"Добавяне везна...");
                        Picture(window, "scale-typed");
                        PostKey(VK_RETURN);
                    }}),
              IDOK);
    EXPECT_EQ(confirmed_.number, 5);
    EXPECT_EQ(confirmed_.name, "\xD0\xE8\xE1\xE0");
    EXPECT_EQ(confirmed_.type, 1);
    EXPECT_EQ(confirmed_.transport, TTransport::Tcp);
    EXPECT_EQ(confirmed_.ipAddress, "10.0.0.7");
    EXPECT_EQ(confirmed_.port, "100");
}

TEST_F(ScaleSettingsKeysTest, EscapeCancels) {
    EXPECT_EQ(Show({[](HWND) { PostKey(VK_ESCAPE); }}), IDCANCEL);
}

}  // namespace tolvane::test
