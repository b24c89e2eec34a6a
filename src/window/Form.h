#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <string_view>
#include <vector>

#include "window/Dpi.h"
#include "window/FormControls.h"
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

// Base of every form: a window with controls, whose sizes are given at 96 dots per inch. Keys work
// without the host's help: ShowModal runs a message loop of its own, an MDI child hooks the
// thread's messages. Interface thread. FormKeys.cpp holds the keys, FormModal.cpp holds ShowModal.
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
    HWND Add(TControlKind kind, const char* name, std::string_view text, const TBounds& bounds,
             DWORD style = 0);
    HWND AddLabel(const char* name, std::string_view text, const TBounds& bounds, DWORD style = 0);
    HWND AddButton(const char* name, std::string_view text, const TBounds& bounds,
                   std::function<void()> click, int id = 0);
    template <class TDerived>
    HWND AddButton(const char* name, std::string_view text, const TBounds& bounds,
                   void (TDerived::*click)(), int id = 0) {
        const auto form = static_cast<TDerived*>(this);
        return AddButton(
            name, text, bounds, [form, click] { (form->*click)(); }, id);
    }
    // Moves and sizes a control.
    void Place(HWND control, const TBounds& bounds) const;
    // The client area at 96 dots per inch, rounded down.
    SIZE ClientSize() const;

    // Any thread, through a copy of the queue: work for the interface thread, in order.
    TPostQueue& Queue() noexcept { return queue_; }

    // Handles a WM_KEYDOWN on its way to this form or to a control of it. Returns whether the key
    // is used up.
    bool HandleKeyDown(MSG& message);

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
    // The same for any message of the loop; catches and shows what is thrown.
    bool HandleKeyMessage(MSG& message);
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

// Whether a key was down when the message that is being handled was posted.
bool IsKeyDown(int virtualKey);

}  // namespace tolvane
