#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <string_view>
#include <vector>

#include "window/Dpi.h"
#include "window/Handles.h"
#include "window/KeyHook.h"
#include "window/PostQueue.h"
#include "window/Window.h"

namespace tolvane {

struct TFormOptions {
    const wchar_t* className = nullptr;
    const char* name = nullptr;  // component name
    std::string_view caption{};  // code page 1251
    DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU;
    DWORD exStyle = 0;
    // Sizes at 96 dots per inch: the client area, and the smallest outer size (0: no limit).
    int clientWidth = 0;
    int clientHeight = 0;
    int minWidth = 0;
    int minHeight = 0;
    // Centred on the owner itself and not on its top-level window.
    bool overOwner = false;
};

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
    TPlace place{};              // at 96 dots per inch
    DWORD style = 0;             // added to the kind's own style
    // Buttons: the click. Combo lists and list boxes: another item was chosen by the user.
    std::function<void()> action{};
    // IDOK makes the default button (Enter), IDCANCEL the cancel button (Esc); 0 gives a number.
    int id = 0;
};

// Base of every form: a window with controls, sized at 96 dots per inch. Keys work without the
// host's help: a form shown with ShowModal has a message loop of its own, an MDI child hooks the
// thread's messages. All functions belong to the interface thread.
class TForm : public TWindow {
public:
    ~TForm() override;

    // Shows the form until it is closed and returns its modal result (IDCANCEL for the close box,
    // Esc, and when the form or the program ends meanwhile). The thread's other windows are
    // disabled for that time. The window stays (hidden) until the object goes or Destroy is called.
    int ShowModal();
    // Ends ShowModal with the result, unless CanClose refuses.
    void EndModal(int result);
    // What the close box does: a modal form ends with IDCANCEL, any other is destroyed, if CanClose
    // agrees and after OnClose.
    void Close();
    bool IsModal() const noexcept { return modal_; }

    const TDpi& Dpi() const noexcept { return dpi_; }
    HFONT Font() const noexcept { return font_.Get(); }
    HFONT BoldFont() const noexcept { return boldFont_.Get(); }
    // The control with the component name; throws TWindowError when there is none.
    HWND Control(std::string_view name) const;

    // For the form itself and for the classes that it is made of.

    // Makes a control; throws TWindowError.
    HWND AddControl(const TControlOptions& options);
    // AddControl with the options that most controls need; the names are component names.
    HWND Add(TControlKind kind, const char* name, std::string_view text, const TPlace& place,
             DWORD style = 0);
    HWND AddLabel(const char* name, std::string_view text, const TPlace& place, DWORD style = 0);
    HWND AddButton(const char* name, std::string_view text, const TPlace& place,
                   std::function<void()> click, int id = 0);
    template <class TDerived>
    HWND AddButton(const char* name, std::string_view text, const TPlace& place,
                   void (TDerived::*click)(), int id = 0) {
        const auto form = static_cast<TDerived*>(this);
        return AddButton(
            name, text, place, [form, click] { (form->*click)(); }, id);
    }
    // Moves a control to a place at 96 dots per inch.
    void Place(HWND control, const TPlace& place) const;
    // The client area at 96 dots per inch, rounded down.
    SIZE ClientSize() const;

    // Any thread, through a copy of the queue: work for the interface thread, in order.
    TPostQueue& Queue() noexcept { return queue_; }

    // Handles a key message on its way to this form or a control of it; true when it is done with.
    bool TranslateKey(MSG& message);

protected:
    TForm();

    // Makes the window, hidden, centred on its owner's top-level window by default.
    void MakePopup(const TFormOptions& options, HWND owner);
    // Makes and shows an MDI child; `mdiClient` is the frame's window of class "MDIClient".
    void MakeMdiChild(const TFormOptions& options, HWND mdiClient);

    // Reactions; the base class does nothing unless its line says otherwise.
    virtual void OnSize() {}  // after every change of size: place the controls
    virtual void OnShow() {}  // ShowModal, before the window is seen
    virtual bool CanClose(int /*result*/) { return true; }
    virtual void OnClose() {}    // the form is about to be destroyed by Close
    virtual void OnDestroy() {}  // WM_DESTROY, however it came
    // Commands that no control's action took: menu items, posted commands.
    virtual void OnCommand(int /*id*/, int /*code*/, HWND /*control*/) {}
    virtual LRESULT OnNotify(NMHDR& /*header*/) { return 0; }
    // A key before anything else sees it; true when handled. Modifiers as in GetKeyState.
    virtual bool OnKey(UINT /*virtualKey*/, HWND /*focus*/) { return false; }
    // Esc. The base clicks the cancel button if there is an enabled one, else closes a modal form.
    virtual void OnCancel();
    // A system setting changed (colours, fonts).
    virtual void OnSettingChange() {}

    LRESULT HandleMessage(const TMessage& message) override;
    LRESULT DefaultProc(const TMessage& message) override;

private:
    LRESULT HandleCommand(const TMessage& message);
    LRESULT HandleMinMax(const TMessage& message);
    LRESULT HandleFocus(const TMessage& message);
    bool Translate(MSG& message);
    bool MoveFocus(HWND focus, bool back);
    bool PressEnter(HWND focus);
    void RunModalLoop();
    void RememberFocus();
    RECT OuterRect(const TFormOptions& options) const;

    TDpi dpi_;
    TOwnedFont font_;
    TOwnedFont boldFont_;
    TPostQueue queue_;
    TKeyHook keyHook_;
    std::map<int, std::function<void()>> actions_;
    HWND lastFocus_ = nullptr;
    int nextId_ = 100;
    int minWidth_ = 0;
    int minHeight_ = 0;
    int modalResult_ = 0;
    bool modal_ = false;
    bool mdiChild_ = false;
};

// The message that makes a form run its queue.
inline constexpr UINT kRunQueueMessage = WM_APP + 1;
// The message by which the key hook hands a key on (lParam: MSG*); answers TRUE when it is done.
inline constexpr UINT kHookKeyMessage = WM_APP + 2;
// Forms may use messages from here on.
inline constexpr UINT kFirstFormMessage = WM_APP + 16;

// As of the message that is being handled.
bool IsKeyDown(int virtualKey);
// Appends a line to a memo and scrolls to it, unless a part of the text is selected: a user who
// reads there keeps the selection and the place.
void AppendLine(HWND memo, std::string_view text);
// The items of a combo list.
void AddComboItem(HWND combo, std::string_view text);
int ComboIndex(HWND combo);  // -1 when none is chosen
void SetComboIndex(HWND combo, int index);
// Check boxes and radio buttons.
bool IsChecked(HWND button);
void SetChecked(HWND button, bool checked);

}  // namespace tolvane
