#include <array>
#include <string>
#include <utility>

#include "window/CheckList.h"
#include "window/FlatButton.h"
#include "window/Form.h"
#include "window/Module.h"
#include "window/VisualStyle.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

struct TKind {
    TControlKind kind;
    const wchar_t* className;
    DWORD style;
    DWORD exStyle;
};

constexpr std::array kKinds = {
    TKind{TControlKind::Button, WC_BUTTONW, WS_TABSTOP | BS_PUSHBUTTON, 0},
    TKind{TControlKind::CheckBox, WC_BUTTONW, WS_TABSTOP | BS_AUTOCHECKBOX, 0},
    TKind{TControlKind::RadioButton, WC_BUTTONW, WS_TABSTOP | BS_AUTORADIOBUTTON, 0},
    TKind{TControlKind::GroupBox, WC_BUTTONW, BS_GROUPBOX, 0},
    TKind{TControlKind::Label, WC_STATICW, SS_LEFT | SS_NOPREFIX, 0},
    TKind{TControlKind::Edit, WC_EDITW, WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE},
    TKind{TControlKind::Memo, WC_EDITW,
          WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL | ES_READONLY, WS_EX_CLIENTEDGE},
    TKind{TControlKind::ComboList, WC_COMBOBOXW, WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, 0},
    TKind{TControlKind::CheckList, WC_LISTVIEWW,
          WS_TABSTOP | LVS_REPORT | LVS_NOCOLUMNHEADER | LVS_SINGLESEL | LVS_SHOWSELALWAYS,
          WS_EX_CLIENTEDGE},
    TKind{TControlKind::ListBox, WC_LISTBOXW,
          WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, WS_EX_CLIENTEDGE},
    TKind{TControlKind::ListView, WC_LISTVIEWW, WS_TABSTOP | LVS_REPORT, WS_EX_CLIENTEDGE},
    TKind{TControlKind::Progress, PROGRESS_CLASSW, 0, 0},
    TKind{TControlKind::UpDown, UPDOWN_CLASSW,
          UDS_AUTOBUDDY | UDS_SETBUDDYINT | UDS_ALIGNRIGHT | UDS_ARROWKEYS | UDS_NOTHOUSANDS, 0},
    TKind{TControlKind::Tabs, WC_TABCONTROLW, WS_TABSTOP | WS_CLIPSIBLINGS, 0},
    TKind{TControlKind::VerticalLine, WC_STATICW, SS_ETCHEDVERT, 0},
    TKind{TControlKind::HorizontalLine, WC_STATICW, SS_ETCHEDHORZ, 0},
    TKind{TControlKind::SunkenPanel, WC_STATICW, SS_LEFT, WS_EX_STATICEDGE},
    TKind{TControlKind::FlatButton, WC_BUTTONW, WS_TABSTOP | BS_OWNERDRAW, 0},
    TKind{TControlKind::FlatDropButton, WC_BUTTONW, WS_TABSTOP | BS_OWNERDRAW, 0},
};

const TKind& KindOf(TControlKind kind) {
    for (const TKind& entry : kKinds) {
        if (entry.kind == kind) return entry;
    }
    throw TWindowError("unknown kind of control");
}

}  // namespace

HWND TForm::AddControl(const TControlOptions& options) {
    const TVisualStyleScope visualStyle;
    const TKind& kind = KindOf(options.kind);
    DWORD style = kind.style | options.style | WS_CHILD | WS_VISIBLE;
    if (options.kind == TControlKind::Button && options.id == IDOK) style |= BS_DEFPUSHBUTTON;
    const int id = options.id != 0 ? options.id : nextId_++;
    const HWND control = CreateWindowExW(
        kind.exStyle, kind.className, Wide(options.text).c_str(), style,
        dpi_.Scale(options.place.x), dpi_.Scale(options.place.y), dpi_.Scale(options.place.width),
        dpi_.Scale(options.place.height), Handle(),
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ModuleInstance(), nullptr);
    if (control == nullptr)
        throw TWindowError("CreateWindowEx: " + SystemErrorText(GetLastError()));
    SetComponentName(control, options.name);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_.Get()), FALSE);
    if (options.action) actions_[id] = options.action;
    if (options.kind == TControlKind::CheckList) PrepareCheckList(control);
    if (options.kind == TControlKind::FlatDropButton) SetFlatButtonArrow(control, true);
    return control;
}

HWND TForm::Add(TControlKind kind, const char* name, std::string_view text, const TPlace& place,
                DWORD style) {
    return AddControl({.kind = kind, .name = name, .text = text, .place = place, .style = style});
}

HWND TForm::AddLabel(const char* name, std::string_view text, const TPlace& place, DWORD style) {
    return Add(TControlKind::Label, name, text, place, style);
}

HWND TForm::AddButton(const char* name, std::string_view text, const TPlace& place,
                      std::function<void()> click, int id) {
    return AddControl(
        {.name = name, .text = text, .place = place, .action = std::move(click), .id = id});
}

void AppendLine(HWND memo, std::string_view text) {
    const int end = GetWindowTextLengthW(memo);
    DWORD from = 0;
    DWORD to = 0;
    SendMessageW(memo, EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
    const bool reading = from != to;
    const LRESULT top = SendMessageW(memo, EM_GETFIRSTVISIBLELINE, 0, 0);
    if (reading) SendMessageW(memo, WM_SETREDRAW, FALSE, 0);
    SendMessageW(memo, EM_SETSEL, static_cast<WPARAM>(end), end);
    SendMessageW(memo, EM_REPLACESEL, FALSE,
                 reinterpret_cast<LPARAM>((Wide(text) + L"\r\n").c_str()));
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
