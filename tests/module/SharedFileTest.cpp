// Several windows and hosts use one configuration file: none of them erases another's scales.
#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <random>
#include <string>

#include "tests/module/SecondHost.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"

namespace tolvane::test {
namespace {

constexpr DWORD kDeadlineMs = 60'000;

std::string Scale1(bool checked) {
    return std::string("[SCALE1]\r\nScaleNumb=1\r\nScaleName=A\r\nTCPAddress=127.0.0.1\r\n") +
           "TCPPort=100\r\nChecked=" + (checked ? "1" : "0") +
           "\r\nBaudRate=0\r\nScaleType=16\r\nEncoding=2\r\nScaleAddr=0\r\nCommType=1\r\n";
}

// The section of a scale as AddScale adds it.
std::string Added(int slot, int number) {
    const std::string digit = std::to_string(number);
    return "[SCALE" + std::to_string(slot) + "]\r\nScaleNumb=" + digit +
           "\r\nScaleName=(ETS) - 10.0.0." + digit + " (" + digit + ")\r\nTCPAddress=10.0.0." +
           digit +
           "\r\nTCPPort=100\r\nChecked=1\r\nBaudRate=0\r\nScaleType=5000\r\nEncoding=2\r\n"
           "ScaleAddr=0\r\nCommType=1\r\n";
}

// The scales' sections, without those that the windows keep for themselves.
std::string ScalesOf(const std::string& file) {
    std::string scales;
    bool isScale = false;
    for (std::size_t at = 0; at < file.size();) {
        const std::size_t end = file.find("\r\n", at) + 2;
        const std::string line = file.substr(at, end - at);
        if (line[0] == '[')
            isScale = line.rfind("[PLUGRID]", 0) != 0 && line.rfind("[SCALES", 0) != 0;
        if (isScale) scales += line;
        at = end;
    }
    return scales;
}

bool Unmarked(bool) {
    return false;
}

// The other host's process; never outlives the test.
class TSecondProcess {
public:
    explicit TSecondProcess(const std::wstring& work) {
        const std::wstring name = L"tolvane-second-" + std::to_wstring(GetCurrentProcessId());
        done_ = CreateEventW(nullptr, TRUE, FALSE, name.c_str());
        ResetEvent(done_);
        const std::wstring program =
            std::filesystem::path(TLoadedModule::Path()).parent_path().parent_path() /
            "second_host.exe";
        std::wstring line = L"second_host " + work + L" " + name;
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        EXPECT_TRUE(CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0,
                                   nullptr, nullptr, &startup, &process_))
            << GetLastError();
    }
    TSecondProcess(const TSecondProcess&) = delete;
    TSecondProcess& operator=(const TSecondProcess&) = delete;
    ~TSecondProcess() {
        Kill();
        for (const HANDLE handle : {done_, process_.hThread, process_.hProcess})
            if (handle != nullptr) CloseHandle(handle);
    }

    // Handles this thread's messages meanwhile, as a program that shows a window sends some to all
    // others.
    bool HasDoneItsWork() const {
        return WaitAlive([this] { return IsSet(done_) || IsSet(process_.hProcess); }) &&
               IsSet(done_);
    }
    bool HasEnded() const {
        return WaitAlive([this] { return IsSet(process_.hProcess); });
    }
    void Kill() const {
        TerminateProcess(process_.hProcess, 77);
        WaitForSingleObject(process_.hProcess, kDeadlineMs);
    }

private:
    static bool IsSet(HANDLE handle) { return WaitForSingleObject(handle, 0) == WAIT_OBJECT_0; }
    template <class Condition>
    bool WaitAlive(Condition condition) const {
        constexpr int kPatience = 60;
        return process_.hProcess != nullptr && RunLoopUntil(condition, kPatience);
    }

    HANDLE done_ = nullptr;
    PROCESS_INFORMATION process_{};
};

class SharedFileTest : public testing::Test {
protected:
    SharedFileTest() { TConfiguration::Write(Scale1(true)); }

    static std::string Scales() { return ScalesOf(TConfiguration::Bytes()); }
    static void Append(const std::string& text) {
        TConfiguration::Write(TConfiguration::Bytes() + text);
    }

    TSession session_;
};

class SharedFileTwoFrames : public SharedFileTest {
protected:
    SharedFileTwoFrames() {
        session_.Start();
        session_.StartIn(second_);
    }
    HWND SecondList() const { return second_.ChildOfClass(L"TElicomPluScaleListForm"); }
    void CloseSecond() const {
        SendMessageW(SecondList(), WM_CLOSE, 0, 0);
        RunLoopDry();
    }

    THostFrame second_;
};

}  // namespace

