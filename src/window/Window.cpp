#include "window/Window.h"

#include <exception>
#include <string>

#include "text/Cp1251.h"
#include "text/Failure.h"
#include "window/FlatButton.h"
#include "window/MessageBoxes.h"
#include "window/Module.h"
#include "window/VisualStyle.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

constexpr const wchar_t* kNameProperty = L"ComponentName";

void* CreationParameter(HWND window, LPARAM lParam) {
    const void* parameter = reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams;
    // For an MDI child, the parameter is inside an MDICREATESTRUCT.
    if ((GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_MDICHILD) != 0)
        return reinterpret_cast<void*>(static_cast<const MDICREATESTRUCTW*>(parameter)->lParam);
    return const_cast<void*>(parameter);
}

BOOL CALLBACK RemoveName(HWND window, LPARAM) {
    RemovePropW(window, kNameProperty);
    RemoveFlatButtonLook(window);
    return TRUE;
}

struct TNameSearch {
    std::string_view name;
    HWND found = nullptr;
};

BOOL CALLBACK CompareName(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<TNameSearch*>(parameter);
    if (ComponentName(window) == search.name) search.found = window;
    return search.found == nullptr ? TRUE : FALSE;
}

}  // namespace

TWindow::~TWindow() {
    if (handle_ == nullptr) return;
    // The derived object's handlers no longer exist.
    RemoveComponentNames(handle_);
    SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
    DestroyWindow(handle_);
}

void TWindow::Destroy() noexcept {
    if (handle_ != nullptr) DestroyWindow(handle_);
}

TWindow::TKeep::~TKeep() {
    if (--window_.depth_ == 0 && window_.gone_ && window_.freeAfterDestroy_) delete &window_;
}

TWindow* TWindow::FromHandle(HWND window) noexcept {
    if (window == nullptr || GetWindowThreadProcessId(window, nullptr) != GetCurrentThreadId() ||
        GetClassLongPtrW(window, GCLP_WNDPROC) != reinterpret_cast<ULONG_PTR>(&Procedure))
        return nullptr;
    return reinterpret_cast<TWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

void TWindow::RegisterWindowClass(const TWindowOptions& options) {
    WNDCLASSEXW definition{};
    definition.cbSize = sizeof definition;
    definition.lpfnWndProc = &Procedure;
    definition.hInstance = ModuleInstance();
    definition.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    // Not every system leaves the icon of the class out of a dialog's caption.
    if ((options.exStyle & WS_EX_DLGMODALFRAME) == 0)
        definition.hIcon = LoadIconW(ModuleInstance(), MAKEINTRESOURCEW(kModuleIcon));
    definition.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    definition.lpszClassName = options.className;
    if (RegisterClassExW(&definition) == 0 && GetLastError() != ERROR_CLASS_ALREADY_EXISTS)
        throw TWindowError("RegisterClassEx: " + WindowsErrorText(GetLastError()));
}

void TWindow::MakeWindow(const TWindowOptions& options) {
    const TVisualStyleScope style;
    RegisterWindowClass(options);
    gone_ = false;
    const HWND window = CreateWindowExW(
        options.exStyle, options.className, Wide(options.caption).c_str(), options.style, options.x,
        options.y, options.width, options.height, options.parent, nullptr, ModuleInstance(), this);
    if (window == nullptr)
        throw TWindowError("CreateWindowEx: " + WindowsErrorText(GetLastError()));
    SetComponentName(window, options.name);
}

LRESULT CALLBACK TWindow::Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam) noexcept {
    auto* self = reinterpret_cast<TWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr && id == WM_NCCREATE) {
        self = static_cast<TWindow*>(CreationParameter(window, lParam));
        self->handle_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    if (self == nullptr) return DefWindowProcW(window, id, wParam, lParam);
    return self->Dispatch({id, wParam, lParam});
}

LRESULT TWindow::Dispatch(const TMessage& message) noexcept {
    const TKeep keep(*this);
    const TVisualStyleScope style;
    LRESULT result = 0;
    try {
        if (message.id == WM_DESTROY) RemoveComponentNames(handle_);
        result = HandleMessage(message);
    } catch (...) {
        ReportCurrentException();
    }
    if (message.id == WM_NCDESTROY) {
        RemovePropW(handle_, kNameProperty);
        SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
        handle_ = nullptr;
        gone_ = true;
    }
    return result;
}

void TWindow::ReportCurrentException() noexcept {
    ShowCurrentException({}, [this](std::string_view text) { HandleError(text); });
}

LRESULT TWindow::HandleMessage(const TMessage& message) {
    return DefaultProc(message);
}

LRESULT TWindow::DefaultProc(const TMessage& message) {
    return DefWindowProcW(handle_, message.id, message.wParam, message.lParam);
}

void TWindow::HandleError(std::string_view text) {
    ShowError(handle_, text);
}

void UnregisterWindowClass(const wchar_t* className) noexcept {
    UnregisterClassW(className, ModuleInstance());
}

void SetComponentName(HWND window, const char* name) {
    SetPropW(window, kNameProperty, const_cast<char*>(name));
}

std::string_view ComponentName(HWND window) {
    const auto* name = static_cast<const char*>(GetPropW(window, kNameProperty));
    return name == nullptr ? std::string_view() : std::string_view(name);
}

void RemoveComponentNames(HWND parent) noexcept {
    EnumChildWindows(parent, RemoveName, 0);
}

HWND FindComponent(HWND parent, std::string_view name) {
    TNameSearch search{name};
    EnumChildWindows(parent, CompareName, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

namespace {

void Pump(UINT kinds) {
    // Without a limit, a window that never validates itself would keep this loop going for ever.
    constexpr DWORD kPatienceMs = 250;
    const DWORD start = GetTickCount();
    MSG message{};
    while (GetTickCount() - start < kPatienceMs &&
           PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | kinds) != 0) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

}  // namespace

void PumpMessages() {
    Pump(0);
}

void PumpPaintMessages() {
    Pump(PM_QS_PAINT | PM_QS_SENDMESSAGE);
}

}  // namespace tolvane
