#include "tests/support/window/BoxAnswerer.h"

#include "tests/support/window/Controls.h"

namespace tolvane::test {
namespace {

constexpr const wchar_t* kAnsweredProperty = L"TestAnswered";

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

TSeenBox ReadBox(HWND box) {
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
    return seen;
}

TBoxAnswerer::TBoxAnswerer(int button)
    : button_(button), look_([this] {
          EnumThreadWindows(GetCurrentThreadId(), &Visit, reinterpret_cast<LPARAM>(this));
      }) {}

BOOL CALLBACK TBoxAnswerer::Visit(HWND window, LPARAM parameter) {
    auto& self = *reinterpret_cast<TBoxAnswerer*>(parameter);
    const bool isNew = GetPropW(window, kAnsweredProperty) == nullptr;
    if (isNew && ClassOf(window) == kMessageBoxClass && IsWindowVisible(window) != 0)
        self.Answer(window);
    return TRUE;
}

void TBoxAnswerer::Answer(HWND box) {
    SetPropW(box, kAnsweredProperty, box);
    seen_.push_back(ReadBox(box));
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button_), 0);
}

}  // namespace tolvane::test
