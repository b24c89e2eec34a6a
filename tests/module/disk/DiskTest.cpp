// The Operations folder beside this program lies on a small disk of its own, which the steps that
// start it have made.
#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <set>
#include <vector>

#include "tests/support/module/SettingsSession.h"

namespace tolvane::test {
namespace {

using std::filesystem::path;

constexpr DWORD kDiskFull = 112;

path Ballast() {
    return TConfiguration::File().parent_path() / "ballast";
}

// Fills the disk while it lives.
class TFullDisk {
public:
    TFullDisk() {
        handle_ =
            CreateFileW(Ballast().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        EXPECT_NE(handle_, INVALID_HANDLE_VALUE);
        for (const DWORD size : {65536U, 4096U, 1U})
            FillBy(size);
    }
    TFullDisk(const TFullDisk&) = delete;
    TFullDisk& operator=(const TFullDisk&) = delete;
    ~TFullDisk() {
        CloseHandle(handle_);
        DeleteFileW(Ballast().c_str());
    }

private:
    void FillBy(DWORD size) const {
        const std::vector<char> block(size, 'x');
        DWORD written = 0;
        int blocks = 0;
        constexpr int kMost = 4096;  // more than the disk of this test can hold
        while (blocks < kMost && WriteFile(handle_, block.data(), size, &written, nullptr) != 0)
            ++blocks;
        EXPECT_LT(blocks, kMost) << "the disk never gets full";
        EXPECT_EQ(GetLastError(), kDiskFull);
    }

    HANDLE handle_;
};

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
        const TFullDisk full;
        const TBoxAnswerer boxes;
        DeleteTheScale();
        ExpectNotWritten(boxes, kDiskFull);
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
        const TFullDisk full;
        const TBoxAnswerer boxes;
        session_.CloseList();
        ExpectNotWritten(boxes, kDiskFull);
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
