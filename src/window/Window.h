#pragma once

#include <windows.h>

#include <stdexcept>
#include <string_view>

namespace tolvane {

// A window or another system object could not be made; the message is code page 1251 text.
class TWindowError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct TMessage {
    UINT id = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
};

struct TWindowOptions {
    const wchar_t* className = nullptr;  // the form's class name; registered when needed
    const char* name = nullptr;          // component name, lives as long as the program
    std::string_view caption;            // code page 1251
    DWORD style = WS_OVERLAPPEDWINDOW;
    DWORD exStyle = 0;      // WS_EX_MDICHILD makes an MDI child of `parent`, the MDI client
    HWND parent = nullptr;  // parent or owner
    // pixels
    int x = CW_USEDEFAULT;
    int y = CW_USEDEFAULT;
    int width = CW_USEDEFAULT;
    int height = CW_USEDEFAULT;
};

// A window whose procedure is an object. Exceptions end at the window procedure, in HandleError.
// A window made by the program's own code lives as long as its object; FreeAfterDestroy turns that
// round: the object (made by new) then goes when its window has gone and none of its functions is
// running any more. Not movable: the window points to the object.
class TWindow {
public:
    TWindow() = default;
    TWindow(const TWindow&) = delete;
    TWindow& operator=(const TWindow&) = delete;
    virtual ~TWindow();

    // Null before the window is made and after it has gone.
    HWND Handle() const noexcept { return handle_; }
    void Destroy() noexcept;

    // Keeps the object from being freed for the length of a block, as during a message.
    class TKeep {
    public:
        explicit TKeep(TWindow& window) noexcept : window_(window) { ++window_.depth_; }
        TKeep(const TKeep&) = delete;
        TKeep& operator=(const TKeep&) = delete;
        ~TKeep();

    private:
        TWindow& window_;
    };

    // The object of a window of this module; null for any other window.
    static TWindow* FromHandle(HWND window) noexcept;

protected:
    // Throws TWindowError.
    void MakeWindow(const TWindowOptions& options);
    void FreeAfterDestroy() noexcept { freeAfterDestroy_ = true; }

    virtual LRESULT HandleMessage(const TMessage& message);
    // What the system does with a message that nobody handles (DefWindowProc, DefMDIChildProc,
    // ...).
    virtual LRESULT DefaultProc(const TMessage& message);
    // An exception's text arrived at the window procedure; shows it in an error box.
    virtual void HandleError(std::string_view text);

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam) noexcept;
    static void RegisterWindowClass(const wchar_t* className);
    LRESULT Dispatch(const TMessage& message) noexcept;
    void ReportCurrentException() noexcept;

    HWND handle_ = nullptr;
    int depth_ = 0;
    bool freeAfterDestroy_ = false;
    bool gone_ = false;
};

// Gives a window class of this module back; nothing happens while a window of it is open.
void UnregisterWindowClass(const wchar_t* className) noexcept;

// The component name of a window, kept as the window property "ComponentName".
void SetComponentName(HWND window, const char* name);
// Empty when the window has none. Same process only.
std::string_view ComponentName(HWND window);
// Takes the names from a window's children; for the time when the window is being destroyed.
void RemoveComponentNames(HWND parent) noexcept;
// The descendant with that component name, or null.
HWND FindComponent(HWND parent, std::string_view name);

// Lets the waiting messages of this thread run, for a quarter of a second at most. WM_QUIT stays in
// the queue.
void PumpMessages();
// Lets windows of this thread that wait for it paint; nothing that the user does comes in.
void PumpPaintMessages();

}  // namespace tolvane
