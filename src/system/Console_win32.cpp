#include "system/Console.h"

#include <windows.h>

#include <shellapi.h>

namespace tolvane {
namespace {

std::string Utf8(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 1) return {};
    std::string out(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, out.data(), size, nullptr, nullptr);
    out.pop_back();
    return out;
}

std::wstring Wide(const std::string& text) {
    const int size = MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, nullptr, 0);
    std::wstring out(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, out.data(), size);
    out.pop_back();
    return out;
}

}  // namespace

struct TConsole::TBefore {
    UINT codePage;
};

TConsole::TConsole() : before_(new TBefore{GetConsoleOutputCP()}) {
    SetConsoleOutputCP(CP_UTF8);
    // Bars are drawn by control sequences; a console that does not know them is no terminal here.
    DWORD mode = 0;
    const HANDLE error = GetStdHandle(STD_ERROR_HANDLE);
    if (GetConsoleMode(error, &mode))
        SetConsoleMode(error, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

TConsole::~TConsole() {
    if (before_->codePage != 0) SetConsoleOutputCP(before_->codePage);
}

bool TConsole::ErrorIsTerminal() const {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) &&
           (mode & ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::size_t TConsole::ErrorColumns() const {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info)) return kUsualColumns;
    const int columns = info.srWindow.Right - info.srWindow.Left + 1;
    return columns > 0 ? static_cast<std::size_t>(columns) : kUsualColumns;
}

std::vector<std::string> ProgramArguments(int, char**) {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i)
        arguments.push_back(Utf8(words[i]));
    LocalFree(words);
    return arguments;
}

std::optional<std::string> EnvironmentVariable(const std::string& name) {
    const std::wstring wide = Wide(name);
    const DWORD size = GetEnvironmentVariableW(wide.c_str(), nullptr, 0);
    if (size <= 1) return std::nullopt;
    std::wstring value(size, L'\0');
    GetEnvironmentVariableW(wide.c_str(), value.data(), size);
    return Utf8(value.c_str());
}

}  // namespace tolvane
