// --client-library. That one which is not there is told, FailuresTest shows.

#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

using ClientLibraryTest = TProgramTest;

#ifdef _WIN32
// Where its installer puts it.
std::string Client(const TScratchFolder&) {
    return "C:\\windows\\system32\\fbclient.dll";
}
constexpr const char* kOther = "C:\\windows\\system32\\ws2_32.dll";
constexpr const char* kPlanted = "planted-client.dll";
constexpr const char* kMissing = "(126)";
#else
// Under a name that nothing but the option tells.
std::string Client(const TScratchFolder& folder) {
    const std::filesystem::path link = folder / "renamed-client.so";
    std::filesystem::create_symlink("/usr/lib/x86_64-linux-gnu/libfbclient.so.2", link);
    return link.string();
}
constexpr const char* kOther = "libm.so.6";
constexpr const char* kPlanted = "planted-client.so";
constexpr const char* kMissing = "No such file or directory";
#endif

// The test's current folder, which the command inherits.
class TCurrentFolder {
public:
    explicit TCurrentFolder(const std::filesystem::path& folder) {
        std::filesystem::current_path(folder);
    }
    TCurrentFolder(const TCurrentFolder&) = delete;
    TCurrentFolder& operator=(const TCurrentFolder&) = delete;
    ~TCurrentFolder() { std::filesystem::current_path(before_); }

private:
    std::filesystem::path before_ = std::filesystem::current_path();
};

TEST_F(ClientLibraryTest, TheNamedOneReadsTheDatabase) {
    const TRun run = Run({"articles", "--json", "--client-library", Client(folder_)});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Rows("articles").size(), 4U);
}

TEST_F(ClientLibraryTest, AnotherLibraryIsToldToBeNone) {
    const TRun run = Run({"articles", "--client-library", kOther});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_NE(run.err.find(std::string(kOther) +
                           " is no Firebird client library: it lacks the function "),
              std::string::npos)
        << run.err;
    EXPECT_EQ(run.out, "");
}

// Anybody may have put a file there.
TEST_F(ClientLibraryTest, ANameAloneIsNotLookedForInTheCurrentFolder) {
    const TScratchFolder planted;
    PutFile(planted / kPlanted, std::string(4096, '#'));
    const TCurrentFolder current(planted.Path());
    const TRun run = Run({"articles", "--client-library", kPlanted});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_NE(run.err.find(kMissing), std::string::npos) << run.err;
}

}  // namespace
}  // namespace tolvane::test
