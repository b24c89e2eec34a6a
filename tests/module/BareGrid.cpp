#include "tests/module/BareGrid.h"

#include <algorithm>
#include <numeric>

#include "tests/support/window/HostFrame.h"
#include "tests/support/window/Screenshot.h"
#include "window/VisualStyle.h"

namespace tolvane::test {
namespace {

constexpr const wchar_t* kParentClass = L"TestGridParent";

}  // namespace

TBareGrid::TBareGrid(std::size_t rows)
    : text([](TRowId row, std::size_t) { return std::to_string(row); }),
      promoted([](TRowId) { return false; }),
      order_(rows),
      places_(rows),
      grid_(TDpi(96), *this) {
    std::iota(order_.begin(), order_.end(), 0U);
    std::iota(places_.begin(), places_.end(), 0U);
    WNDCLASSW definition{};
    definition.lpfnWndProc = &Procedure;
    definition.hInstance = GetModuleHandleW(nullptr);
    definition.lpszClassName = kParentClass;
    RegisterClassW(&definition);
    parent_ = CreateWindowW(kParentClass, L"Grid", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 400, 400,
                            nullptr, nullptr, GetModuleHandleW(nullptr), this);
    InitCommonControlClasses();
    list_ = CreateWindowW(WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | kGridListStyle, 0, 0, 380, 360,
                          parent_, nullptr, GetModuleHandleW(nullptr), nullptr);
    grid_.Attach(list_);
    grid_.SetColumns({{0, L"Number", 100, true, true}, {1, L"Other", 100, false, true}});
    grid_.RowsReplaced();
    SetFocus(list_);
    RunLoopDry();
}

TBareGrid::~TBareGrid() {
    DestroyWindow(parent_);
}

void TBareGrid::Reverse() {
    std::reverse(order_.begin(), order_.end());
    std::reverse(places_.begin(), places_.end());
    grid_.RowsReordered();
}

HWND TBareGrid::Header() const {
    return reinterpret_cast<HWND>(SendMessageW(list_, LVM_GETHEADER, 0, 0));
}

COLORREF TBareGrid::Pixel(int row, POINT at) const {
    UpdateWindow(list_);
    RECT bounds{LVIR_BOUNDS, 0, 0, 0};
    SendMessageW(list_, LVM_GETITEMRECT, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&bounds));
    return PixelAt(list_, {bounds.left + at.x, bounds.top + at.y});
}

LRESULT CALLBACK TBareGrid::Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam) {
    if (id == WM_NCCREATE)
        SetWindowLongPtrW(
            window, GWLP_USERDATA,
            reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
    auto* self = reinterpret_cast<TBareGrid*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return self == nullptr ? DefWindowProcW(window, id, wParam, lParam)
                           : self->Handle(window, id, wParam, lParam);
}

LRESULT TBareGrid::Handle(HWND window, UINT id, WPARAM wParam, LPARAM lParam) {
    switch (id) {
        case WM_NOTIFY:
            return grid_.HandleNotify(*reinterpret_cast<NMHDR*>(lParam)).value_or(0);
        case WM_MEASUREITEM:
            reinterpret_cast<MEASUREITEMSTRUCT*>(lParam)->itemHeight =
                static_cast<UINT>(grid_.RowHeight());
            return TRUE;
        case WM_DRAWITEM:
            return grid_.HandleDraw(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam)) ? TRUE
                                                                                      : FALSE;
        default:
            return DefWindowProcW(window, id, wParam, lParam);
    }
}

}  // namespace tolvane::test
