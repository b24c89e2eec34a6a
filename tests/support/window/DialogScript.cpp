#include "tests/support/window/DialogScript.h"

#include <gtest/gtest.h>

#include <array>
#include <map>

#include "tests/support/window/HostFrame.h"
#include "tests/support/window/Screenshot.h"
#include "window/Dpi.h"

namespace tolvane::test {
namespace {

constexpr UINT kLooksEveryMs = 10;
constexpr DWORD kPatienceMs = 5000;

std::map<UINT_PTR, std::function<void()>>& Ticks() {
    static std::map<UINT_PTR, std::function<void()>> ticks;
    return ticks;
}

struct TClassSearch {
    const std::wstring& className;
    HWND found = nullptr;
};

BOOL CALLBACK CompareClass(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<TClassSearch*>(parameter);
    if (IsWindowVisible(window) != 0 && ClassOf(window) == search.className) search.found = window;
    return search.found == nullptr ? TRUE : FALSE;
}

void SetKey(int virtualKey, BYTE state) {
    std::array<BYTE, 256> keys{};
    GetKeyboardState(keys.data());
    keys[static_cast<std::size_t>(virtualKey)] = state;
    SetKeyboardState(keys.data());
}

}  // namespace

TDialogScript::TDialogScript(std::wstring className, std::vector<TStep> steps)
    : className_(std::move(className)),
      steps_(std::move(steps)),
      timer_(SetTimer(nullptr, 0, kLooksEveryMs, &Tick)) {
    Ticks()[timer_] = [this] { RunNext(); };
}

TDialogScript::~TDialogScript() {
    KillTimer(nullptr, timer_);
    Ticks().erase(timer_);
    EXPECT_TRUE(IsDone()) << "after " << next_ << " of " << steps_.size() << " steps of "
                          << Utf8(className_);
    EXPECT_FALSE(WasLeftOpen()) << Utf8(className_);
}

void CALLBACK TDialogScript::Tick(HWND, UINT, UINT_PTR timer, DWORD) {
    const auto tick = Ticks().find(timer);
    if (tick != Ticks().end()) tick->second();
}

HWND TDialogScript::Window() const {
    TClassSearch search{className_};
    EnumThreadWindows(GetCurrentThreadId(), &CompareClass, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

void TDialogScript::RunNext() {
    if (inStep_ || leftOpen_) return;
    const HWND window = Window();
    if (window == nullptr || IsWindowEnabled(window) == 0) return;
    if (IsDone()) {
        if (GetTickCount() - doneAt_ < kPatienceMs) return;
        leftOpen_ = true;
        PostMessageW(window, WM_CLOSE, 0, 0);
        return;
    }
    inStep_ = true;
    steps_[next_](window);
    ++next_;
    doneAt_ = GetTickCount();
    inStep_ = false;
}

HWND ControlOf(HWND window, const std::string& name) {
    const HWND control = Component(window, name);
    EXPECT_NE(control, nullptr) << name;
    return control;
}

std::string TextOf(HWND window, const std::string& name) {
    return Utf8TextOf(ControlOf(window, name));
}

void SetTextOf(HWND window, const std::string& name, const std::wstring& text) {
    SendMessageW(ControlOf(window, name), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

bool IsEnabledIn(HWND window, const std::string& name) {
    return IsWindowEnabled(ControlOf(window, name)) != 0;
}

void Press(HWND window, const std::string& name) {
    SendMessageW(ControlOf(window, name), BM_CLICK, 0, 0);
}

TDialogScript::TStep Pressing(std::string name) {
    return [name = std::move(name)](HWND window) { Press(window, name); };
}

void Choose(HWND combo, int index) {
    SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    SendMessageW(GetParent(combo), WM_COMMAND,
                 MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID(combo)), CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(combo));
}

std::vector<std::string> ComboItems(HWND window, const std::string& name) {
    const HWND combo = ControlOf(window, name);
    std::vector<std::string> items;
    const LRESULT count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        std::wstring text(static_cast<std::size_t>(
                              SendMessageW(combo, CB_GETLBTEXTLEN, static_cast<WPARAM>(i), 0)) +
                              1,
                          L'\0');
        text.resize(static_cast<std::size_t>(SendMessageW(
            combo, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text.data()))));
        items.push_back(Utf8(text));
    }
    return items;
}

int ComboChoice(HWND window, const std::string& name) {
    return static_cast<int>(SendMessageW(ControlOf(window, name), CB_GETCURSEL, 0, 0));
}

bool IsRadioOn(HWND window, const std::string& name) {
    return SendMessageW(ControlOf(window, name), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void ClickAt(HWND control, POINT at) {
    const LPARAM point = MAKELPARAM(static_cast<WORD>(at.x), static_cast<WORD>(at.y));
    PostMessageW(control, WM_LBUTTONUP, 0, point);
    SendMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, point);
}

void PostKey(int virtualKey) {
    PostMessageW(GetFocus(), WM_KEYDOWN, static_cast<WPARAM>(virtualKey), 1);
    PostMessageW(GetFocus(), WM_KEYUP, static_cast<WPARAM>(virtualKey),
                 static_cast<LPARAM>(0xC0000001));
}

void PostText(const std::wstring& text) {
    for (const wchar_t character : text)
        PostMessageW(GetFocus(), WM_CHAR, character, 1);
}

THeldKey::THeldKey(int virtualKey) : virtualKey_(virtualKey) {
    constexpr BYTE kDown = 0x80;
    SetKey(virtualKey_, kDown);
}

THeldKey::~THeldKey() {
    SetKey(virtualKey_, 0);
}

void Picture(HWND window, const std::string& name) {
    SaveScreenshot(window, "settings-" + name + "-" + std::to_string(TDpi::System().DotsPerInch()));
}

}  // namespace tolvane::test
