#include "tests/module/settings/PicturedBoxes.h"
#include "tests/module/settings/SettingsFixture.h"
#include "tests/support/scales/TestScales.h"
#include "tests/support/window/Screenshot.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

using TNames = std::vector<std::string>;

class ScaleSettingsTest : public ScaleSettingsFixture {};

void ExpectEnabled(HWND window, bool serial, bool ip, bool port) {
    for (const char* name : {"cbPickComPort", "btnRefreshComList", "cbBaudRate", "seScaleAddr"})
        EXPECT_EQ(IsEnabledIn(window, name), serial) << name;
    for (const char* name : {"edtIpAddress", "btnFindDevices"})
        EXPECT_EQ(IsEnabledIn(window, name), ip) << name;
    EXPECT_EQ(IsEnabledIn(window, "edtPort"), port);
    EXPECT_TRUE(IsEnabledIn(window, "btnHint"));
}

}  // namespace

TEST_F(ScaleSettingsTest, ShowsEveryCaption) {
    Show({[](HWND window) {
        EXPECT_EQ(Utf8TextOf(window), "Scale Settings");
        const std::pair<const char*, const char*> texts[] = {
            {"gbIdentity", " Идентификация "},
            {"lblScaleNumb", "Везна №"},
            {"lblScaleName", "Име:"},
            {"lblScaleType", "Тип:"},
            {"lblEncoding", "Кодова табл:"},
            {"gbTransport", " Комуникация "},
            {"rbRS232", "RS232"},
            {"rbTCP", "TCP/IP"},
            {"rbUDP", "UDP"},
            {"lblRS232", "Директна връзка"},
            {"lblTCP", "eCov"},
            {"lblUDP", "ETS - Ethernet\r\nWizNet"},
            {"gbRS232", " Настройки RS232 "},
            {"lblScaleAddr", "Адрес везна:"},
            {"lblComPort", "COM:"},
            {"btnRefreshComList", "П"},
            {"lblBaudRate", "Скорост:"},
            {"gbEthernet", " Настройки Ethernet "},
            {"lblIpAddress", "IP адрес:"},
            {"btnFindDevices", "Т"},
            {"btnHint", "?"},
            {"lblPort", "Порт:"},
            {"btnCancel", "Отказ"},
            {"btnOk", "Потвърди"},
        };
        for (const auto& [name, text] : texts)
            EXPECT_EQ(TextOf(window, name), text) << name;
        EXPECT_NE(GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW, 0);
        Press(window, "btnCancel");
    }});
}

TEST_F(ScaleSettingsTest, StartsWithTheDefaults) {
    Show({[](HWND window) {
        EXPECT_EQ(TextOf(window, "edtScaleNumb"), "1");
        EXPECT_EQ(TextOf(window, "edtScaleName"), "");
        EXPECT_EQ(ComboItems(window, "cbScaleType"),
                  (TNames{"ELICOM EVL/EEP", "ELICOM ETS", "ELICOM SI/S300"}));
        EXPECT_EQ(ComboChoice(window, "cbScaleType"), 0);
        EXPECT_EQ(ComboItems(window, "cbbEncoding"),
                  (TNames{"WIN-1252", "PC-855 (DOS CYR)", "PC-866 (RUS CYR)"}));
        EXPECT_EQ(ComboChoice(window, "cbbEncoding"), 2);
        EXPECT_TRUE(IsRadioOn(window, "rbRS232"));
        EXPECT_FALSE(IsRadioOn(window, "rbTCP"));
        EXPECT_FALSE(IsRadioOn(window, "rbUDP"));
        EXPECT_EQ(TextOf(window, "seScaleAddr"), "0");
        EXPECT_EQ(ComboItems(window, "cbPickComPort"), (TNames{"COM3", "COM1"}));
        EXPECT_EQ(ComboItems(window, "cbBaudRate"),
                  (TNames{"9600 bps", "19200 bps", "38400 bps", "57600 bps", "115200 bps"}));
        EXPECT_EQ(ComboChoice(window, "cbBaudRate"), 0);
        EXPECT_EQ(TextOf(window, "edtIpAddress"), "   .   .   .   ");
        EXPECT_EQ(TextOf(window, "edtPort"), "1001");
        ExpectEnabled(window, true, false, false);
        Picture(window, "scale-rs232");
        Press(window, "btnCancel");
    }});
}

