#include "tests/support/window/HostFrame.h"

#include <array>
#include <chrono>
#include <stdexcept>
#include <vector>

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

struct TSearch {
    std::string name;
    HWND found = nullptr;
};

BOOL CALLBACK CompareName(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<TSearch*>(parameter);
    if (ComponentNameOf(window) == search.name) search.found = window;
    return search.found == nullptr ? TRUE : FALSE;
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

std::string Utf8(const std::wstring& text) {
    std::string result(text.size() * 3, '\0');
    result.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), result.data(),
                            static_cast<int>(result.size()), nullptr, nullptr)));
    return result;
}

std::string Utf8TextOf(HWND window) {
    const auto length = static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0));
    std::wstring text(length + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return Utf8(text);
}

std::wstring ClassOf(HWND window) {
    std::array<wchar_t, 256> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return name.data();
}

HWND Component(HWND parent, const std::string& name) {
    TSearch search{name};
    EnumChildWindows(parent, CompareName, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::string ComponentNameOf(HWND window) {
    const auto* name = static_cast<const char*>(GetPropW(window, L"ComponentName"));
    return name == nullptr ? std::string() : std::string(name);
}

}  // namespace tolvane::test
