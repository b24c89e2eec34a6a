#include "tests/support/window/HostFrame.h"

#include <chrono>
#include <stdexcept>

namespace tolvane::test {
namespace {

constexpr const wchar_t* kFrameClass = L"TestHostFrame";
constexpr const wchar_t* kChildClass = L"TestHostChild";
constexpr UINT kFirstChildId = 5000;

void RegisterOnce(const wchar_t* className, WNDPROC procedure) {
    WNDCLASSW definition{};
    definition.lpfnWndProc = procedure;
    definition.hInstance = GetModuleHandleW(nullptr);
    definition.hbrBackground = GetSysColorBrush(COLOR_APPWORKSPACE);
    definition.lpszClassName = className;
    if (RegisterClassW(&definition) == 0 && GetLastError() != ERROR_CLASS_ALREADY_EXISTS)
        throw std::runtime_error("RegisterClass");
}

}  // namespace

THostFrame::THostFrame() {
    RegisterOnce(kFrameClass, &Procedure);
    RegisterOnce(kChildClass, &DefMDIChildProcW);
    frame_ = CreateWindowW(kFrameClass, L"Test host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10,
                           1000, 700, nullptr, nullptr, GetModuleHandleW(nullptr), this);
    CLIENTCREATESTRUCT create{nullptr, kFirstChildId};
    client_ = CreateWindowExW(WS_EX_CLIENTEDGE, L"MDIClient", nullptr,
                              WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 0, 0, frame_, nullptr,
                              GetModuleHandleW(nullptr), &create);
    if (frame_ == nullptr || client_ == nullptr) throw std::runtime_error("no MDI frame");
    RECT rect{};
    GetClientRect(frame_, &rect);
    MoveWindow(client_, 0, 0, rect.right, rect.bottom, TRUE);
    SetForegroundWindow(frame_);
    RunLoopDry();
}

THostFrame::~THostFrame() {
    if (IsWindow(frame_) != 0) DestroyWindow(frame_);
    RunLoopDry();
}

LRESULT CALLBACK THostFrame::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE)
        SetWindowLongPtrW(
            window, GWLP_USERDATA,
            reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
    auto* self = reinterpret_cast<THostFrame*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    ++self->received_[message];
    return DefFrameProcW(window, self->client_, message, wParam, lParam);
}

int THostFrame::Received(UINT message) const {
    const auto found = received_.find(message);
    return found == received_.end() ? 0 : found->second;
}

HWND THostFrame::AddChild(const char* componentName) {
    const HWND child =
        CreateWindowExW(WS_EX_MDICHILD, kChildClass, L"Host's own", WS_CHILD, 0, 0, 300, 200,
                        client_, nullptr, GetModuleHandleW(nullptr), nullptr);
    if (componentName != nullptr)
        SetPropW(child, L"ComponentName", const_cast<char*>(componentName));
    return child;
}

HWND THostFrame::ChildOfClass(const wchar_t* className) const {
    return FindWindowExW(client_, nullptr, className, nullptr);
}

int THostFrame::ChildrenOfClass(const wchar_t* className) const {
    int count = 0;
    for (HWND at = nullptr; (at = FindWindowExW(client_, at, className, nullptr)) != nullptr;)
        ++count;
    return count;
}

bool RunLoopUntil(const std::function<bool()>& condition, int seconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        RunLoopDry();
    }
    return true;
}

void RunLoopDry() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

}  // namespace tolvane::test
