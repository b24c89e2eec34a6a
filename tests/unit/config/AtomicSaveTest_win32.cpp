#include <gtest/gtest.h>
#include <windows.h>

#include <random>

#include "config/IniFile.h"
#include "system/FileLock.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/config/SavedVersions.h"

namespace tolvane {
namespace {

using std::filesystem::path;

constexpr DWORD kDeadlineMs = 60'000;
constexpr UINT kKilled = 77;  // the exit code

path SaverProgram() {
    std::wstring program(MAX_PATH, L'\0');
    program.resize(GetModuleFileNameW(nullptr, program.data(), MAX_PATH));
    return path(program).parent_path() / "config_saver.exe";
}

// Another program at work in a folder. Never outlives the test.
class TSaver {
public:
    explicit TSaver(const path& folder, const std::wstring& work = L"save") {
        const std::wstring name = L"tolvane-saver-" + std::to_wstring(GetCurrentProcessId());
        started_ = CreateEventW(nullptr, TRUE, FALSE, name.c_str());
        ResetEvent(started_);
        std::wstring line = L"config_saver " + work + L" " + name;
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        EXPECT_TRUE(CreateProcessW(SaverProgram().c_str(), line.data(), nullptr, nullptr, FALSE, 0,
                                   nullptr, folder.c_str(), &startup, &process_))
            << GetLastError();
    }
    TSaver(const TSaver&) = delete;
    TSaver& operator=(const TSaver&) = delete;
    ~TSaver() {
        TerminateProcess(process_.hProcess, kKilled);
        for (const HANDLE handle : {started_, process_.hThread, process_.hProcess})
            if (handle != nullptr) CloseHandle(handle);
    }

    // Whether it has saved once, or has its lock.
    bool HasStarted() const {
        const HANDLE either[] = {started_, process_.hProcess};
        return WaitForMultipleObjects(2, either, FALSE, kDeadlineMs) == WAIT_OBJECT_0;
    }
    // Kills it after that time. Returns whether it was still at work then.
    bool DiesAfter(DWORD milliseconds) const {
        if (WaitForSingleObject(process_.hProcess, milliseconds) != WAIT_TIMEOUT) return false;
        TerminateProcess(process_.hProcess, kKilled);
        DWORD code = 0;
        return WaitForSingleObject(process_.hProcess, kDeadlineMs) == WAIT_OBJECT_0 &&
               GetExitCodeProcess(process_.hProcess, &code) && code == kKilled;
    }

private:
    HANDLE started_ = nullptr;
    PROCESS_INFORMATION process_{};
};

TEST(WriteIniFile, LeavesTheOldOrTheNewFileWholeWhenItIsKilled) {
    const TScratchFolder folder;
    const path file = folder / "a.ini";
    const std::string versions[] = {SavedVersion('1').Bytes(), SavedVersion('2').Bytes()};
    std::mt19937 random(1);
    int leftovers = 0;
    for (int kill = 0; kill < Kills(); ++kill) {
        {
            const TSaver saver(folder.Path());
            ASSERT_TRUE(saver.HasStarted()) << "kill " << kill;
            ASSERT_TRUE(saver.DiesAfter(random() % 7)) << "kill " << kill;
        }
        const std::string found = GetFile(file);
        ASSERT_TRUE(found == versions[0] || found == versions[1]) << "kill " << kill;
        if (folder.FileCount() > 1) ++leftovers;
        // The next save, even of unchanged content, removes what the killed one left.
        WriteIniFile(file, TIniDocument(found));
        ASSERT_EQ(folder.FileCount(), 1U) << "kill " << kill;
        ASSERT_TRUE(GetFile(file) == found) << "kill " << kill;
    }
    RecordProperty("leftovers", leftovers);
    // At least one kill must have hit a half-done save; otherwise this has shown nothing.
    EXPECT_GT(leftovers, 0);
    WriteIniFile(file, TIniDocument("[A]\r\nk=1\r\n"));
    EXPECT_EQ(folder.FileCount(), 1U);
    EXPECT_EQ(GetFile(file), "[A]\r\nk=1\r\n");
}

TEST(FileLock, EndsWithItsProgram) {
    const TScratchFolder folder;
    {
        const TSaver holder(folder.Path(), L"lock");
        ASSERT_TRUE(holder.HasStarted());
        EXPECT_FALSE(TFileLock(folder / "a.ini").IsHeld());
        ASSERT_TRUE(holder.DiesAfter(0));
    }
    EXPECT_TRUE(TFileLock(folder / "a.ini").IsHeld());
    EXPECT_EQ(folder.FileCount(), 0U);
}

}  // namespace
}  // namespace tolvane
