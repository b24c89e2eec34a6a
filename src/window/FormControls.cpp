#include "window/FormControls.h"

#include <commctrl.h>

#include <array>
#include <string>

#include "window/CheckList.h"
#include "window/DefaultLook.h"
#include "window/FlatButton.h"
#include "window/Module.h"
#include "window/VisualStyle.h"
#include "window/WideText.h"
#include "window/Window.h"

namespace tolvane {
namespace {

struct TKind {
    TControlKind kind;
    const wchar_t* className;
    DWORD style = 0;
    DWORD exStyle = 0;
};

constexpr std::array kKinds = {
    TKind{TControlKind::Button, WC_BUTTONW, WS_TABSTOP | BS_PUSHBUTTON},
    TKind{TControlKind::CheckBox, WC_BUTTONW, WS_TABSTOP | BS_AUTOCHECKBOX},
    TKind{TControlKind::RadioButton, WC_BUTTONW, WS_TABSTOP | BS_AUTORADIOBUTTON},
    TKind{TControlKind::GroupBox, WC_BUTTONW, BS_GROUPBOX},
    TKind{TControlKind::Label, WC_STATICW, SS_LEFT | SS_NOPREFIX},
    TKind{TControlKind::Edit, WC_EDITW, WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE},
    TKind{TControlKind::Memo, WC_EDITW,
          WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL | ES_READONLY, WS_EX_CLIENTEDGE},
    TKind{TControlKind::ComboList, WC_COMBOBOXW, WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST},
    TKind{TControlKind::CheckList, WC_LISTVIEWW,
          WS_TABSTOP | LVS_REPORT | LVS_NOCOLUMNHEADER | LVS_SINGLESEL | LVS_SHOWSELALWAYS,
          WS_EX_CLIENTEDGE},
    TKind{TControlKind::ListBox, WC_LISTBOXW,
          WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, WS_EX_CLIENTEDGE},
    TKind{TControlKind::ListView, WC_LISTVIEWW, WS_TABSTOP | LVS_REPORT, WS_EX_CLIENTEDGE},
    TKind{TControlKind::Progress, PROGRESS_CLASSW},
    TKind{TControlKind::UpDown, UPDOWN_CLASSW,
          UDS_AUTOBUDDY | UDS_SETBUDDYINT | UDS_ALIGNRIGHT | UDS_ARROWKEYS | UDS_NOTHOUSANDS},
    TKind{TControlKind::Tabs, WC_TABCONTROLW, WS_TABSTOP | WS_CLIPSIBLINGS},
    TKind{TControlKind::VerticalLine, WC_STATICW, SS_ETCHEDVERT},
    TKind{TControlKind::HorizontalLine, WC_STATICW, SS_ETCHEDHORZ},
    TKind{TControlKind::SunkenPanel, WC_STATICW, SS_LEFT, WS_EX_STATICEDGE},
    TKind{TControlKind::FlatButton, WC_BUTTONW, WS_TABSTOP | BS_OWNERDRAW},
    TKind{TControlKind::FlatDropButton, WC_BUTTONW, WS_TABSTOP | BS_OWNERDRAW},
};

const TKind& KindOf(TControlKind kind) {
    for (const TKind& entry : kKinds) {
        if (entry.kind == kind) return entry;
    }
    throw TWindowError("unknown kind of control");
}

}  // namespace

HWND MakeControl(HWND parent, int id, TDpi dpi, HFONT font, const TControlOptions& options) {
    const TVisualStyleScope visualStyle;
    const TKind& kind = KindOf(options.kind);
    DWORD style = kind.style | options.style | WS_CHILD | WS_VISIBLE;
    if (options.kind == TControlKind::Button && options.id == IDOK) style |= BS_DEFPUSHBUTTON;
    const TBounds& bounds = options.bounds;
    const HWND control = CreateWindowExW(
        kind.exStyle, kind.className, Wide(options.text).c_str(), style, dpi.Scale(bounds.x),
        dpi.Scale(bounds.y), dpi.Scale(bounds.width), dpi.Scale(bounds.height), parent,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ModuleInstance(), nullptr);
    if (control == nullptr)
        throw TWindowError("CreateWindowEx: " + WindowsErrorText(GetLastError()));
    SetComponentName(control, options.name);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    if (options.kind == TControlKind::CheckList) PrepareCheckList(control);
    if (options.kind == TControlKind::Button) PrepareDefaultLook(control);
    const bool drops = options.kind == TControlKind::FlatDropButton;
    if (drops || options.kind == TControlKind::FlatButton) PrepareFlatButton(control);
    if (drops) SetFlatButtonArrow(control, true);
    return control;
}

void AppendLine(HWND memo, std::string_view text) {
    const std::wstring line = Wide(text) + L"\r\n";
    const int end = GetWindowTextLengthW(memo);
    DWORD from = 0;
    DWORD to = 0;
    SendMessageW(memo, EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
    const bool reading = from != to;
    const LRESULT top = SendMessageW(memo, EM_GETFIRSTVISIBLELINE, 0, 0);
    if (reading) SendMessageW(memo, WM_SETREDRAW, FALSE, 0);
    SendMessageW(memo, EM_SETSEL, static_cast<WPARAM>(end), end);
    SendMessageW(memo, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(line.c_str()));
    if (!reading) {
        SendMessageW(memo, EM_SCROLLCARET, 0, 0);
        return;
    }
    SendMessageW(memo, EM_SETSEL, from, static_cast<LPARAM>(to));
    SendMessageW(memo, EM_LINESCROLL, 0, top - SendMessageW(memo, EM_GETFIRSTVISIBLELINE, 0, 0));
    SendMessageW(memo, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(memo, nullptr, TRUE);
}

void AddComboItem(HWND combo, std::string_view text) {
    SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(text).c_str()));
}

int ComboIndex(HWND combo) {
    return static_cast<int>(SendMessageW(combo, CB_GETCURSEL, 0, 0));
}

void SetComboIndex(HWND combo, int index) {
    SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

bool IsChecked(HWND button) {
    return SendMessageW(button, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void SetChecked(HWND button, bool checked) {
    SendMessageW(button, BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

}  // namespace tolvane
