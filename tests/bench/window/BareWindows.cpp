#include "tests/bench/window/BareWindows.h"

#include <windows.h>

#include <commctrl.h>

#include "tests/bench/window/Times.h"
#include "tests/support/window/HostFrame.h"

namespace tolvane::bench {
namespace {

constexpr const wchar_t* kChildClass = L"BareChild";
constexpr const wchar_t* kPopupClass = L"BarePopup";
constexpr int kColumns = 32;

void RegisterClassOf(const wchar_t* name, WNDPROC procedure) {
    WNDCLASSW definition{};
    definition.lpfnWndProc = procedure;
    definition.hInstance = GetModuleHandleW(nullptr);
    definition.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    definition.lpszClassName = name;
    RegisterClassW(&definition);
}

HWND MakeChild(HWND client) {
    const HWND child = CreateWindowExW(
        WS_EX_MDICHILD, kChildClass, L"Bare",
        WS_CHILD | WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN, 0, 0, 617,
        332, client, nullptr, GetModuleHandleW(nullptr), nullptr);
    const HWND list =
        CreateWindowW(WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_OWNERDATA, 0, 33,
                      605, 239, child, nullptr, GetModuleHandleW(nullptr), nullptr);
    for (int i = 0; i < kColumns; ++i) {
        wchar_t title[] = L"Column";
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.pszText = title;
        column.cx = 80;
        SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i),
                     reinterpret_cast<LPARAM>(&column));
    }
    test::RunLoopDry();
    UpdateWindow(list);
    return child;
}

void ShowAndHide(HWND popup) {
    SetWindowPos(popup, HWND_TOP, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    UpdateWindow(popup);
    ShowWindow(popup, SW_HIDE);
}

}  // namespace

void TellBareWindows(int rounds) {
    RegisterClassOf(kChildClass, &DefMDIChildProcW);
    RegisterClassOf(kPopupClass, &DefWindowProcW);
    const test::THostFrame host;
    HWND child = nullptr;
    Tell(
        "an MDI child with an empty list view", [&] { child = MakeChild(host.Client()); }, rounds,
        [&] {
            if (child != nullptr)
                SendMessageW(host.Client(), WM_MDIDESTROY, reinterpret_cast<WPARAM>(child), 0);
            test::RunLoopDry();
        });
    const HWND popup =
        CreateWindowExW(WS_EX_TOOLWINDOW, kPopupClass, L"Bare", WS_POPUP, 300, 300, 393, 73,
                        host.Frame(), nullptr, GetModuleHandleW(nullptr), nullptr);
    CreateWindowW(PROGRESS_CLASSW, L"", WS_CHILD | WS_VISIBLE, 0, 63, 393, 10, popup, nullptr,
                  GetModuleHandleW(nullptr), nullptr);
    Tell(
        "a popup shown and hidden",
        [&] {
            ShowAndHide(popup);
            test::RunLoopDry();
        },
        rounds);
    DestroyWindow(popup);
}

}  // namespace tolvane::bench
