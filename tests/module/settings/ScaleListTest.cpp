#include "tests/module/settings/ScaleListFixture.h"

#include "tests/module/settings/HeldSearch.h"
#include "tests/module/settings/PicturedBoxes.h"
#include "tests/support/window/Screenshot.h"
#include "window/OwnerWatch.h"

namespace tolvane::test {
namespace {

class ScaleListTest : public ScaleListFixture {};

void Select(HWND window, int index) {
    const HWND list = ControlOf(window, "ScaleListBox");
    SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    SendMessageW(window, WM_COMMAND,
                 MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID(list)), LBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(list));
}

// What the user does in the connection dialog that a button of the list opens.
TSteps EnterTcpScale(const wchar_t* number, const wchar_t* name, const wchar_t* address) {
    return {[=](HWND window) {
        SetTextOf(window, "edtScaleNumb", number);
        SetTextOf(window, "edtScaleName", name);
        Choose(ControlOf(window, "cbScaleType"), 1);
        Press(window, "rbTCP");
        SetTextOf(window, "edtIpAddress", address);
        Press(window, "btnOk");
    }};
}

}  // namespace

TEST_F(ScaleListTest, ShowsTheScalesAndTheFirstOnesDetails) {
    Show(kTwo, {[](HWND window) {
             EXPECT_EQ(Utf8TextOf(window), "Настройки комуникация със везни ELICOM EVL/ETS");
             const std::pair<const char*, const char*> texts[] = {
                 {"lblScaleNumb", "Номер :"},
                 {"lblScaleName", "Име :"},
                 {"lblScaleAddress", "Адрес на устройството за комуникация:"},
                 {"btnAddScale", "Добавяне"},
                 {"btnEditScale", "Редактиране"},
                 {"btnDeleteScale", "Изтриване"},
                 {"btnOk", "Потвърди"},
                 {"btnCancel", "Отказ"},
             };
             for (const auto& [name, text] : texts)
                 EXPECT_EQ(TextOf(window, name), text) << name;
             EXPECT_EQ(Items(window), (TNames{"Месна витрина", "Риба"}));
             ExpectDetails(window, "3", "Месна витрина", "192.168.1.10", "100");
             EXPECT_EQ(TextOf(window, "lblScalePortBoudRate"),
                       "Порт на устройството за комуникация.");
             Picture(window, "list-network");
             Select(window, 1);
             ExpectDetails(window, "8", "Риба", "COM3", "38400 bps");
             EXPECT_EQ(TextOf(window, "lblScalePortBoudRate"),
                       "Скорост на устройството за комуникация.");
             Picture(window, "list-serial");
             Press(window, "btnCancel");
         }});
}

TEST_F(ScaleListTest, TheDetailsAreReadOnly) {
    Show(kTwo, {[](HWND window) {
             for (const char* name :
                  {"edtScaleNumb", "edtScaleName", "edtScaleAddress", "edtScalePortBoud"})
                 EXPECT_NE(GetWindowLongW(ControlOf(window, name), GWL_STYLE) & ES_READONLY, 0)
                     << name;
             Press(window, "btnCancel");
         }});
}

TEST_F(ScaleListTest, AnEmptyListShowsNothing) {
    Show({}, {[](HWND window) {
             EXPECT_TRUE(Items(window).empty());
             ExpectDetails(window, "", "", "", "");
             Picture(window, "list-empty");
             Press(window, "btnEditScale");
             Press(window, "btnDeleteScale");
             Press(window, "btnCancel");
         }});
}

