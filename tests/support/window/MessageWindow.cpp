#include "tests/support/window/MessageWindow.h"

#include <stdexcept>

namespace tolvane::test {

TMessageWindow::TMessageWindow(const wchar_t* className, WNDPROC procedure, void* object) {
    WNDCLASSW definition{};
    definition.lpfnWndProc = procedure;
    definition.hInstance = GetModuleHandleW(nullptr);
    definition.lpszClassName = className;
    RegisterClassW(&definition);
    window_ = CreateWindowW(className, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            definition.hInstance, nullptr);
    if (window_ == nullptr) throw std::runtime_error("no window for messages");
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(object));
}

TMessageWindow::~TMessageWindow() {
    DestroyWindow(window_);
}

}  // namespace tolvane::test