TEST_F(ScaleSettingsTest, FieldsTakeNoMoreThanTheirLimits) {
    Show({[](HWND window) {
              const std::pair<const char*, int> limits[] = {
                  {"edtScaleName", 50}, {"seScaleAddr", 3}, {"edtIpAddress", 15}};
              for (const auto& [name, limit] : limits)
                  EXPECT_EQ(SendMessageW(ControlOf(window, name), EM_GETLIMITTEXT, 0, 0), limit)
                      << name;
              PostKey(VK_TAB);
          },
          [](HWND) {
              EXPECT_EQ(ComponentNameOf(GetFocus()), "edtScaleName");
              PostText(std::wstring(50, L'ж') + L"xy");
          },
          [](HWND window) {
              EXPECT_EQ(TextOf(window, "edtScaleName").size(), 2 * 50U);
              Press(window, "btnCancel");
          }});
}

TEST_F(ScaleSettingsTest, IsCentredOnTheScreen) {
    Show({[](HWND window) {
        RECT rect{};
        RECT work{};
        GetWindowRect(window, &rect);
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
        EXPECT_NEAR(rect.left + rect.right, work.left + work.right, 2);
        EXPECT_NEAR(rect.top + rect.bottom, work.top + work.bottom, 2);
        Press(window, "btnCancel");
    }});
}

TEST_F(ScaleSettingsTest, TheTransportSwitchEnablesWhatItNeedsAndResetsThePort) {
    Show({[this](HWND window) {
        Press(window, "rbTCP");
        ExpectEnabled(window, false, true, true);
        EXPECT_EQ(TextOf(window, "edtPort"), "100");
        Picture(window, "scale-tcp");
        SetTextOf(window, "edtPort", L"4001");
        Press(window, "rbUDP");
        ExpectEnabled(window, false, true, false);
        EXPECT_EQ(TextOf(window, "edtPort"), "1001");
        // As the list of scales opens it.
        SetWindowTextW(window, L"Добавяне везна...");
        Picture(window, "scale-udp");
        Press(window, "rbTCP");
        EXPECT_EQ(TextOf(window, "edtPort"), "100");
        EXPECT_TRUE(sorts_.empty());
        Press(window, "rbRS232");
        ExpectEnabled(window, true, false, false);
        EXPECT_EQ(TextOf(window, "edtPort"), "");
        EXPECT_EQ(sorts_, std::vector<bool>{true});
        Press(window, "btnCancel");
    }});
}

TEST_F(ScaleSettingsTest, AClickOnTheChosenTransportKeepsThePort) {
    Show({[](HWND window) {
        Press(window, "rbTCP");
        SetTextOf(window, "edtPort", L"4001");
        Press(window, "rbTCP");
        EXPECT_EQ(TextOf(window, "edtPort"), "4001");
        Press(window, "btnCancel");
    }});
}

TEST_F(ScaleSettingsTest, TheRefreshButtonRefillsThePortListUnsorted) {
    Show({[this](HWND window) {
        Choose(ControlOf(window, "cbPickComPort"), 1);
        ports_ = {"COM9", "COM10", "COM1"};
        Press(window, "btnRefreshComList");
        EXPECT_EQ(sorts_, std::vector<bool>{false});
        EXPECT_EQ(ComboItems(window, "cbPickComPort"), (TNames{"COM9", "COM10", "COM1"}));
        EXPECT_EQ(ComboChoice(window, "cbPickComPort"), 2);
        Picture(window, "scale-com-refilled");
        ports_ = {"COM9"};
        Press(window, "btnRefreshComList");
        EXPECT_EQ(ComboChoice(window, "cbPickComPort"), -1);
        Press(window, "btnCancel");
    }});
}

TEST_F(ScaleSettingsTest, APortThatIsListedInAnotherCaseStaysChosen) {
    Show(SettingsOf(SerialScale(1, "A", "com1"), ports_), {[this](HWND window) {
             EXPECT_EQ(ComboChoice(window, "cbPickComPort"), 1);
             ports_ = {"com1", "com3"};
             Press(window, "btnRefreshComList");
             EXPECT_EQ(ComboChoice(window, "cbPickComPort"), 0);
             Press(window, "btnCancel");
         }});
}

