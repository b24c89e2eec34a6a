#include "tests/command/program/Process.h"

#include <windows.h>

#include <stdexcept>
#include <system_error>
#include <utility>

#include "tests/support/ScratchFolder.h"

namespace tolvane::test {
namespace {

std::wstring Wide(const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).wstring();
}

// One word of a command line, as CommandLineToArgvW reads it.
std::wstring Quoted(const std::wstring& word) {
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t letter : word) {
        if (letter == L'"') quoted.append(backslashes + 1, L'\\');
        backslashes = letter == L'\\' ? backslashes + 1 : 0;
        quoted += letter;
    }
    return quoted.append(backslashes, L'\\') + L'"';
}

HANDLE OpenForChild(const std::filesystem::path& file, DWORD access, DWORD creation) {
    SECURITY_ATTRIBUTES inherited{
        .nLength = sizeof inherited, .lpSecurityDescriptor = nullptr, .bInheritHandle = TRUE};
    const HANDLE handle = CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      &inherited, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
    return handle;
}

// The test's own variables with these changes, while it lives.
class TChangedEnvironment {
public:
    explicit TChangedEnvironment(const std::map<std::string, std::string>& changes) {
        for (const auto& [name, value] : changes) {
            const std::wstring wide = Wide(name);
            std::wstring old(32767, L'\0');
            old.resize(
                GetEnvironmentVariableW(wide.c_str(), old.data(), static_cast<DWORD>(old.size())));
            before_[wide] = old;
            SetEnvironmentVariableW(wide.c_str(), Wide(value).c_str());
        }
    }
    TChangedEnvironment(const TChangedEnvironment&) = delete;
    TChangedEnvironment& operator=(const TChangedEnvironment&) = delete;
    ~TChangedEnvironment() {
        for (const auto& [name, value] : before_)
            SetEnvironmentVariableW(name.c_str(), value.empty() ? nullptr : value.c_str());
    }

private:
    std::map<std::wstring, std::wstring> before_;
};

}  // namespace

struct TProcess::TState {
    HANDLE process;
};

TProcess::TProcess(const TStart& start) {
    const TChangedEnvironment environment(start.environment);
    std::wstring line = Quoted(start.program.wstring());
    for (const std::string& argument : start.arguments)
        line += L" " + Quoted(Wide(argument));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = OpenForChild("NUL", GENERIC_READ, OPEN_EXISTING);
    // A handle that only reads takes nothing.
    startup.hStdOutput = OpenForChild(
        start.folder / "out", start.outIsFull ? GENERIC_READ : GENERIC_WRITE, CREATE_ALWAYS);
    startup.hStdError = OpenForChild(start.folder / "err", GENERIC_WRITE, CREATE_ALWAYS);
    PROCESS_INFORMATION process{};
    const bool started =
        CreateProcessW(start.program.c_str(), line.data(), nullptr, nullptr, TRUE,
                       CREATE_NEW_CONSOLE, nullptr, nullptr, &startup, &process) != 0;
    const DWORD error = GetLastError();
    for (const HANDLE handle : {startup.hStdInput, startup.hStdOutput, startup.hStdError})
        CloseHandle(handle);
    if (!started)
        throw std::system_error(static_cast<int>(error), std::system_category(),
                                start.program.string());
    CloseHandle(process.hThread);
    state_.reset(new TState{process.hProcess});
}

TProcess::~TProcess() {
    TerminateProcess(state_->process, 137);
    WaitForSingleObject(state_->process, 10'000);
    CloseHandle(state_->process);
}

std::optional<int> TProcess::WaitFor(std::chrono::milliseconds time) {
    DWORD code = 0;
    if (WaitForSingleObject(state_->process, static_cast<DWORD>(time.count())) != WAIT_OBJECT_0 ||
        !GetExitCodeProcess(state_->process, &code))
        return std::nullopt;
    return static_cast<int>(code);
}

// Each program has a console of its own. Another program sends the event, as it reaches the sender
// as well.
void TProcess::Interrupt() {
    const DWORD process = GetProcessId(state_->process);
    const TScratchFolder folder;
    TProcess sender({.program = TOLVANE_INTERRUPT_PROGRAM,
                     .arguments = {std::to_string(process)},
                     .folder = folder.Path()});
    if (sender.WaitFor(std::chrono::seconds(30)) != 0)
        throw std::runtime_error("Ctrl+C could not be sent");
}

}  // namespace tolvane::test