TEST_F(ScaleListTest, TheDialogForANewScaleStartsWithTheDefaults) {
    const TDialogScript dialog(
        kScaleSettingsFormClass, {[](HWND window) {
            EXPECT_EQ(Utf8TextOf(window), "Добавяне везна...");
            EXPECT_EQ(TextOf(window, "edtScaleName"), "");
            EXPECT_EQ(TextOf(window, "edtIpAddress"), "   .   .   .   ");
            EXPECT_EQ(TextOf(window, "edtPort"), "1001");
            EXPECT_EQ(ComboChoice(window, "cbbEncoding"), 2);
            EXPECT_EQ(ComboItems(window, "cbPickComPort"), (TNames{"COM1", "COM3"}));
            EXPECT_EQ(TextOf(window, "seScaleAddr"), "0");
            Picture(window, "scale-new");
            Press(window, "btnCancel");
        }});
    Show(kTwo, {Pressing("btnAddScale"), [](HWND window) {
                    EXPECT_EQ(Items(window).size(), 2U);
                    Press(window, "btnOk");
                }});
    EXPECT_EQ(scales_.size(), 2U);
}

TEST_F(ScaleListTest, AnAddedTcpScaleWithoutANameGetsTheDefaultName) {
    const TDialogScript dialog(kScaleSettingsFormClass, EnterTcpScale(L"2", L"", L"10.0.0.7"));
    EXPECT_EQ(Show(kTwo, {Pressing("btnAddScale"),
                          [](HWND window) {
                              EXPECT_EQ(Items(window),
                                        (TNames{"Месна витрина", "Риба", "(ETS) - 10.0.0.7 (2)"}));
                              Picture(window, "list-added");
                              Press(window, "btnOk");
                          }}),
              IDOK);
    ASSERT_EQ(scales_.size(), 3U);
    EXPECT_EQ(scales_[2].Rec.ScaleNumb, 2);
    EXPECT_EQ(scales_[2].Rec.TCPPort, 100);
    EXPECT_EQ(scales_[2].Rec.CommType, kCommTcp);
    EXPECT_TRUE(scales_[2].Rec.Checked);
}

TEST_F(ScaleListTest, AScaleAddedToAnEmptyListIsShown) {
    const TDialogScript dialog(kScaleSettingsFormClass,
                               EnterTcpScale(L"2", L"Риба", L"192.168.001.010"));
    Show({}, {Pressing("btnAddScale"), [](HWND window) {
                  ExpectDetails(window, "2", "Риба", "192.168.1.10", "100");
                  Press(window, "btnOk");
              }});
}

TEST_F(ScaleListTest, AnAddedSerialScaleKeepsPort1001) {
    const TDialogScript dialog(kScaleSettingsFormClass, {[](HWND window) {
                                   Choose(ControlOf(window, "cbPickComPort"), 1);
                                   Choose(ControlOf(window, "cbBaudRate"), 4);
                                   SetTextOf(window, "seScaleAddr", L"17");
                                   Press(window, "btnOk");
                               }});
    Show({}, {Pressing("btnAddScale"), Pressing("btnOk")});
    ASSERT_EQ(scales_.size(), 1U);
    EXPECT_EQ(scales_[0].Rec.TCPAddress.View(), "COM3");
    EXPECT_EQ(scales_[0].Rec.TCPPort, 1001);
    EXPECT_EQ(scales_[0].Rec.BaudRate, 4);
    EXPECT_EQ(scales_[0].Rec.ScaleAddr, 17);
    EXPECT_EQ(scales_[0].Rec.ScaleName.View(), "(EVL) - COM3 (1)");
}

TEST_F(ScaleListTest, AnAddedUdpScaleHasPort1001) {
    const TDialogScript dialog(kScaleSettingsFormClass, {[](HWND window) {
                                   Choose(ControlOf(window, "cbScaleType"), 2);
                                   Press(window, "rbUDP");
                                   SetTextOf(window, "edtIpAddress", L"10.0.0.7");
                                   Press(window, "btnOk");
                               }});
    Show({}, {Pressing("btnAddScale"), Pressing("btnOk")});
    ASSERT_EQ(scales_.size(), 1U);
    EXPECT_EQ(scales_[0].Rec.ScaleName.View(), "(SI) - 10.0.0.7 (1)");
    EXPECT_EQ(scales_[0].Rec.TCPPort, 1001);
    EXPECT_EQ(scales_[0].Rec.CommType, kCommUdp);
}

