#pragma once

#include <windows.h>

#include <stdexcept>
#include <string_view>

namespace tolvane {

// A window could not be made or found; the message is in code page 1251.
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
    const wchar_t* className = nullptr;  // the form's window class, registered when needed
    const char* name = nullptr;          // component name; must live as long as the program
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

// A window whose messages an object handles. The window procedure catches exceptions and passes
// them to HandleError. The destructor destroys the window. With FreeAfterDestroy it is the other
// way round: when the window is destroyed, the object, which must have been made by new, is deleted
// as soon as none of its functions is running. Not movable: the window points to the object.
// Interface thread.
class TWindow {
public:
    TWindow() = default;
    TWindow(const TWindow&) = delete;
    TWindow& operator=(const TWindow&) = delete;
    virtual ~TWindow();

    // Null before the window is made and after it is destroyed.
    HWND Handle() const noexcept { return handle_; }
    void Destroy() noexcept;

    // Keeps the object from being deleted until the end of a scope. Every message is handled in
    // such a scope.
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
    // Is called with the text of an exception that has reached the window procedure. Shows it in an
    // error box.
    virtual void HandleError(std::string_view text);

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam) noexcept;
    static void RegisterWindowClass(const TWindowOptions& options);
    LRESULT Dispatch(const TMessage& message) noexcept;
    void ReportCurrentException() noexcept;

    HWND handle_ = nullptr;
    int depth_ = 0;
    bool freeAfterDestroy_ = false;
    bool gone_ = false;
};

// Unregisters a window class of this module; has no effect while a window of the class exists.
void UnregisterWindowClass(const wchar_t* className) noexcept;

// The component name of a window, kept as the window property "ComponentName".
void SetComponentName(HWND window, const char* name);
// Empty when the window has no name. Only for windows of this process.
std::string_view ComponentName(HWND window);
// Removes the names of a window's children. For when the window is being destroyed.
void RemoveComponentNames(HWND parent) noexcept;
// The descendant with that component name, or null.
HWND FindComponent(HWND parent, std::string_view name);

// Handles the waiting messages of this thread, for a quarter of a second at most. WM_QUIT stays in
// the queue.
void PumpMessages();
// Handles only painting and sent messages of this thread; clicks and keys keep waiting.
void PumpPaintMessages();

}  // namespace tolvane
