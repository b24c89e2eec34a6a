#include "WindowScript.h"

#include <tlhelp32.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "text/Cp1251.h"
#include "window/WideText.h"

namespace tolvane::test {
namespace {

// Far longer than a run here takes, also on a busy machine.
constexpr DWORD kPatienceMs = 60000;
TWindowScript* currentScript = nullptr;

struct TSearch {
    const wchar_t* className;
    HWND found = nullptr;
};

// The call that shows the windows would never come back.
[[noreturn]] void GiveUp(const std::string& reason) {
    std::fprintf(stderr, "%s\n", reason.c_str());
    std::_Exit(3);
}

BOOL CALLBACK Visit(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<TSearch*>(parameter);
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    if (IsWindowVisible(window) == 0 || std::wstring(name) != search.className) return TRUE;
    search.found = window;
    return FALSE;
}

BOOL CALLBACK BringToFront(HWND window, LPARAM) {
    if (GetActiveWindow() == window || IsWindowVisible(window) == 0 || IsWindowEnabled(window) == 0)
        return TRUE;
    SetForegroundWindow(window);
    return FALSE;
}

std::uint64_t MadeAt(DWORD thread) {
    const HANDLE handle = OpenThread(THREAD_QUERY_INFORMATION, FALSE, thread);
    FILETIME made{};
    FILETIME other{};
    GetThreadTimes(handle, &made, &other, &other, &other);
    CloseHandle(handle);
    return std::uint64_t{made.dwHighDateTime} << 32 | made.dwLowDateTime;
}

}  // namespace

TWindowScript::TWindowScript() : timer_(SetTimer(nullptr, 0, 10, &Tick)) {
    currentScript = this;
    stepStart_ = lastTick_ = GetTickCount();
}

TWindowScript::~TWindowScript() {
    KillTimer(nullptr, timer_);
    currentScript = nullptr;
}

void TWindowScript::When(std::function<bool()> condition, std::function<void()> action) {
    steps_.push_back({std::move(condition), std::move(action)});
}

void TWindowScript::Measure() {
    turns_ = 0;
    longestGap_ = 0;
    lastTick_ = GetTickCount();
}

void CALLBACK TWindowScript::Tick(HWND, UINT, UINT_PTR, DWORD) {
    if (currentScript != nullptr) currentScript->Play();
}

void TWindowScript::Play() {
    const DWORD now = GetTickCount();
    longestGap_ = std::max(longestGap_, now - lastTick_);
    lastTick_ = now;
    ++turns_;
    // A step's action may open a window that runs messages itself.
    if (IsDone()) {
        if (now - stepStart_ > kPatienceMs) GiveUp("the call does not return");
    } else if (steps_[next_].condition()) {
        const std::function<void()> action = steps_[next_].action;
        ++next_;
        stepStart_ = now;
        action();
        lastTick_ = GetTickCount();
    } else if (now - stepStart_ > kPatienceMs) {
        GiveUp("step " + std::to_string(next_ + 1) + " waits in vain");
    }
}

HWND ThreadWindow(const wchar_t* className) {
    TSearch search{className};
    EnumThreadWindows(GetCurrentThreadId(), &Visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::string Utf8Text(HWND window) {
    return ToUtf8(WindowText(window));
}

void PressKey(WPARAM virtualKey) {
    // A user brings a window to the front that some other one has taken the keyboard from.
    if (GetFocus() == nullptr) EnumThreadWindows(GetCurrentThreadId(), &BringToFront, 0);
    PostMessageW(GetFocus(), WM_KEYDOWN, virtualKey, 1);
}

void TCtrlKey::Set(BYTE state) {
    BYTE keys[256] = {};
    GetKeyboardState(keys);
    keys[VK_CONTROL] = state;
    SetKeyboardState(keys);
}

void Click(HWND button) {
    PostMessageW(button, BM_CLICK, 0, 0);
}

std::set<TThreadKey> Threads() {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    std::set<TThreadKey> threads;
    for (BOOL more = Thread32First(snapshot, &entry); more != 0;
         more = Thread32Next(snapshot, &entry)) {
        if (entry.th32OwnerProcessID == GetCurrentProcessId())
            threads.emplace(entry.th32ThreadID, MadeAt(entry.th32ThreadID));
    }
    CloseHandle(snapshot);
    return threads;
}

}  // namespace tolvane::test