TEST_F(ScaleListTest, APortThatIsNoNumberEndsTheAddWithAMessage) {
    const TPicturedBoxes boxes("box-conversion");
    // The port field is empty after a switch to RS232.
    const TDialogScript dialog(kScaleSettingsFormClass, {[](HWND window) {
                                   Press(window, "rbTCP");
                                   Press(window, "rbRS232");
                                   Choose(ControlOf(window, "cbPickComPort"), 0);
                                   Press(window, "btnOk");
                               }});
    Show(kTwo, {Pressing("btnAddScale"), [](HWND window) {
                    EXPECT_EQ(Items(window).size(), 2U);
                    Press(window, "btnOk");
                }});
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "\"\" не е цяло число.");
    EXPECT_EQ(boxes.Seen()[0].icon, TBoxIcon::Error);
    EXPECT_EQ(boxes.Seen()[0].caption, "Грешка");
    EXPECT_EQ(boxes.Seen()[0].buttons.size(), 1U);
    EXPECT_EQ(scales_.size(), 2U);
}

TEST_F(ScaleListTest, ANumberOfAListedScaleIsRefused) {
    const TBoxAnswerer boxes;
    TSteps steps = EnterTcpScale(L"8", L"x", L"10.0.0.7");
    steps.push_back(Pressing("btnCancel"));
    const TDialogScript dialog(kScaleSettingsFormClass, steps);
    Show(kTwo, {Pressing("btnAddScale"), Pressing("btnOk")});
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(scales_.size(), 2U);
}

TEST_F(ScaleListTest, EditingChangesTheScaleInItsPlace) {
    const TDialogScript dialog(kScaleSettingsFormClass, {[](HWND window) {
                                   EXPECT_EQ(Utf8TextOf(window), "Редактиране везна...");
                                   EXPECT_EQ(TextOf(window, "edtScaleName"), "Месна витрина");
                                   SetTextOf(window, "edtScaleName", L"Кайма");
                                   SetTextOf(window, "edtIpAddress", L"10.0.0.9");
                                   Press(window, "btnOk");
                               }});
    Show(kTwo, {Pressing("btnEditScale"), [](HWND window) {
                    EXPECT_EQ(Items(window), (TNames{"Кайма", "Риба"}));
                    ExpectDetails(window, "3", "Кайма", "10.0.0.9", "100");
                    Press(window, "btnOk");
                }});
    EXPECT_EQ(scales_[0].Rec.ScaleName.View(), "Кайма"_cp1251);
    EXPECT_FALSE(scales_[0].Rec.Checked);
}

TEST_F(ScaleListTest, EditingASerialScaleShowsItsSettingsAndChangesThem) {
    const TDialogScript dialog(kScaleSettingsFormClass, {[](HWND window) {
                                   EXPECT_TRUE(IsRadioOn(window, "rbRS232"));
                                   EXPECT_EQ(ComboChoice(window, "cbPickComPort"), 1);
                                   EXPECT_EQ(ComboChoice(window, "cbBaudRate"), 2);
                                   Picture(window, "scale-serial-edited");
                                   Choose(ControlOf(window, "cbPickComPort"), 0);
                                   Choose(ControlOf(window, "cbBaudRate"), 0);
                                   SetTextOf(window, "seScaleAddr", L"5");
                                   Press(window, "btnOk");
                               }});
    Show(kTwo, {[](HWND window) { Select(window, 1); }, Pressing("btnEditScale"),
                [](HWND window) {
                    ExpectDetails(window, "8", "Риба", "COM1", "9600 bps");
                    Press(window, "btnOk");
                }});
    ASSERT_EQ(scales_.size(), 2U);
    EXPECT_EQ(scales_[1].Rec.TCPAddress.View(), "COM1");
    EXPECT_EQ(scales_[1].Rec.BaudRate, 0);
    EXPECT_EQ(scales_[1].Rec.ScaleAddr, 5);
    EXPECT_EQ(scales_[1].Rec.CommType, kCommSerial);
}

