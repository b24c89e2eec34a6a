#include "window/Module.h"

// The linker puts this at the start of the image.
extern "C" IMAGE_DOS_HEADER __ImageBase;  // NOLINT

namespace tolvane {
namespace {

constexpr UINT kUiPatienceMs = 60'000;
constexpr SIZE_T kHelperStack = 64 * 1024;

// The message is answered when the thread of the window fetches messages, that is, when this
// module's code is no longer on its stack.
DWORD WINAPI ReleaseModule(void* uiWindow) {
    const HMODULE module = ModuleInstance();
    DWORD_PTR ignored = 0;
    SendMessageTimeoutW(static_cast<HWND>(uiWindow), WM_NULL, 0, 0, SMTO_NORMAL, kUiPatienceMs,
                        &ignored);
    FreeLibraryAndExitThread(module, 0);
}

}  // namespace

HINSTANCE ModuleInstance() noexcept {
    return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

TModuleHold::TModuleHold(HWND uiWindow) noexcept : uiWindow_(uiWindow) {
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&__ImageBase), &module_);
}

TModuleHold::~TModuleHold() {
    if (module_ == nullptr) return;
    // Without the helper the hold stays: a module that is never unloaded does no harm.
    const HANDLE thread = CreateThread(nullptr, kHelperStack, ReleaseModule, uiWindow_,
                                       STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    if (thread != nullptr) CloseHandle(thread);
}

}  // namespace tolvane
