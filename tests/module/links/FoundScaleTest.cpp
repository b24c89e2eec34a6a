// From the search to the article in the scale, through the windows: a UDP module and a TCP module
// stand in the network, the latter on port 100, where the dialog looks for it.
#include <windows.h>

#include <filesystem>
#include <fstream>

#include "config/IniFile.h"
#include "config/ScaleTable.h"
#include "settings/forms/ScaleComunicationUnit.h"
#include "settings/forms/uFindDevices.h"
#include "settings/forms/uScaleSettings.h"
#include "tests/module/links/LinksFixture.h"
#include "tests/support/window/HostFrame.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

using TSteps = std::vector<TDialogScript::TStep>;

// What the user does in the connection dialog, and what has to be seen there.
struct TFoundChoice {
    const char* radioBefore;  // the other transport, so that the choice switches it
    int index;                // in the list of found devices
    const char* setting;      // of the address to be found there
    int type;
    const wchar_t* number;
    const wchar_t* name;
    const char* radio;
    const char* port;
};

class FoundScaleTest : public LinksFixture {
protected:
    void SetUp() override { std::ofstream(file_, std::ios::binary) << "[Host]\r\nTill=7\r\n"; }

    // Does what the list window's command does: loads the table, opens the editor, and saves.
    void AddScale(const TFoundChoice& choice) {
        TScaleTable table;
        table.Load(ReadIniFile(file_));
        const TDialogScript list(kScaleComunicationFormClass, ListSteps());
        const TDialogScript dialog(kScaleSettingsFormClass, DialogSteps(choice));
        const TDialogScript find(kFindDevicesFormClass, FindSteps(choice));
        ASSERT_TRUE(ShowScaleList(host_.Frame(), table));
        UpdateIniFile(file_, [&](TIniDocument& document) { table.Save(document); });
    }

    static TSteps ListSteps() {
        return {[](HWND window) { Press(window, "btnAddScale"); },
                [](HWND window) { Press(window, "btnOk"); }};
    }

    static TSteps DialogSteps(const TFoundChoice& choice) {
        return {[choice](HWND window) {
                    SetTextOf(window, "edtScaleNumb", choice.number);
                    SetTextOf(window, "edtScaleName", choice.name);
                    Choose(ControlOf(window, "cbScaleType"), choice.type);
                    Press(window, choice.radioBefore);
                    Press(window, "btnFindDevices");
                },
                [choice](HWND window) {
                    EXPECT_TRUE(IsRadioOn(window, choice.radio));
                    EXPECT_EQ(TextOf(window, "edtPort"), choice.port);
                    Press(window, "btnOk");
                }};
    }

    static TSteps FindSteps(const TFoundChoice& choice) {
        return {[](HWND window) { Press(window, "btnFind"); },
                [choice](HWND window) {
                    EXPECT_TRUE(RunLoopUntil([&] { return IsEnabledIn(window, "btnFind"); }));
                    const HWND list = ControlOf(window, "lstDevices");
                    // The UDP module answers two probes.
                    EXPECT_EQ(SendMessageW(list, LB_GETCOUNT, 0, 0), 3);
                    const auto index = static_cast<WPARAM>(choice.index);
                    wchar_t text[64] = {};
                    SendMessageW(list, LB_GETTEXT, index, reinterpret_cast<LPARAM>(text));
                    EXPECT_EQ(Utf8(text), Setting(choice.setting));
                    SendMessageW(list, LB_SETCURSEL, index, 0);
                    Press(window, "btnOK");
                }};
    }

    // Reads the file as any other program does.
    std::string Saved(const wchar_t* section, const wchar_t* key) const {
        wchar_t text[128] = {};
        GetPrivateProfileStringW(section, key, L"(none)", text, 128, file_.c_str());
        return Utf8(text);
    }

    // The keys of SCALE1 in the order of the table's columns below.
    std::vector<std::string> SavedScale() const {
        std::vector<std::string> values;
        for (const wchar_t* key :
             {L"ScaleNumb", L"ScaleName", L"TCPAddress", L"TCPPort", L"Checked", L"BaudRate",
              L"ScaleType", L"Encoding", L"ScaleAddr", L"CommType"})
            values.push_back(Saved(L"SCALE1", key));
        return values;
    }

    TScaleRec Configured() const {
        TScaleTable table;
        table.Load(ReadIniFile(file_));
        return table[1];
    }

    THostFrame host_;
    std::filesystem::path file_ = std::filesystem::path(Setting("FOLDER")) / "found.ini";
};

}  // namespace

TEST_F(FoundScaleTest, AUdpModuleThatIsFoundIsSavedAndWrittenTo) {
    AddScale({"rbTCP", 0, "UDP1", 0, L"4", L"", "rbUDP", "1001"});
    const std::string address = Setting("UDP1");
    EXPECT_EQ(SavedScale(), (std::vector<std::string>{"4", "(EVL) - " + address + " (4)", address,
                                                      "1001", "1", "0", "16", "2", "0", "2"}));
    EXPECT_EQ(Saved(L"Host", L"Till"), "7");
    ExpectUpload(Configured(), "udp1", 21, "6.05", 605);
}

TEST_F(FoundScaleTest, ATcpModuleThatIsFoundIsSavedAndWrittenTo) {
    AddScale({"rbUDP", 2, "TCP", 2, L"60", L"Cheese", "rbTCP", "100"});
    EXPECT_EQ(SavedScale(), (std::vector<std::string>{"60", "Cheese", Setting("TCP"), "100", "1",
                                                      "0", "300", "2", "0", "1"}));
    EXPECT_EQ(Saved(L"Host", L"Till"), "7");
    ExpectUpload(Configured(), "tcp", 22, "12.34", 1234);
}

}  // namespace tolvane::test
