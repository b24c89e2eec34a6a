#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>

namespace tolvane::test {

// Another program (Windows) at work in a folder, until it is killed; it lies beside the test's.
// Never outlives the test.
class TOtherProgram {
public:
    // `arguments` follow the program's name and tell it `event`, which it sets when it has begun.
    TOtherProgram(const std::wstring& program, const std::wstring& arguments,
                  const std::wstring& event, const std::filesystem::path& folder) {
        started_ = CreateEventW(nullptr, TRUE, FALSE, event.c_str());
        ResetEvent(started_);
        std::wstring line = program + L" " + arguments;
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        EXPECT_TRUE(CreateProcessW(Beside(program + L".exe").c_str(), line.data(), nullptr, nullptr,
                                   FALSE, 0, nullptr, folder.c_str(), &startup, &process_))
            << GetLastError();
    }
    TOtherProgram(const TOtherProgram&) = delete;
    TOtherProgram& operator=(const TOtherProgram&) = delete;
    ~TOtherProgram() {
        TerminateProcess(process_.hProcess, kKilled);
        for (const HANDLE handle : {started_, process_.hThread, process_.hProcess})
            if (handle != nullptr) CloseHandle(handle);
    }

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
    DWORD Process() const { return process_.dwProcessId; }

private:
    static constexpr DWORD kDeadlineMs = 60'000;
    static constexpr UINT kKilled = 77;  // the exit code

    static std::filesystem::path Beside(const std::wstring& name) {
        std::wstring program(MAX_PATH, L'\0');
        program.resize(GetModuleFileNameW(nullptr, program.data(), MAX_PATH));
        return std::filesystem::path(program).parent_path() / name;
    }

    HANDLE started_ = nullptr;
    PROCESS_INFORMATION process_{};
};

}  // namespace tolvane::test
