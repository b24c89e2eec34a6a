#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "database/ClientLibrary.h"
#include "database/Query.h"
#include "database/Transaction.h"
#include "host/Connection.h"
#include "host/HostMenu.h"
#include "host/SqlScript.h"
#include "tests/module_host/HostSession.h"
#include "tests/support/Environment.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/Controls.h"
#include "tests/support/window/Layout.h"
#include "tests/support/window/Screenshot.h"
#include "tests/support/window/UserScript.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

constexpr const wchar_t* kDatabaseForm = L"TDatabaseForm";

// A database that this test makes on the server. Its file is gone before and after.
class TMadeDatabase {
public:
    explicit TMadeDatabase(const std::string& name)
        : path_(Environment("TOLVANE_FB_FOLDER") + "/" + name) {
        std::filesystem::remove(File());
    }
    TMadeDatabase(const TMadeDatabase&) = delete;
    TMadeDatabase& operator=(const TMadeDatabase&) = delete;
    ~TMadeDatabase() {
        std::error_code ignored;
        std::filesystem::remove(File(), ignored);
    }

    host::THostSettings Settings() const {
        return {.database = Environment("TOLVANE_FB_SERVER") + ":" + path_,
                .user = "SYSDBA",
                .password = Environment("TOLVANE_FB_PASSWORD"),
                .role = {},
                .clientLibrary = {}};
    }
    std::filesystem::path File() const { return "Z:" + path_; }

private:
    std::string path_;
};

std::vector<std::string> DemoStatements() {
    std::vector<std::string> statements;
    for (const char* const script : {"schema.sql", "shop.sql"})
        for (std::string& each :
             host::SqlStatements(FromUtf8(GetFile(BuiltFolder() / "demo" / script))))
            statements.push_back(std::move(each));
    return statements;
}

// The first column of the first row, UTF-8.
std::string Ask(host::TConnection& connection, const std::string& text) {
    const TClientLibrary library(connection.ClientLibrary());
    TTransaction transaction(library, connection.HandleCell(), TTransactionKind::ReadOnly);
    TQuery query(transaction);
    transaction.Start();
    query.SetText(text);
    query.Open();
    return ToUtf8(query.AsText(0, 0, {}));
}

// Where Firebird says that its folder is.
class TFirebirdFolder {
public:
    explicit TFirebirdFolder(const std::filesystem::path& folder) {
        SetEnvironmentVariableW(L"FIREBIRD", folder.c_str());
    }
    TFirebirdFolder(const TFirebirdFolder&) = delete;
    TFirebirdFolder& operator=(const TFirebirdFolder&) = delete;
    ~TFirebirdFolder() { SetEnvironmentVariableW(L"FIREBIRD", nullptr); }
};

void AddEngine(const THostSession& session) {
    std::filesystem::create_directories(session.Folder() / "plugins");
    PutFile(session.Folder() / "plugins" / "engine12.dll", "an engine");
}

// What is said of it, without its words; empty: nothing.
std::string NoteIn(HWND form) {
    const HWND note = Component(form, "NoteLabel");
    if (note == nullptr) return {};
    const std::string text = Utf8TextOf(note);
    if (Contains(text, "\"Демо магазин\" създава пробна до програмата")) return "button";
    return Contains(text, "Сложете файловете на Firebird") ? "engine" : text;
}

bool IsOffered(const THostSession& session, const std::string& note) {
    bool offered = false;
    const TDialogScript user(kDatabaseForm, {[&](HWND form) {
                                 offered = Component(form, "DemoButton") != nullptr;
                                 if (offered) SaveScreenshot(form, "host-demo-shop");
                                 EXPECT_EQ(NoteIn(form), note);
                                 ExpectFollowsMonitors(form);
                                 Press(form, "CancelButton");
                             }});
    session.Form().Connect();
    return offered;
}

TEST(HostDemoShopTest, IsMadeOfItsScripts) {
    const TMadeDatabase made("demo-made.fdb");
    host::TConnection connection;
    connection.Make(made.Settings(), {}, DemoStatements());
    EXPECT_FALSE(connection.IsOpen());
    connection.Open(made.Settings(), {});
    EXPECT_EQ(Ask(connection, "select count(*) from PLUES"), "305");
    EXPECT_EQ(Ask(connection, "select PLU_NAME from PLUES where PLU_NUMB = 1001"),
              "Свински врат без кост");
    connection.Close();
}

