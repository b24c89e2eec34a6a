#include "demo/driver/RemoteWindows.h"

#include <commctrl.h>

#include <array>
#include <chrono>
#include <thread>
#include <vector>

#include "window/Handles.h"

namespace tolvane {
namespace {

// The process that a window belongs to; owns nothing when it cannot be opened.
TOwnedKernelObject ProcessOf(HWND window, DWORD access) {
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    return TOwnedKernelObject(OpenProcess(access, FALSE, id));
}

std::string ReadZeroTerminated(const TOwnedKernelObject& process, const void* address) {
    std::string text;
    const char* at = static_cast<const char*>(address);
    char c = 0;
    SIZE_T read = 0;
    while (text.size() < 100 && ReadProcessMemory(process.Get(), at, &c, 1, &read) != 0 && c != 0) {
        text += c;
        ++at;
    }
    return text;
}

struct TSearch {
    std::function<bool(HWND)> matches;
    HWND found = nullptr;
};

BOOL CALLBACK VisitWindow(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<TSearch*>(parameter);
    if (search.matches(window)) search.found = window;
    return search.found == nullptr ? TRUE : FALSE;
}

BOOL CALLBACK VisitTopLevel(HWND window, LPARAM parameter) {
    if (VisitWindow(window, parameter) == FALSE) return FALSE;
    EnumChildWindows(window, VisitWindow, parameter);
    return reinterpret_cast<TSearch*>(parameter)->found == nullptr ? TRUE : FALSE;
}

HWND FindWindowWhere(std::function<bool(HWND)> matches) {
    TSearch search{std::move(matches)};
    EnumWindows(VisitTopLevel, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

}  // namespace

std::string ComponentNameOf(HWND window) {
    const HANDLE property = GetPropW(window, L"ComponentName");
    if (property == nullptr) return {};
    return ReadZeroTerminated(ProcessOf(window, PROCESS_VM_READ | PROCESS_QUERY_INFORMATION),
                              property);
}

HWND FindByClass(std::wstring_view className) {
    return FindWindowWhere([&](HWND window) {
        std::array<wchar_t, 100> name{};
        GetClassNameW(window, name.data(), static_cast<int>(name.size()));
        return className == name.data() && IsWindowVisible(window) != 0;
    });
}

HWND FindByComponentName(std::string_view name) {
    if (name.starts_with('#')) {
        const int number = std::stoi(std::string(name.substr(1)));
        return FindWindowWhere([number](HWND window) {
            return GetDlgCtrlID(window) == number && IsWindowVisible(window) != 0 &&
                   (GetWindowLongW(window, GWL_STYLE) & WS_CHILD) != 0;
        });
    }
    return FindWindowWhere([&](HWND window) { return ComponentNameOf(window) == name; });
}

std::string Utf8(std::wstring_view text) {
    std::string utf8(text.size() * 3, '\0');
    utf8.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), utf8.data(),
                            static_cast<int>(utf8.size()), nullptr, nullptr)));
    return utf8;
}

std::wstring Utf16(std::string_view utf8) {
    std::wstring text(utf8.size(), L'\0');
    text.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), text.data(),
                            static_cast<int>(text.size()))));
    return text;
}

std::string TextOf(HWND window) {
    const auto length = static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0));
    std::vector<wchar_t> wide(length + 1);
    const auto read = static_cast<std::size_t>(
        SendMessageW(window, WM_GETTEXT, wide.size(), reinterpret_cast<LPARAM>(wide.data())));
    return Utf8({wide.data(), read});
}

bool IsPainted(HWND window) {
    TSearch unpainted{[](HWND candidate) {
        return IsWindowVisible(candidate) != 0 && GetUpdateRect(candidate, nullptr, FALSE) != 0;
    }};
    if (VisitWindow(window, reinterpret_cast<LPARAM>(&unpainted)) != FALSE)
        EnumChildWindows(window, VisitWindow, reinterpret_cast<LPARAM>(&unpainted));
    return unpainted.found == nullptr;
}

bool MarkRow(HWND list, int row) {
    LVITEMW item{};
    item.state = LVIS_SELECTED;
    item.stateMask = LVIS_SELECTED;
    const TOwnedKernelObject owner = ProcessOf(list, PROCESS_VM_OPERATION | PROCESS_VM_WRITE);
    if (!owner) return false;
    const HANDLE process = owner.Get();
    void* there = VirtualAllocEx(process, nullptr, sizeof item, MEM_COMMIT, PAGE_READWRITE);
    const bool marked = there != nullptr &&
                        WriteProcessMemory(process, there, &item, sizeof item, nullptr) != 0 &&
                        SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row),
                                     reinterpret_cast<LPARAM>(there)) != 0;
    if (there != nullptr) VirtualFreeEx(process, there, 0, MEM_RELEASE);
    return marked;
}

bool WaitFor(int seconds, const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return true;
}

}  // namespace tolvane
