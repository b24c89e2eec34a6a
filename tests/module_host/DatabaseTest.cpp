#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "config/IniFile.h"
#include "host/DatabaseForm.h"
#include "host/HostMenu.h"
#include "host/HostSettings.h"
#include "tests/module_host/HostSession.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/Controls.h"
#include "tests/support/window/Layout.h"
#include "tests/support/window/Screenshot.h"
#include "tests/support/window/UserScript.h"
#include "window/Dpi.h"

namespace tolvane::test {
namespace {

constexpr const wchar_t* kForm = L"TDatabaseForm";
// Where the databases opened last begin in their menu.
constexpr int kFirstLine = 4;

std::wstring Wide(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

void Fill(HWND form, const THostIni& ini) {
    SetTextOf(form, "DatabaseEdit", Wide(ini.database));
    SetTextOf(form, "UserEdit", Wide(ini.user));
    SetTextOf(form, "PasswordEdit", Wide(ini.password));
}

std::string IniText(const THostSession& session, const char* section, const char* key) {
    return ReadIniFile(session.Folder() / "TradeHost.ini").ReadText(section, key, "");
}

TEST(HostDatabaseTest, WithoutADatabaseTheUserIsAskedForOne) {
    THostSession session;
    session.Open();
    const THostIni ini = THostIni::Working();
    const TBoxAnswerer boxes;
    {
        const TDialogScript user(kForm, {[&](HWND form) {
                                     EXPECT_EQ(TextOf(form, "UserEdit"), "SYSDBA");
                                     SaveScreenshot(form, "host-database");
                                     ExpectFollowsMonitors(form);
                                     Fill(form, ini);
                                     Press(form, "ConnectButton");
                                 }});
        session.Form().Connect();
    }
    EXPECT_TRUE(boxes.Seen().empty());
    EXPECT_TRUE(session.Form().IsConnected());
    EXPECT_EQ(IniText(session, "Database", "Database"), ini.database);
    EXPECT_EQ(IniText(session, "Database", "Password"), ini.password);
    EXPECT_EQ(MenuText(session.Menu(kConnectionMenu), kFirstLine), "&1 " + ini.database);
}

// Runs at whatever resolution the system has.
TEST(HostResolutionTest, EveryTextOfTheDatabaseWindowHasItsRoom) {
    THostSession session;
    session.Open();
    const std::string suffix = "-at-" + std::to_string(TDpi::System().DotsPerInch());
    for (const auto& [offer, name] : {std::pair(host::TDemoOffer::None, "host-database"),
                                      std::pair(host::TDemoOffer::NeedsEngine, "host-needs-engine"),
                                      std::pair(host::TDemoOffer::Ready, "host-demo-shop")}) {
        host::TDatabaseForm form(session.Frame(), {}, offer);
        const TDialogScript user(kForm, {[&, picture = name + suffix](HWND window) {
                                     SaveScreenshot(window, picture);
                                     EXPECT_FALSE(HasCaptionIcon(window));
                                     ExpectTextsFit(window);
                                     ExpectControlsApart(window);
                                     ExpectFollowsMonitors(window);
                                     Press(window, "CancelButton");
                                 }});
        form.ShowModal();
    }
}

TEST(HostDatabaseTest, WhoAnswersNothingGetsNoConnectionAndNoSettings) {
    THostSession session;
    session.Open();
    {
        const TDialogScript user(kForm, {[](HWND form) { Press(form, "CancelButton"); }});
        session.Form().Connect();
    }
    EXPECT_FALSE(session.Form().IsConnected());
    EXPECT_FALSE(std::filesystem::exists(session.Folder() / "TradeHost.ini"));
}

TEST(HostDatabaseTest, NoNameIsNotADatabase) {
    THostSession session;
    session.Open();
    const TBoxAnswerer boxes;
    {
        const TDialogScript user(kForm, {[](HWND form) { Press(form, "ConnectButton"); },
                                         [](HWND form) { Press(form, "CancelButton"); }});
        session.Command(host::kChooseDatabase);
    }
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Напишете коя база данни да се отвори.");
}

TEST(HostDatabaseTest, ADatabaseThatDoesNotOpenCanBeCorrected) {
    THostSession session;
    session.Open();
    THostIni wrong = THostIni::Working();
    wrong.password = "wrong";
    const TBoxAnswerer boxes;
    {
        const TDialogScript user(
            kForm, {[&](HWND form) {
                        Fill(form, wrong);
                        Press(form, "ConnectButton");
                    },
                    [&](HWND form) {
                        EXPECT_EQ(TextOf(form, "DatabaseEdit"), wrong.database);
                        EXPECT_FALSE(std::filesystem::exists(session.Folder() / "TradeHost.ini"));
                        Fill(form, THostIni::Working());
                        Press(form, "ConnectButton");
                    }});
        session.Command(host::kChooseDatabase);
    }
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_TRUE(Contains(boxes.Seen()[0].text, "Your user name and password are not defined"));
    EXPECT_TRUE(session.Form().IsConnected());
}

TEST(HostDatabaseTest, TheDatabasesOpenedLastAreInTheMenu) {
    THostSession session;
    const THostIni ini = THostIni::Working();
    THostIni other = ini;
    other.database = "127.0.0.1/1:/none & gone.fdb";
    PutFile(
        session.Folder() / "TradeHost.ini",
        other.Bytes() + "[Databases]\r\n1=" + other.database + "\r\n2=" + ini.database + "\r\n");
    session.Open();
    const HMENU menu = session.Menu(kConnectionMenu);
    EXPECT_EQ(MenuText(menu, kFirstLine), "&1 127.0.0.1/1:/none && gone.fdb");
    EXPECT_EQ(MenuText(menu, kFirstLine + 1), "&2 " + ini.database);
    const TBoxAnswerer boxes;
    session.Command(host::kFirstDatabase);
    EXPECT_EQ(boxes.Seen().size(), 1U);
    EXPECT_FALSE(session.Form().IsConnected());
    session.Command(host::kFirstDatabase + 1);
    EXPECT_EQ(boxes.Seen().size(), 1U);
    EXPECT_TRUE(session.Form().IsConnected());
    EXPECT_EQ(IniText(session, "Database", "Database"), ini.database);
    // The one that has opened is the first now.
    EXPECT_EQ(MenuText(menu, kFirstLine), "&1 " + ini.database);
    EXPECT_EQ(GetMenuItemCount(menu), kFirstLine + 4);
}

}  // namespace
}  // namespace tolvane::test