TEST_F(ScaleSettingsTest, ATakenNumberIsRefusedFirst) {
    listed_ = {1};
    const TPicturedBoxes boxes("box-number-taken");
    EXPECT_EQ(Show({Pressing("btnOk"),
                    [](HWND window) {
                        EXPECT_EQ(GetFocus(), ControlOf(window, "edtScaleNumb"));
                        Press(window, "btnCancel");
                    }}),
              IDCANCEL);
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Такъв номер на везна вече съществува.\r\nМоля променете го.");
    EXPECT_EQ(boxes.Seen()[0].icon, TBoxIcon::Warning);
    EXPECT_EQ(boxes.Seen()[0].buttons.size(), 1U);
}

TEST_F(ScaleSettingsTest, EditingWithoutChangingTheNumberPasses) {
    listed_ = {4, 7};
    TScaleSettings settings = Tcp("10.0.0.7");
    settings.number = 7;
    settings.numberBefore = 7;
    const TBoxAnswerer boxes;
    EXPECT_EQ(
        Show(settings,
             {[](HWND window) { SetTextOf(window, "edtScaleNumb", L"4"); }, Pressing("btnOk"),
              [](HWND window) { SetTextOf(window, "edtScaleNumb", L"7"); }, Pressing("btnOk")}),
        IDOK);
    EXPECT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(confirmed_.number, 7);
}

TEST_F(ScaleSettingsTest, NumberZeroIsRefusedBesideListedScales) {
    listed_ = {4};
    const TBoxAnswerer boxes;
    const TStep enter = [](HWND) { PostKey(VK_RETURN); };
    const TStep click = [](HWND window) { ClickAt(ControlOf(window, "btnOk"), {20, 10}); };
    for (const TStep& confirm : {enter, click}) {
        EXPECT_EQ(Show(Tcp("10.0.0.7"), {[](HWND) { PostText(L"0"); }, confirm,
                                         [](HWND window) {
                                             EXPECT_EQ(GetFocus(),
                                                       ControlOf(window, "edtScaleNumb"));
                                             EXPECT_EQ(TextOf(window, "edtScaleNumb"), "0");
                                             PostKey(VK_ESCAPE);
                                         }}),
                  IDCANCEL);
    }
    ASSERT_EQ(boxes.Seen().size(), 2U);
    for (const TSeenBox& box : boxes.Seen()) {
        EXPECT_EQ(box.text, "Такъв номер на везна вече съществува.\r\nМоля променете го.");
        EXPECT_EQ(box.icon, TBoxIcon::Warning);
    }
}

TEST_F(ScaleSettingsTest, NumberZeroOfTheFirstScaleBecomesTheLowest) {
    const TBoxAnswerer boxes;
    EXPECT_EQ(
        Show(Tcp("10.0.0.7"), {[](HWND) { PostText(L"0"); }, [](HWND) { PostKey(VK_RETURN); }}),
        IDOK);
    EXPECT_TRUE(boxes.Seen().empty());
    EXPECT_EQ(confirmed_.number, 1);
}

TEST_F(ScaleSettingsTest, ANumberBeyondTheLimitsIsComparedAsTheNearestOne) {
    listed_ = {60};
    const TBoxAnswerer boxes;
    Show(Tcp("10.0.0.7"),
         {[](HWND) { PostText(L"61"); }, [](HWND) { PostKey(VK_RETURN); }, Pressing("btnCancel")});
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Такъв номер на везна вече съществува.\r\nМоля променете го.");
}

TEST_F(ScaleSettingsTest, SpinEditsBringTheirValuesIntoTheLimitsWhenLeft) {
    Show({[](HWND window) {
        const std::pair<const wchar_t*, const char*> numbers[] = {
            {L"61", "60"}, {L"0", "1"}, {L"", "1"}, {L"99999", "60"}, {L"60", "60"}};
        for (const auto& [typed, shown] : numbers) {
            SetFocus(ControlOf(window, "edtScaleNumb"));
            SetTextOf(window, "edtScaleNumb", typed);
            SetFocus(ControlOf(window, "edtScaleName"));
            EXPECT_EQ(TextOf(window, "edtScaleNumb"), shown);
        }
        const std::pair<const wchar_t*, const char*> addresses[] = {
            {L"256", "255"}, {L"", "0"}, {L"999", "255"}, {L"17", "17"}};
        for (const auto& [typed, shown] : addresses) {
            SetFocus(ControlOf(window, "seScaleAddr"));
            SetTextOf(window, "seScaleAddr", typed);
            SetFocus(ControlOf(window, "edtScaleName"));
            EXPECT_EQ(TextOf(window, "seScaleAddr"), shown);
        }
        Press(window, "btnCancel");
    }});
}

