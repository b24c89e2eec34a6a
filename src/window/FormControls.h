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
    // Buttons: the click. Combo lists and list boxes: another item was chosen by the user.
    std::function<void()> action{};
    // IDOK makes the default button (Enter), IDCANCEL the cancel button (Esc); 0 gives a number.
    int id = 0;
};

// Makes a control of a form, with a component name; throws TWindowError. Buttons and lists report
// to `parent` with the number `id`. The action is the form's business. Interface thread, as for
// everything below.
HWND MakeControl(HWND parent, int id, TDpi dpi, HFONT font, const TControlOptions& options);

// Appends a line to a memo and scrolls to it. While text is selected there, the user is reading:
// the selection and the lines in view then stay.
void AppendLine(HWND memo, std::string_view text);
// The items of a combo list.
void AddComboItem(HWND combo, std::string_view text);
int ComboIndex(HWND combo);  // -1 when none is chosen
void SetComboIndex(HWND combo, int index);
// Check boxes and radio buttons.
bool IsChecked(HWND button);
void SetChecked(HWND button, bool checked);

}  // namespace tolvane
