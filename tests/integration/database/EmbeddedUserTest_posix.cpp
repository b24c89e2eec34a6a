#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <cstdio>

#include "tests/integration/database/PlainFile.h"

namespace tolvane::test {
namespace {

constexpr int kNobody = 65534;

// The engine in a process of a user that is no member of Firebird's group: nobody, or whoever runs
// the tests when that is not the administrator.
class EmbeddedUserTest : public testing::Test {
protected:
    EmbeddedUserTest() {
        std::filesystem::permissions(folder_.Path(), std::filesystem::perms::all);
        std::filesystem::copy_file(TOLVANE_ATTACH_PROBE, folder_ / "probe");
        CopyShop(File());
        std::filesystem::permissions(File(), std::filesystem::perms::all);
        std::filesystem::create_directory(folder_ / "tmp");
        std::filesystem::permissions(folder_ / "tmp", std::filesystem::perms::all);
    }
    std::filesystem::path File() const { return folder_ / "shop.fdb"; }

    // Runs the probe in an environment of these variables alone; what it prints.
    std::string Probe(const std::string& variables = {}) const {
        std::string command = "env -i PATH=/usr/bin:/bin TMPDIR='" + (folder_ / "tmp").string() +
                              "' " + variables + " '" + (folder_ / "probe").string() + "' '" +
                              File().string() + "' 2>&1";
        if (geteuid() == 0)
            command = "setpriv --reuid=" + std::to_string(kNobody) +
                      " --regid=" + std::to_string(kNobody) + " --clear-groups " + command;
        FILE* const output = popen(command.c_str(), "r");
        std::string text;
        for (int c = std::fgetc(output); c != EOF; c = std::fgetc(output))
            text += static_cast<char>(c);
        pclose(output);
        return text;
    }
    // As a user has them who may not use Firebird's own folder, whoever runs this.
    std::string PrivateLocks() const {
        const int user = geteuid() == 0 ? kNobody : static_cast<int>(geteuid());
        return "FIREBIRD_LOCK='" +
               (folder_ / "tmp" / ("tolvane-locks-" + std::to_string(user))).string() + "' ";
    }
    // An installation of Firebird with settings of its own, from that of the private server.
    std::string Installation(const std::string& settings, const std::string& plugins) const {
        const std::filesystem::path own = folder_ / "firebird";
        std::filesystem::create_directory(own);
        for (const auto& entry : std::filesystem::directory_iterator(Variable("TOLVANE_FB_ROOT"))) {
            const std::string name = entry.path().filename();
            if (name == "plugins.conf") continue;
            if (entry.is_symlink() || name == "intl")
                std::filesystem::copy(entry.path(), own / name,
                                      std::filesystem::copy_options::recursive |
                                          std::filesystem::copy_options::copy_symlinks);
        }
        PutFile(own / "firebird.conf", settings);
        PutFile(own / "plugins.conf", plugins);
        PutFile(own / "databases.conf", "");
        return "FIREBIRD='" + own.string() + "'";
    }

    TScratchFolder folder_;
};

TEST_F(EmbeddedUserTest, ReadsAFileThatItMayRead) {
    EXPECT_EQ(Probe(), "SYSDBA 305\n");
    // The folder for the locks is there now.
    EXPECT_EQ(Probe(), "SYSDBA 305\n");
}

// The probe is stopped while it is attached, and says so when the signals are no more its own.
TEST_F(EmbeddedUserTest, TheProgramsOwnStopSignalsStopNothing) {
    EXPECT_EQ(Probe(), "SYSDBA 305\n");
}

TEST_F(EmbeddedUserTest, AFolderForTheLocksMayBeNamed) {
    EXPECT_EQ(Probe("FIREBIRD_LOCK='" + (folder_ / "tmp").string() + "'"), "SYSDBA 305\n");
    EXPECT_FALSE(std::filesystem::is_empty(folder_ / "tmp"));
    EXPECT_FALSE(
        std::filesystem::exists(folder_ / "tmp" / ("tolvane-locks-" + std::to_string(kNobody))));
}

TEST_F(EmbeddedUserTest, AFileThatItMayNotReadIsToldInTheEnginesWords) {
    std::filesystem::permissions(File(), std::filesystem::perms::none);
    const std::string text = Probe();
    EXPECT_NE(text.find("Permission denied"), std::string::npos) << text;
}

TEST_F(EmbeddedUserTest, AFileThatAServerHasOpenIsRefusedWithTheCure) {
    TDatabaseLogin server = ShopLogin();
    server.database = Variable("TOLVANE_FB_SERVER") + ":" + File().string();
    const TAttachment attachment(server);
    const std::string text = Probe();
    EXPECT_TRUE(text.ends_with(std::string(kInUse) + "\n")) << text;
}

TEST_F(EmbeddedUserTest, AnEngineThatSharesTheFileIsRefusedWithAPrivateFolderOfLocks) {
    const std::string text = Probe(PrivateLocks() + Installation("ServerMode = Classic\n", ""));
    EXPECT_NE(text.find("Let FIREBIRD_LOCK name the folder that all use."), std::string::npos)
        << text;
}

TEST_F(EmbeddedUserTest, WithAPrivateFolderAFileThatAnotherEngineSharesIsNotTouched) {
    const std::string environment = PrivateLocks() + Installation("ServerMode = Classic\n", "");
    const std::string before = GetFile(File());
    const int other = open(File().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_SH), 0);
    const std::string text = Probe(environment);
    close(other);
    EXPECT_TRUE(text.ends_with(std::string(kInUse) + "\n")) << text;
    EXPECT_TRUE(GetFile(File()) == before) << "the engine has written";
}

TEST_F(EmbeddedUserTest, WithoutTheEngineThePackageIsNamed) {
    const std::string text =
        Probe(Installation("", "Plugin = Engine12 {\n  Module = /no/such/file\n}\n"));
    EXPECT_TRUE(text.ends_with(
        "unavailable database\nA plain path needs the embedded engine (Debian: "
        "firebird3.0-server-core). A database of a server is written SERVER/PORT:PATH.\n"))
        << text;
}

}  // namespace
}  // namespace tolvane::test