TEST_F(ScaleListTest, AListedScaleMayChangeItsTransport) {
    const TDialogScript dialog(kScaleSettingsFormClass, {[](HWND window) {
                                   Press(window, "rbUDP");
                                   EXPECT_EQ(TextOf(window, "edtPort"), "1001");
                                   SetTextOf(window, "edtIpAddress", L"10.0.0.7");
                                   Press(window, "btnOk");
                               }});
    Show(kTwo, {[](HWND window) { Select(window, 1); }, Pressing("btnEditScale"),
                [](HWND window) {
                    ExpectDetails(window, "8", "Риба", "10.0.0.7", "1001");
                    Press(window, "btnOk");
                }});
    EXPECT_EQ(scales_[1].Rec.CommType, kCommUdp);
    EXPECT_EQ(scales_[1].Rec.TCPAddress.View(), "10.0.0.7");
    EXPECT_EQ(scales_[1].Rec.TCPPort, 1001);
}

// A switch to RS232 empties the port field.
TEST_F(ScaleListTest, EditingWithANonNumericPortStoresPort1001) {
    const TDialogScript dialog(kScaleSettingsFormClass, {[](HWND window) {
                                   Press(window, "rbRS232");
                                   EXPECT_EQ(TextOf(window, "edtPort"), "");
                                   Choose(ControlOf(window, "cbPickComPort"), 0);
                                   Press(window, "btnOk");
                               }});
    Show(kTwo, {Pressing("btnEditScale"), Pressing("btnOk")});
    EXPECT_EQ(scales_[0].Rec.CommType, kCommSerial);
    EXPECT_EQ(scales_[0].Rec.TCPAddress.View(), "COM1");
    EXPECT_EQ(scales_[0].Rec.TCPPort, 1001);
}

TEST_F(ScaleListTest, ACancelledEditChangesNothing) {
    const TDialogScript dialog(kScaleSettingsFormClass, {[](HWND window) {
                                   SetTextOf(window, "edtScaleName", L"x");
                                   Press(window, "btnCancel");
                               }});
    Show(kTwo, {Pressing("btnEditScale"), Pressing("btnOk")});
    EXPECT_EQ(scales_[0].Rec.ScaleName.View(), "Месна витрина"_cp1251);
}

TEST_F(ScaleListTest, DeletingAsksNothingAndSelectsTheNeighbour) {
    const TBoxAnswerer boxes;
    Show(kTwo, {Pressing("btnDeleteScale"), [](HWND window) {
                    EXPECT_EQ(Items(window), (TNames{"Риба"}));
                    ExpectDetails(window, "8", "Риба", "COM3", "38400 bps");
                    Picture(window, "list-deleted");
                    Press(window, "btnDeleteScale");
                    EXPECT_TRUE(Items(window).empty());
                    ExpectDetails(window, "", "", "", "");
                    Press(window, "btnOk");
                }});
    EXPECT_TRUE(boxes.Seen().empty());
    EXPECT_TRUE(scales_.empty());
}

TEST_F(ScaleListTest, ATwentyFirstScaleIsRefused) {
    const TPicturedBoxes boxes("box-list-full");
    const std::vector<TScaleObj> twenty(20, kTwo[0]);
    Show(twenty, {Pressing("btnAddScale"), Pressing("btnOk")});
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Списъкът може да съдържа най-много 20 везни.");
    EXPECT_EQ(boxes.Seen()[0].icon, TBoxIcon::Warning);
    EXPECT_EQ(scales_.size(), 20U);
}