TEST(HostDemoShopTest, LeavesNoDatabaseWhenAStatementFails) {
    const TMadeDatabase made("demo-failed.fdb");
    host::TConnection connection;
    std::string failure;
    try {
        connection.Make(made.Settings(), {}, {"create table A (B integer)", "nonsense"});
    } catch (const host::TConnectionError& error) {
        failure = ToUtf8(error.what());
    }
    EXPECT_TRUE(Contains(failure, "demo-failed.fdb не може да бъде създадена:")) << failure;
    EXPECT_TRUE(Contains(failure, "nonsense")) << failure;
    EXPECT_FALSE(connection.IsOpen());
    EXPECT_FALSE(std::filesystem::exists(made.File()));
}

TEST(HostDemoShopTest, IsOfferedWhereAnEngineCanOpenIt) {
    THostSession session;
    const TFirebirdFolder firebird(session.Folder());
    session.Open();
    EXPECT_FALSE(IsOffered(session, ""));
    session.AddDemo();
    EXPECT_FALSE(IsOffered(session, "engine"));
    AddEngine(session);
    EXPECT_TRUE(IsOffered(session, "button"));
    std::filesystem::remove(session.Folder() / "demo" / "shop.sql");
    EXPECT_FALSE(IsOffered(session, ""));
    std::filesystem::copy_file(BuiltFolder() / "demo" / "shop.sql",
                               session.Folder() / "demo" / "shop.sql");
    THostIni other = THostIni::Working();
    other.database = "127.0.0.1/1:/none.fdb";
    session.WriteIni(other);
    const TDialogScript user(kDatabaseForm, {[](HWND form) {
                                 EXPECT_EQ(Component(form, "DemoButton"), nullptr);
                                 EXPECT_EQ(NoteIn(form), "");
                                 Press(form, "CancelButton");
                             }});
    session.Command(host::kChooseDatabase);
}

// The client library in Wine opens a file by the tests' server, as an engine would without one.
TEST(HostDemoShopTest, IsMadeAndOpenedWithoutAnotherQuestion) {
    THostSession session;
    const TFirebirdFolder firebird(session.Folder());
    session.AddDemo();
    AddEngine(session);
    THostIni ini = THostIni::Working();
    ini.database.clear();
    const std::filesystem::path shop = session.Folder() / "demo" / "shop.fdb";
    const TBoxAnswerer boxes;
    // The second time it is there already.
    for (int i = 0; i < 2; ++i) {
        session.WriteIni(ini);
        session.Open();
        const TDialogScript user(kDatabaseForm, {[](HWND form) { Press(form, "DemoButton"); }});
        session.Form().Connect();
        EXPECT_TRUE(session.Form().IsConnected());
        EXPECT_EQ(session.StatusText(), "Свързана база: " + shop.string());
        SaveScreenshot(session.Frame(), "host-demo-shop-open");
        session.Close();
    }
    EXPECT_TRUE(boxes.Seen().empty());
    EXPECT_FALSE(std::filesystem::exists(session.Folder() / "demo" / "shop.fdb.new"));
    // From now on the program opens it by itself.
    session.Open();
    session.Form().Connect();
    EXPECT_TRUE(session.Form().IsConnected());
    host::TConnection connection;
    connection.Open({.database = shop.string(),
                     .user = ini.user,
                     .password = ini.password,
                     .role = {},
                     .clientLibrary = {}},
                    {});
    EXPECT_EQ(Ask(connection, "select count(*) from PLUES"), "305");
    connection.Close();
}

TEST(HostDemoShopTest, TheUserIsAskedAgainWhenItCannotBeMade) {
    THostSession session;
    const TFirebirdFolder firebird(session.Folder());
    session.AddDemo();
    AddEngine(session);
    // In the way of the new file.
    std::filesystem::create_directories(session.Folder() / "demo" / "shop.fdb.new" / "full");
    session.Open();
    const TBoxAnswerer boxes;
    const TDialogScript user(kDatabaseForm, {[](HWND form) { Press(form, "DemoButton"); },
                                             [](HWND form) { Press(form, "CancelButton"); }});
    session.Form().Connect();
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].icon, TBoxIcon::Error);
    EXPECT_FALSE(session.Form().IsConnected());
    EXPECT_FALSE(std::filesystem::exists(session.Folder() / "TradeHost.ini"));
    EXPECT_EQ(session.StatusText(), "Няма връзка с базата данни");
}

}  // namespace
}  // namespace tolvane::test
