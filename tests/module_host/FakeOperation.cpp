// A small operation module for tests of the host: an MDI child with a list view that it can print.
// FAKE_TYPE is the module's type.

#include "tests/module_host/FakeOperation.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

constexpr std::string_view kTitle = "Справки & печат"_cp1251;
constexpr std::string_view kType = FAKE_TYPE;

struct TText {
    THostTextHeader header{1251, 1, -1, 0};
    std::array<char, 64> characters{};

    explicit TText(std::string_view text) {
        header.Length = static_cast<std::int32_t>(text.size());
        std::copy(text.begin(), text.end(), characters.begin());
    }
};

TFakeState& State() {
    static TFakeState state;
    return state;
}

UINT MessageId() {
    const std::wstring name = L"DLL_" + std::to_wstring(State().operationNo);
    return RegisterWindowMessageW(name.c_str());
}

void Complete() {
    PostMessageW(State().appHandle, MessageId(), 0, 0);
}

void AddColumn(HWND grid, int index, const wchar_t* title, int width, int format) {
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT | LVCF_SUBITEM;
    column.pszText = const_cast<wchar_t*>(title);
    column.cx = width;
    column.fmt = format;
    column.iSubItem = index;
    SendMessageW(grid, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(&column));
}

// Number, name, hidden and price; the price is shown before the name.
HWND MakeGrid(HWND parent) {
    const HWND grid = CreateWindowExW(0, WC_LISTVIEWW, nullptr,
                                      WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_OWNERDATA, 0, 0, 400,
                                      200, parent, nullptr, GetModuleHandleW(nullptr), nullptr);
    AddColumn(grid, 0, L"Number", 60, LVCFMT_LEFT);
    AddColumn(grid, 1, L"Name", 200, LVCFMT_LEFT);
    AddColumn(grid, 2, L"Hidden", 0, LVCFMT_LEFT);
    AddColumn(grid, 3, L"Price", 80, LVCFMT_RIGHT);
    std::array<int, 4> order = {0, 3, 1, 2};
    SendMessageW(grid, LVM_SETCOLUMNORDERARRAY, order.size(),
                 reinterpret_cast<LPARAM>(order.data()));
    SendMessageW(grid, LVM_SETITEMCOUNT, static_cast<WPARAM>(State().rows), 0);
    return grid;
}

void GiveText(LVITEMW& item) {
    if ((item.mask & LVIF_TEXT) == 0) return;
    ++State().textsAsked;
    constexpr std::array<const wchar_t*, 4> kNames = {L"No", L"Article", L"Hidden", L"Price"};
    const std::wstring text =
        kNames.at(static_cast<std::size_t>(item.iSubItem)) + std::to_wstring(item.iItem + 1);
    lstrcpynW(item.pszText, text.c_str(), item.cchTextMax);
}

void PrintGrid() {
    // Counted texts begin with their length.
    const std::string title = std::string("\x05", 1) + std::string("Отчет"_cp1251);
    const std::string time = std::string("\x15", 1) + "21.11.2026 - 07.08.09";
    State().print.Code(State().print.Object, reinterpret_cast<const std::uint8_t*>(title.data()),
                       reinterpret_cast<const std::uint8_t*>(time.data()), State().grid);
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            State().grid = MakeGrid(window);
            return 0;
        case WM_NOTIFY:
            if (reinterpret_cast<NMHDR*>(lParam)->code == LVN_GETDISPINFOW)
                GiveText(reinterpret_cast<NMLVDISPINFOW*>(lParam)->item);
            return 0;
        case WM_COMMAND:
            if (LOWORD(wParam) == kFakePrint) PrintGrid();
            return 0;
        case WM_DESTROY:
            Complete();
            return 0;
        default:
            return DefMDIChildProcW(window, message, wParam, lParam);
    }
}

void OpenWindow() {
    WNDCLASSW definition{};
    definition.lpfnWndProc = &Procedure;
    definition.hInstance = GetModuleHandleW(nullptr);
    definition.lpszClassName = kFakeClass;
    RegisterClassW(&definition);
    const HWND client = FindWindowExW(State().mainForm, nullptr, L"MDIClient", nullptr);
    CreateWindowExW(WS_EX_MDICHILD, kFakeClass, L"Fake", WS_CHILD | WS_VISIBLE, CW_USEDEFAULT,
                    CW_USEDEFAULT, 500, 300, client, nullptr, GetModuleHandleW(nullptr), nullptr);
}

}  // namespace
}  // namespace tolvane::test

using tolvane::test::State;

extern "C" {

void TOLVANE_STDCALL GetOperationTitle(const char** result) {
    static const tolvane::test::TText kText(tolvane::test::kTitle);
    *result = kText.characters.data();
}

void TOLVANE_STDCALL GetOperationType(const char** result) {
    static const tolvane::test::TText kText(tolvane::test::kType);
    *result = kText.characters.data();
}

void TOLVANE_STDCALL SetTQ4ModuleString(const char* text, std::int32_t number) {
    std::int32_t length = 0;
    if (text != nullptr) std::memcpy(&length, text - 4, sizeof length);
    State().moduleString = std::string(text, static_cast<std::size_t>(length));
    State().moduleNumber = number;
}

void TOLVANE_STDCALL OperationProcedure(void* appHandle, std::int32_t operationNo,
                                        std::uint32_t* messageId, void* mainForm,
                                        const tolvane::THostDatabase* database, const char* text,
                                        tolvane::TPrintProc printProc) {
    ++State().starts;
    State().appHandle = static_cast<HWND>(appHandle);
    State().operationNo = operationNo;
    State().mainForm = static_cast<HWND>(mainForm);
    State().database = *database;
    State().textIsNull = text == nullptr;
    State().print = printProc;
    *messageId = tolvane::test::MessageId();
    if (State().fail) {
        tolvane::test::Complete();
        tolvane::test::Complete();
        return;
    }
    tolvane::test::OpenWindow();
}

tolvane::test::TFakeState* TOLVANE_STDCALL FakeState() {
    return &State();
}

}  // extern "C"