TEST_F(ScaleListTest, TheWebPageAlwaysBeginsWithHttp) {
    const std::vector<TScaleObj> scales = {EtsScale(1, "a", "192.168.1.10"),
                                           EtsScale(2, "b", "\" -x \"c:\\a"),
                                           EtsScale(3, "c", "file:///c:/x")};
    Show(scales, {[this](HWND window) {
             for (const int index : {0, 1, 2}) {
                 Select(window, index);
                 form_->EditIPBtnClick();
             }
             Press(window, "btnCancel");
         }});
    EXPECT_EQ(pages_, (TNames{"http://192.168.1.10", "http://%22%20-x%20%22c:%5Ca",
                              "http://file:///c:/x"}));
}

TEST_F(ScaleListTest, WithoutAnAddressThereIsNoWebPage) {
    const TPicturedBoxes boxes("box-no-address");
    Show({}, {[this](HWND window) {
             form_->EditIPBtnClick();
             Press(window, "btnCancel");
         }});
    EXPECT_TRUE(pages_.empty());
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Няма зададен IP адрес на устройството за комуникация.");
    EXPECT_EQ(boxes.Seen()[0].caption, "Внимание");
    EXPECT_EQ(boxes.Seen()[0].icon, TBoxIcon::Warning);
    EXPECT_EQ(boxes.Seen()[0].buttons.size(), 1U);
}

TEST_F(ScaleListTest, TabGoesThroughTheControls) {
    TNames names;
    TSteps steps(10, [&](HWND) {
        names.push_back(ComponentNameOf(GetFocus()));
        PostKey(VK_TAB);
    });
    steps.push_back([](HWND) { PostKey(VK_ESCAPE); });
    Show(kTwo, steps);
    EXPECT_EQ(names, (TNames{"ScaleListBox", "edtScaleNumb", "edtScaleName", "edtScaleAddress",
                             "edtScalePortBoud", "btnAddScale", "btnEditScale", "btnDeleteScale",
                             "btnOk", "btnCancel"}));
}

TEST_F(ScaleListTest, OnlyTheButtonThatEnterPressesLooksLikeTheDefaultOne) {
    const auto expectDefault = [](HWND window, const std::string& expected) {
        for (const char* name :
             {"btnAddScale", "btnEditScale", "btnDeleteScale", "btnOk", "btnCancel"}) {
            const LONG style = GetWindowLongW(ControlOf(window, name), GWL_STYLE);
            EXPECT_EQ((style & BS_TYPEMASK) == BS_DEFPUSHBUTTON, name == expected)
                << name << ", expected " << expected;
        }
    };
    Show(kTwo, {[&](HWND window) {
             expectDefault(window, "btnOk");
             for (const char* name :
                  {"btnAddScale", "btnDeleteScale", "btnOk", "btnEditScale", "btnCancel"}) {
                 SetFocus(ControlOf(window, name));
                 expectDefault(window, name);
             }
             SaveScreenshot(window, "scales-cancel-focused");
             SetFocus(ControlOf(window, "ScaleListBox"));
             expectDefault(window, "btnOk");
             Press(window, "btnCancel");
         }});
}

TEST_F(ScaleListTest, ArrowsMoveInTheListAndShowTheDetails) {
    Show(kTwo, {[](HWND) { PostKey(VK_DOWN); },
                [](HWND window) {
                    ExpectDetails(window, "8", "Риба", "COM3", "38400 bps");
                    PostKey(VK_ESCAPE);
                }});
}

TEST_F(ScaleListTest, OkFillsTheFirstSlotsOfTheTable) {
    TScaleTable table;
    table[2] = kTwo[0].Rec;
    table[9] = kTwo[1].Rec;
    const TDialogScript script(kScaleComunicationFormClass, {Pressing("btnOk")});
    EXPECT_TRUE(ShowScaleList(host_.Frame(), table));
    EXPECT_EQ(table[1].ScaleNumb, 3);
    EXPECT_EQ(table[2].ScaleNumb, 8);
    for (int slot = 3; slot <= kScaleSlots; ++slot)
        EXPECT_EQ(table[slot].TCPPort, 0) << slot;
}