TEST_F(ScaleSettingsTest, AWrongPortIsAWarning) {
    const TPicturedBoxes boxes("box-port");
    Show(Tcp(""), {[](HWND window) {
                       SetTextOf(window, "edtPort", L"65536");
                       Press(window, "btnOk");
                   },
                   [](HWND window) {
                       EXPECT_EQ(GetFocus(), ControlOf(window, "edtPort"));
                       SetTextOf(window, "edtPort", L"x");
                       Press(window, "btnOk");
                   },
                   Pressing("btnCancel")});
    ASSERT_EQ(boxes.Seen().size(), 2U);
    for (const TSeenBox& box : boxes.Seen()) {
        EXPECT_EQ(box.text, "Invalid port number.");
        EXPECT_EQ(box.icon, TBoxIcon::Warning);
        EXPECT_EQ(box.caption, "Внимание");
        EXPECT_EQ(box.buttons.size(), 1U);
    }
}

TEST_F(ScaleSettingsTest, BlankGroupsOfTheAddressAreAnError) {
    const TPicturedBoxes boxes("box-ip-address");
    Show(Tcp("10.0"), {Pressing("btnOk"),
                       [](HWND window) {
                           EXPECT_EQ(GetFocus(), ControlOf(window, "edtIpAddress"));
                           SetTextOf(window, "edtIpAddress", L"256.1.1.1");
                           Press(window, "btnOk");
                       },
                       Pressing("btnCancel")});
    ASSERT_EQ(boxes.Seen().size(), 2U);
    for (const TSeenBox& box : boxes.Seen()) {
        EXPECT_EQ(box.text, "Invalid IP Address.");
        EXPECT_EQ(box.icon, TBoxIcon::Error);
        EXPECT_EQ(box.caption, "Грешка");
    }
}

TEST_F(ScaleSettingsTest, TheConfirmedAddressHasNoLeadingZeros) {
    EXPECT_EQ(Show(Tcp("192.168.001.010"), {Pressing("btnOk")}), IDOK);
    EXPECT_EQ(confirmed_.ipAddress, "192.168.1.10");
    EXPECT_EQ(confirmed_.transport, TTransport::Tcp);
    EXPECT_EQ(confirmed_.port, "100");
}

TEST_F(ScaleSettingsTest, SerialWithoutPortsCannotBeConfirmed) {
    ports_.clear();
    const TBoxAnswerer boxes;
    EXPECT_EQ(Show({Pressing("btnOk"), Pressing("btnCancel")}), IDCANCEL);
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Com port not selected.");
    EXPECT_EQ(boxes.Seen()[0].icon, TBoxIcon::Warning);
    EXPECT_EQ(boxes.Seen()[0].caption, "Внимание");
}

TEST_F(ScaleSettingsTest, SerialNeedsAChosenPort) {
    const TPicturedBoxes boxes("box-com-port");
    EXPECT_EQ(Show({Pressing("btnOk"),
                    [](HWND window) {
                        EXPECT_EQ(GetFocus(), ControlOf(window, "cbPickComPort"));
                        Choose(ControlOf(window, "cbPickComPort"), 0);
                        Choose(ControlOf(window, "cbBaudRate"), 2);
                        Press(window, "btnOk");
                    }}),
              IDOK);
    EXPECT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(confirmed_.serialPort, 0);
    EXPECT_EQ(confirmed_.serialPorts, (TNames{"COM3", "COM1"}));
    EXPECT_EQ(confirmed_.baudRate, 2);
}

