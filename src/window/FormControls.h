#pragma once

#include <windows.h>

#include <functional>
#include <string_view>

#include "window/Dpi.h"

namespace tolvane {

enum class TControlKind {
    Button,
    CheckBox,
    RadioButton,  // the first of a group needs WS_GROUP
    GroupBox,
    Label,
    Edit,
    Memo,       // multi-line, read-only, vertical scroll bar
    ComboList,  // drop-down list without an edit line; height is that of the opened list
    CheckList,  // see CheckList.h
    ListBox,    // its notifications come to OnCommand when it has no action
    ListView,   // report mode
    Progress,
    UpDown,  // the arrows of the edit line that was added before it
    Tabs,
    VerticalLine,  // sunken separator
    HorizontalLine,
    SunkenPanel,     // a bar's border
    FlatButton,      // drawn by the form, see FlatButton.h
    FlatDropButton,  // the same with a small arrow
};

struct TControlOptions {
    TControlKind kind = TControlKind::Button;
    const char* name = nullptr;  // component name
    std::string_view text{};     // code page 1251
    TBounds bounds{};            // at 96 dots per inch
    DWORD style = 0;             // added to the kind's own style
    // What a click on a button does, or the choice of another item in a combo list or list box.
    std::function<void()> action{};
    // IDOK makes a button the default one (Enter), IDCANCEL the cancel button (Esc); for 0 the form
    // picks a number.
    int id = 0;
    std::string_view hint{};  // appears while the mouse rests on the control; code page 1251
};

// Makes a control that reports to `parent` with the number `id`. Ignores the action and the hint,
// which the form keeps. Throws TWindowError. Interface thread, as all functions below.
HWND MakeControl(HWND parent, int id, TDpi dpi, HFONT font, const TControlOptions& options);

// Appends a line to a memo and scrolls to it. While a text is selected, the user is reading: the
// selection and the visible lines then stay.
void AppendLine(HWND memo, std::string_view text);
// The items of a combo list.
void AddComboItem(HWND combo, std::string_view text);
int ComboIndex(HWND combo);  // -1 when none is chosen
void SetComboIndex(HWND combo, int index);
// Check boxes and radio buttons.
bool IsChecked(HWND button);
void SetChecked(HWND button, bool checked);

}  // namespace tolvane