TEST_F(ScaleListTest, CancelLeavesTheTable) {
    for (const char* way : {"btnCancel", "box"}) {
        TScaleTable table;
        table[2] = kTwo[0].Rec;
        const TDialogScript script(kScaleComunicationFormClass,
                                   {Pressing("btnDeleteScale"), [way](HWND window) {
                                        if (std::string(way) == "box")
                                            SendMessageW(window, WM_CLOSE, 0, 0);
                                        else
                                            Press(window, way);
                                    }});
        EXPECT_FALSE(ShowScaleList(host_.Frame(), table)) << way;
        EXPECT_EQ(table[2].ScaleNumb, 3);
        EXPECT_EQ(table[2].TCPPort, 100);
        EXPECT_EQ(table[1].TCPPort, 0);
    }
}

TEST_F(ScaleListTest, GoesWithItsOwnerAndLeavesTheTable) {
    TScaleTable table;
    table[2] = kTwo[0].Rec;
    const HWND owner = host_.AddChild(nullptr);
    const TDialogScript script(kScaleComunicationFormClass,
                               {Pressing("btnDeleteScale"), Pressing("btnAddScale")});
    const TDialogScript dialog(kScaleSettingsFormClass, {[&](HWND) {
                                   SendMessageW(host_.Client(), WM_MDIDESTROY,
                                                reinterpret_cast<WPARAM>(owner), 0);
                               }});
    EXPECT_FALSE(ShowScaleList(owner, table));
    EXPECT_EQ(table[2].TCPPort, 100);
}

// The list, the connection dialog and the search are open, each over the one before, and the search
// works.
TEST_F(ScaleListTest, AnyOfItsWindowsMayBeDestroyedWhileASearchWorks) {
    for (const wchar_t* destroyed :
         {kScaleComunicationFormClass, kScaleSettingsFormClass, kFindDevicesFormClass, L""}) {
        SCOPED_TRACE(Utf8(destroyed));
        const std::wstring name = destroyed;
        THeldSearch held;
        TScaleListServices services = Services();
        services.settings.search = held.Search();
        const HWND owner = host_.AddChild(nullptr);
        const TDialogScript find(
            kFindDevicesFormClass,
            {Pressing("btnFind"), [&](HWND) {
                 EXPECT_TRUE(RunLoopUntil([&] { return held.started.load(); }));
                 if (name.empty())
                     SendMessageW(host_.Client(), WM_MDIDESTROY, reinterpret_cast<WPARAM>(owner),
                                  0);
                 else
                     DestroyWindow(FindWindowW(destroyed, nullptr));
             }});
        TSteps inDialog = {Pressing("rbTCP"), Pressing("btnFindDevices")};
        if (name == kFindDevicesFormClass) inDialog.push_back(Pressing("btnCancel"));
        const TDialogScript dialog(kScaleSettingsFormClass, inDialog);
        TSteps inList = {Pressing("btnAddScale")};
        const bool listStays = name == kFindDevicesFormClass || name == kScaleSettingsFormClass;
        if (listStays) inList.push_back(Pressing("btnOk"));
        const TDialogScript list(kScaleComunicationFormClass, inList);
        TScaleComunicationForm form(owner, kTwo, services);
        const TOwnerWatch watch(owner, form);
        EXPECT_EQ(form.ShowModal(), listStays ? IDOK : IDCANCEL);
        EXPECT_TRUE(held.sawStop);
        EXPECT_EQ(form.Scales().size(), 2U);
        EXPECT_NE(IsWindowEnabled(host_.Frame()), 0);
        SendMessageW(host_.Client(), WM_MDIDESTROY, reinterpret_cast<WPARAM>(owner), 0);
    }
}

}  // namespace tolvane::test
