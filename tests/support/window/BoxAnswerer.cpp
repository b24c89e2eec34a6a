#include "tests/support/window/BoxAnswerer.h"

#include <map>

#include "tests/support/window/HostFrame.h"

namespace tolvane::test {
namespace {

constexpr UINT kEveryMs = 20;
constexpr const wchar_t* kAnsweredProperty = L"TestAnswered";

// Timer procedures get no pointer of their own.
std::map<UINT_PTR, void*>& Owners() {
    static std::map<UINT_PTR, void*> owners;
    return owners;
}

void* OwnerOf(UINT_PTR timer) {
    const auto found = Owners().find(timer);
    return found == Owners().end() ? nullptr : found->second;
}

// The system's own icons are shared, so their handles tell them apart.
TBoxIcon IconOf(HWND label) {
    const auto icon = reinterpret_cast<HICON>(SendMessageW(label, STM_GETICON, 0, 0));
    if (icon == nullptr) return TBoxIcon::None;
    if (icon == LoadIconW(nullptr, IDI_ERROR)) return TBoxIcon::Error;
    if (icon == LoadIconW(nullptr, IDI_WARNING)) return TBoxIcon::Warning;
    if (icon == LoadIconW(nullptr, IDI_INFORMATION)) return TBoxIcon::Information;
    return TBoxIcon::None;
}

}  // namespace

TBoxAnswerer::TBoxAnswerer(int button)
    : button_(button), timer_(SetTimer(nullptr, 0, kEveryMs, &Tick)) {
    Owners()[timer_] = this;
}

TBoxAnswerer::~TBoxAnswerer() {
    KillTimer(nullptr, timer_);
    Owners().erase(timer_);
}

void CALLBACK TBoxAnswerer::Tick(HWND, UINT, UINT_PTR timer, DWORD) {
    if (OwnerOf(timer) != nullptr)
        EnumThreadWindows(GetCurrentThreadId(), &Visit, reinterpret_cast<LPARAM>(OwnerOf(timer)));
}

BOOL CALLBACK TBoxAnswerer::Visit(HWND window, LPARAM parameter) {
    auto& self = *reinterpret_cast<TBoxAnswerer*>(parameter);
    const bool isNew = GetPropW(window, kAnsweredProperty) == nullptr;
    if (isNew && ClassOf(window) == L"#32770" && IsWindowVisible(window) != 0) self.Answer(window);
    return TRUE;
}

void TBoxAnswerer::Answer(HWND box) {
    TSeenBox seen;
    seen.caption = Utf8TextOf(box);
    for (HWND child = nullptr; (child = FindWindowExW(box, child, nullptr, nullptr)) != nullptr;) {
        if (ClassOf(child) == L"Button" && IsWindowVisible(child) != 0)
            seen.buttons.push_back(GetDlgCtrlID(child));
        if (ClassOf(child) == L"Static" && GetWindowTextLengthW(child) > 0)
            seen.text = Utf8TextOf(child);
        if (ClassOf(child) == L"Static" && IconOf(child) != TBoxIcon::None)
            seen.icon = IconOf(child);
    }
    SetPropW(box, kAnsweredProperty, box);
    seen_.push_back(seen);
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button_), 0);
}

TWindowActor::TWindowActor(std::wstring className, std::function<void(HWND)> act)
    : className_(std::move(className)),
      act_(std::move(act)),
      timer_(SetTimer(nullptr, 0, kEveryMs, &Tick)) {
    Owners()[timer_] = this;
}

TWindowActor::~TWindowActor() {
    KillTimer(nullptr, timer_);
    Owners().erase(timer_);
}

void CALLBACK TWindowActor::Tick(HWND, UINT, UINT_PTR timer, DWORD) {
    if (OwnerOf(timer) != nullptr)
        EnumThreadWindows(GetCurrentThreadId(), &Visit, reinterpret_cast<LPARAM>(OwnerOf(timer)));
}

BOOL CALLBACK TWindowActor::Visit(HWND window, LPARAM parameter) {
    auto& self = *reinterpret_cast<TWindowActor*>(parameter);
    if (self.acted_ || ClassOf(window) != self.className_ || IsWindowVisible(window) == 0)
        return TRUE;
    self.acted_ = true;
    self.act_(window);
    return FALSE;
}

}  // namespace tolvane::test