TEST_F(SharedFileTwoFrames, AScaleAddedInOneWindowOutlivesTheClosingOfTheOther) {
    AddScale(session_.List(), 2);
    session_.CloseList();
    CloseSecond();
    EXPECT_EQ(Scales(), Scale1(true) + Added(2, 2));
}

TEST_F(SharedFileTwoFrames, MarksAndAHandEditAndAnAddedScaleAreAllKept) {
    AddScale(session_.List(), 2);
    Append("[SCALE7]\r\nScaleName=by hand\r\nTCPAddress=10.0.0.7\r\nTCPPort=7\r\n");
    SetMark(SecondList(), 0, &Unmarked);
    CloseSecond();
    session_.CloseList();
    EXPECT_EQ(Scales(),
              Scale1(false) + Added(2, 2) +
                  "[SCALE7]\r\nScaleName=by hand\r\nTCPAddress=10.0.0.7\r\nTCPPort=7\r\n");
}

TEST_F(SharedFileTwoFrames, ConfirmingTheEditorInOneWindowKeepsTheOthersScale) {
    AddScale(session_.List(), 2);
    // Both windows use the second slot; the one that saves later takes the next.
    AddScale(SecondList(), 3);
    EXPECT_EQ(Scales(), Scale1(true) + Added(2, 2) + Added(3, 3));
    CloseSecond();
    session_.CloseList();
    EXPECT_EQ(Scales(), Scale1(true) + Added(2, 2) + Added(3, 3));
}

TEST_F(SharedFileTwoFrames, DeletingAScaleInOneWindowDeletesNoOther) {
    AddScale(session_.List(), 2);
    {
        const TDialogScript editor(L"TScaleComunicationForm",
                                   {Pressing("btnDeleteScale"), Pressing("btnOk")});
        SendMessageW(SecondList(), WM_COMMAND, 1005, 0);
    }
    EXPECT_EQ(Scales(), Added(2, 2));
    // The first window still has the deleted scale, and has changed nothing in it.
    session_.CloseList();
    CloseSecond();
    EXPECT_EQ(Scales(), Added(2, 2));
}

TEST_F(SharedFileTwoFrames, AScaleForWhichTheFileHasNoRoomIsNamedInOneBox) {
    std::string others;
    for (int slot = 2; slot <= 20; ++slot)
        others += Added(slot, slot);
    Append(others);
    const TBoxAnswerer boxes;
    AddScale(SecondList(), 33);
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text,
              "Във файла с настройките вече има 20 везни, записани от друг прозорец. "
              "Не са записани: (ETS) - 10.0.0.33 (33)");
    EXPECT_EQ(Scales(), Scale1(true) + others);
    // It is still in its window's list, and gets a slot as soon as one is free.
    {
        const TDialogScript editor(L"TScaleComunicationForm",
                                   {Pressing("btnDeleteScale"), Pressing("btnOk")});
        SendMessageW(SecondList(), WM_COMMAND, 1005, 0);
    }
    EXPECT_EQ(Scales(), Added(1, 33) + others);
}

TEST_F(SharedFileTest, AFileThatHasGoneIsWrittenWhole) {
    session_.Start();
    std::filesystem::remove(TConfiguration::File());
    session_.CloseList();
    EXPECT_EQ(Scales(), Scale1(true));
}

TEST_F(SharedFileTest, AScaleAddedByAnotherHostOutlivesTheClosingOfThisOne) {
    session_.Start();
    {
        const TSecondProcess other(L"add");
        EXPECT_TRUE(other.HasDoneItsWork());
        EXPECT_TRUE(other.HasEnded());
    }
    Append("[OTHER]\r\nkey = value\r\n");
    SetMark(session_.List(), 0, &Unmarked);
    session_.CloseList();
    EXPECT_EQ(Scales(), Scale1(false) + Added(2, 2) + "[OTHER]\r\nkey = value\r\n");
}

TEST_F(SharedFileTest, AHostKilledWhileItSavesLeavesWhatThisOneChanges) {
    constexpr int kKills = 10;
    std::mt19937 random(11);
    for (int kill = 0; kill < kKills; ++kill) {
        SCOPED_TRACE(kill);
        TConfiguration::Write(Scale1(true));
        session_.Start();
        {
            const TSecondProcess other(L"toggle");
            ASSERT_TRUE(other.HasDoneItsWork());
            Sleep(random() % 300);
            other.Kill();
        }
        const std::string left = Scales();
        AddScale(session_.List(), 2);
        session_.CloseList();
        EXPECT_TRUE(left == Scale1(true) || left == Scale1(false)) << left;
        EXPECT_EQ(Scales(), left + Added(2, 2));
        const std::filesystem::path folder = TConfiguration::File().parent_path();
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            EXPECT_EQ(entry.path().filename().string().find(".tolvane-"), std::string::npos)
                << entry.path();
    }
}

}  // namespace tolvane::test
