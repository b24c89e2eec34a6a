#include "system/EmbeddedEngine.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <langinfo.h>
#include <sys/file.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <map>
#include <string>

#include "tests/support/ScratchFolder.h"
#include "text/Failure.h"

namespace tolvane {
namespace {

void Own(int) {}
void Foreign(int) {}

using THandler = void (*)(int);
THandler HandlerOf(int signal) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler;
}

TEST(ClientCallScope, TheProgramsOwnHandlersComeBack) {
    const THandler interrupt = std::signal(SIGINT, Own);
    const THandler terminate = std::signal(SIGTERM, SIG_IGN);
    {
        const TClientCallScope scope;
        std::signal(SIGINT, Foreign);
        std::signal(SIGTERM, Foreign);
    }
    EXPECT_EQ(HandlerOf(SIGINT), Own);
    EXPECT_EQ(HandlerOf(SIGTERM), SIG_IGN);
    std::signal(SIGINT, interrupt);
    std::signal(SIGTERM, terminate);
}

TEST(ClientCallScope, FileNamesAreUtf8OnlyInside) {
    const std::string before = nl_langinfo(CODESET);
    ASSERT_NE(before, "UTF-8");
    {
        const TClientCallScope scope;
        EXPECT_STREQ(nl_langinfo(CODESET), "UTF-8");
    }
    EXPECT_EQ(nl_langinfo(CODESET), before);
}

// Another holder of a file's lock: the lock belongs to the opened file, so that this process may be
// it.
class THolder {
public:
    THolder(const std::filesystem::path& file, int lock)
        : descriptor_(open(file.c_str(), O_RDONLY)) {
        EXPECT_EQ(flock(descriptor_, lock), 0);
    }
    THolder(const THolder&) = delete;
    THolder& operator=(const THolder&) = delete;
    ~THolder() { close(descriptor_); }

private:
    int descriptor_;
};

TEST(UseOf, TellsWhoElseHasTheFile) {
    const TScratchFolder folder;
    const std::filesystem::path file = folder / "shop.fdb";
    EXPECT_EQ(UseOf(file), TFileUse::Unknown);
    PutFile(file, "x");
    EXPECT_EQ(UseOf(file), TFileUse::Free);
    {
        const THolder holder(file, LOCK_SH);
        EXPECT_EQ(UseOf(file), TFileUse::Shared);
        EXPECT_EQ(UseOf(file), TFileUse::Shared);
    }
    {
        const THolder holder(file, LOCK_EX);
        EXPECT_EQ(UseOf(file), TFileUse::Exclusive);
    }
    EXPECT_EQ(UseOf(file), TFileUse::Free);
}

// Sets variables of the environment for the length of a test.
class PrepareEngineLocksTest : public testing::Test {
protected:
    ~PrepareEngineLocksTest() override {
        for (const auto& [name, value] : before_) {
            if (value.empty())
                unsetenv(name.c_str());
            else
                setenv(name.c_str(), value.c_str(), 1);
        }
    }
    void Set(const std::string& name, const std::string& value) {
        const char* const now = std::getenv(name.c_str());
        before_.emplace(name, now == nullptr ? "" : now);
        setenv(name.c_str(), value.c_str(), 1);
    }
    std::filesystem::path Private() const {
        return folder_ / ("tolvane-locks-" + std::to_string(geteuid()));
    }

    TScratchFolder folder_;

private:
    std::map<std::string, std::string> before_;
};

TEST_F(PrepareEngineLocksTest, AFolderThatTheUserNamesIsLeftAlone) {
    Set("FIREBIRD_LOCK", (folder_ / "locks").string());
    EXPECT_FALSE(PrepareEngineLocks());
    EXPECT_EQ(std::getenv("FIREBIRD_LOCK"), (folder_ / "locks").string());
    EXPECT_EQ(folder_.FileCount(), 0U);
}

TEST_F(PrepareEngineLocksTest, ThePrivateFolderIsMadeForThisUserAloneAndKnownAgain) {
    Set("TMPDIR", folder_.Path().string());
    Set("FIREBIRD_LOCK", Private().string());
    EXPECT_TRUE(PrepareEngineLocks());
    EXPECT_EQ(std::filesystem::status(Private()).permissions(), std::filesystem::perms::owner_all);
    EXPECT_TRUE(PrepareEngineLocks());
}

TEST_F(PrepareEngineLocksTest, AFolderThatOthersMayEnterIsRefused) {
    Set("TMPDIR", folder_.Path().string());
    Set("FIREBIRD_LOCK", Private().string());
    std::filesystem::create_directory(Private());
    std::filesystem::permissions(Private(), std::filesystem::perms::all);
    EXPECT_THROW(PrepareEngineLocks(), TFailure);
}

TEST_F(PrepareEngineLocksTest, ALinkInItsPlaceIsRefused) {
    Set("TMPDIR", folder_.Path().string());
    Set("FIREBIRD_LOCK", Private().string());
    std::filesystem::create_directory(folder_ / "elsewhere");
    std::filesystem::create_directory_symlink(folder_ / "elsewhere", Private());
    EXPECT_THROW(PrepareEngineLocks(), TFailure);
}

}  // namespace
}  // namespace tolvane