TEST_F(ScaleSettingsTest, AFoundUdpModuleSelectsUdp) {
    found_ = {{"192.168.1.10", TDeviceKind::UdpModule}};
    const TDialogScript find(kFindDevicesFormClass,
                             {Pressing("btnFind"), [](HWND window) {
                                  RunLoopUntil([&] { return IsEnabledIn(window, "btnFind"); });
                                  SendMessageW(ControlOf(window, "lstDevices"), LB_SETCURSEL, 0, 0);
                                  Press(window, "btnOK");
                              }});
    Show(Tcp("1.2.3.4"), {Pressing("btnFindDevices"), [](HWND window) {
                              EXPECT_TRUE(IsRadioOn(window, "rbUDP"));
                              EXPECT_FALSE(IsRadioOn(window, "rbTCP"));
                              EXPECT_EQ(TextOf(window, "edtPort"), "1001");
                              EXPECT_EQ(TextOf(window, "edtIpAddress"), "192.168.1  .10 ");
                              ExpectEnabled(window, false, true, false);
                              Press(window, "btnOk");
                          }});
    EXPECT_EQ(confirmed_.transport, TTransport::Udp);
    EXPECT_EQ(confirmed_.ipAddress, "192.168.1.10");
}

TEST_F(ScaleSettingsTest, AFoundTcpModuleSelectsTcp) {
    found_ = {{"192.168.1.11", TDeviceKind::TcpModule}};
    const TDialogScript find(kFindDevicesFormClass,
                             {Pressing("btnFind"), [](HWND window) {
                                  RunLoopUntil([&] { return IsEnabledIn(window, "btnFind"); });
                                  SendMessageW(ControlOf(window, "lstDevices"), LB_SETCURSEL, 0, 0);
                                  Press(window, "btnOK");
                              }});
    TScaleSettings settings = Tcp("1.2.3.4");
    settings.port = "4001";
    Show(settings, {Pressing("btnFindDevices"), [](HWND window) {
                        EXPECT_TRUE(IsRadioOn(window, "rbTCP"));
                        EXPECT_EQ(TextOf(window, "edtPort"), "100");
                        EXPECT_EQ(TextOf(window, "edtIpAddress"), "192.168.1  .11 ");
                        ExpectEnabled(window, false, true, true);
                        Press(window, "btnCancel");
                    }});
}

TEST_F(ScaleSettingsTest, ACancelledSearchChangesNothing) {
    const TDialogScript find(kFindDevicesFormClass, {Pressing("btnCancel")});
    Show(Tcp("1.2.3.4"), {Pressing("btnFindDevices"), [](HWND window) {
                              EXPECT_TRUE(IsRadioOn(window, "rbTCP"));
                              EXPECT_EQ(TextOf(window, "edtIpAddress"), "1  .2  .3  .4  ");
                              Press(window, "btnCancel");
                          }});
}

TEST_F(ScaleSettingsTest, TheHelpWindowOpensEachTime) {
    for (int i = 0; i < 2; ++i) {
        const TDialogScript hint(L"THintForm", {Pressing("btnOk")});
        Show({Pressing("btnHint"), Pressing("btnCancel")});
    }
}

TEST_F(ScaleSettingsTest, ShowsAScaleThatIsEdited) {
    TScaleRec rec = NetworkScale(12, "Месна витрина"_cp1251, "192.168.1.10", 4001);
    rec.ScaleType = kScaleTypeEts;
    rec.Encoding = 9;
    Show(SettingsOf(rec, ports_), {[](HWND window) {
             EXPECT_EQ(TextOf(window, "edtScaleNumb"), "12");
             EXPECT_EQ(TextOf(window, "edtScaleName"), "Месна витрина");
             EXPECT_EQ(ComboChoice(window, "cbScaleType"), 1);
             EXPECT_EQ(ComboChoice(window, "cbbEncoding"), 2);
             EXPECT_TRUE(IsRadioOn(window, "rbTCP"));
             EXPECT_EQ(TextOf(window, "edtIpAddress"), "192.168.1  .10 ");
             EXPECT_EQ(TextOf(window, "edtPort"), "4001");
             EXPECT_TRUE(ComboItems(window, "cbPickComPort").empty());
             ExpectEnabled(window, false, true, true);
             Picture(window, "scale-edited");
             Press(window, "btnCancel");
         }});
}

}  // namespace tolvane::test
