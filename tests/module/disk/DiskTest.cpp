// The Operations folder beside this program lies on a small disk of its own, which the steps that
// start it have made.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "tests/support/FullDisk_win32.h"
#include "tests/support/module/SettingsSession.h"

namespace tolvane::test {
namespace {

using std::filesystem::path;

path Ballast() {
    return TConfiguration::File().parent_path() / "ballast";
}

std::set<std::string> FilesBeside() {
    std::set<std::string> names;
    for (const auto& entry :
         std::filesystem::directory_iterator(TConfiguration::File().parent_path()))
        names.insert(entry.path().filename().string());
    return names;
}

const std::set<std::string> kBallastAndOurs = {"Tolvane.dll", "Tolvane.ini", "ballast"};

}  // namespace

using FullDiskTest = TSettingsSession;

TEST_F(FullDiskTest, ConfirmingFailsInOneBoxAndKeepsTheFileUntilThereIsRoomAgain) {
    session_.Start();
    {
        const TFullDisk full(Ballast());
        const TBoxAnswerer boxes;
        DeleteTheScale();
        ExpectNotWritten(boxes, TFullDisk::kError);
        EXPECT_EQ(Content(), kBefore);
        EXPECT_EQ(FilesBeside(), kBallastAndOurs);
    }
    EXPECT_NE(session_.List(), nullptr);
    OpenSettings({Pressing("btnOk")});
    EXPECT_EQ(Content(), kWithoutScale);
}

TEST_F(FullDiskTest, ClosingReportsOneBoxKeepsTheFileAndTheWindowStillCloses) {
    session_.Start();
    {
        const TFullDisk full(Ballast());
        const TBoxAnswerer boxes;
        session_.CloseList();
        ExpectNotWritten(boxes, TFullDisk::kError);
        EXPECT_EQ(Content(), kBefore);
        EXPECT_EQ(FilesBeside(), kBallastAndOurs);
    }
    EXPECT_EQ(session_.List(), nullptr);
    EXPECT_EQ(session_.Completions(), 1);
    session_.Start();
    session_.CloseList();
    EXPECT_EQ(TConfiguration::Value("SCALE3", "ScaleName"), "SCALE 3");
    EXPECT_EQ(TConfiguration::Value("OTHER", "key"), "value");
}

}  // namespace tolvane::test
