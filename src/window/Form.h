#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <string_view>
#include <vector>

#include "window/Dpi.h"
#include "window/FormControls.h"
#include "window/Handles.h"
#include "window/Hints.h"
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
    // Whether the form is centred on the owner itself instead of its top-level window.
    bool overOwner = false;
};

// Base of every form: a window with controls, whose sizes are given at 96 dots per inch. Keys work
// without the host's help: ShowModal runs a message loop of its own, an MDI child hooks the
// thread's messages. It takes the resolution of the monitor that shows it, see TDpi::Of, and
// follows its changes. Interface thread. FormKeys.cpp holds the keys, FormModal.cpp ShowModal,
// FormDpi.cpp the resolution.
class TForm : public TWindow {
public:
    ~TForm() override;

    // Shows the form until it is closed and returns its modal result: IDCANCEL for the close box
    // and Esc, and when the form is destroyed or the program ends. Disables the thread's other
    // windows for that time. Afterwards the window is hidden; it exists until the object is
    // destroyed or Destroy is called.
    int ShowModal();
    // Ends ShowModal with the result, unless CanClose refuses.
    void EndModal(int result);
    // Does what the close box does, if CanClose allows it: ends a modal form with IDCANCEL, and
    // destroys any other form after OnClose.
    void Close();
    bool IsModal() const noexcept { return modal_; }

    const TDpi& Dpi() const noexcept { return dpi_; }
    HFONT Font() const noexcept { return font_.Get(); }
    HFONT BoldFont() const noexcept { return boldFont_.Get(); }
    // The control with the component name; throws TWindowError when the form has no such control.
    HWND Control(std::string_view name) const;

    // The next functions are for the form itself and for the classes that it consists of.

    // Makes a control; throws TWindowError.
    HWND AddControl(const TControlOptions& options);
    // AddControl with the options that most controls need.
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

    // Runs work on the interface thread, in order. Other threads use a copy of the queue.
    TPostQueue& Queue() noexcept { return queue_; }

    // Handles a WM_KEYDOWN for this form or a control of it, before the control gets it. Returns
    // whether the control must not get it.
    bool HandleKeyDown(MSG& message);

protected:
    TForm();

    // Makes the window, hidden, centred on its owner's top-level window by default.
    void MakePopup(const TFormOptions& options, HWND owner);
    // Makes and shows an MDI child; `mdiClient` is the frame's window of class "MDIClient".
    void MakeMdiChild(const TFormOptions& options, HWND mdiClient);

    // What happens to the form. The base class does nothing, except where a comment says otherwise.
    virtual void OnSize() {}  // after every change of size: arrange the controls
    virtual void OnShow() {}  // in ShowModal, before the window appears
    virtual bool CanClose(int /*result*/) { return true; }
    virtual void OnClose() {}    // before Close destroys the form
    virtual void OnDestroy() {}  // on WM_DESTROY, whoever destroys the form
    // Commands without an action of a control: menu items, posted commands.
    virtual void OnCommand(int /*id*/, int /*code*/, HWND /*control*/) {}
    virtual LRESULT OnNotify(NMHDR& /*header*/) { return 0; }
    // A key, before anything else handles it. Returns whether it is handled.
    virtual bool OnKey(UINT /*virtualKey*/, HWND /*focus*/) { return false; }
    // The Esc key. The base class clicks the cancel button if it is enabled; without such a button
    // it closes a modal form.
    virtual void OnCancel();
    // A setting of the system has changed: colours, fonts.
    virtual void OnSettingChange() {}
    // The resolution has changed, and the form has given its controls their new fonts and sizes;
    // OnSize comes next.
    virtual void OnDpiChange() {}

    LRESULT HandleMessage(const TMessage& message) override;
    LRESULT DefaultProc(const TMessage& message) override;

private:
    // A window in front, such as a message box, has disabled this one. No user can then reach it,
    // but messages from a program can; each might open one more window in front.
    bool IsBehindAnother() const;
    LRESULT HandleCommand(const TMessage& message);
    LRESULT HandleMinMax(const TMessage& message);
    LRESULT HandleFocus(const TMessage& message);
    // Offers any message of the loop to HandleKeyDown; shows what that throws.
    bool HandleKeyMessage(MSG& message);
    bool MoveFocus(HWND focus, bool back);
    bool PressEnter(HWND focus);
    void RunModalLoop();
    void RememberFocus();
    SIZE OuterSizeOf(const TFormOptions& options) const;
    void TakeDpi(TDpi dpi);
    // Handles the messages about the resolution; false for any other.
    bool HandleDpiChange(const TMessage& message);
    // `suggested`: where the window should be then, in pixels; null when nobody says.
    void FollowDpi(TDpi dpi, const RECT* suggested);
    void RescaleControls(TDpi before, HFONT font, HFONT boldFont) const;
    void RescaleWindow(TDpi before, SIZE client, const RECT* suggested) const;

    TDpi dpi_;
    TOwnedFont font_;
    TOwnedFont boldFont_;
    TPostQueue queue_;
    TKeyHook keyHook_;
    THints hints_;
    std::map<int, std::function<void()>> actions_;
    HWND lastFocus_ = nullptr;
    int nextId_ = 100;
    int minWidth_ = 0;
    int minHeight_ = 0;
    int modalResult_ = 0;
    bool modal_ = false;
    bool mdiChild_ = false;
};

// Makes a form run its queue.
inline constexpr UINT kRunQueueMessage = WM_APP + 1;
// From the key hook: a key for the form (lParam: MSG*). The result is TRUE when the form has
// handled it.
inline constexpr UINT kHookKeyMessage = WM_APP + 2;
// The first message number that forms may use for themselves.
inline constexpr UINT kFirstFormMessage = WM_APP + 16;

// Whether a key was down when the message that is being handled was posted.
bool IsKeyDown(int virtualKey);

}  // namespace tolvane
