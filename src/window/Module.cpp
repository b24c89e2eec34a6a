#include "window/Module.h"

#include <memory>
#include <new>

#include "window/Handles.h"
#include "window/ThreadState.h"

// The linker puts this at the start of the image.
extern "C" IMAGE_DOS_HEADER __ImageBase;  // NOLINT

namespace tolvane {
namespace {

constexpr UINT kUiPatienceMs = 60'000;
constexpr SIZE_T kHelperStack = 64 * 1024;

struct TRelease {
    HWND uiWindow;
    DWORD uiThread;
};

BOOL CALLBACK TakeFirst(HWND window, LPARAM found) {
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

// If the frame has been destroyed, or is another thread's, any other window of the thread serves.
HWND WindowOf(const TRelease& release) {
    HWND window = release.uiWindow;
    if (GetWindowThreadProcessId(window, nullptr) == release.uiThread) return window;
    window = nullptr;
    EnumThreadWindows(release.uiThread, &TakeFirst, reinterpret_cast<LPARAM>(&window));
    return window;
}

// SendMessageTimeout returns when the window's thread retrieves messages, that is, when this
// module's code is no longer on its stack.
DWORD WINAPI ReleaseModule(void* parameter) {
    const HMODULE module = ModuleInstance();
    {
        const std::unique_ptr<TRelease> release(static_cast<TRelease*>(parameter));
        DWORD_PTR ignored = 0;
        if (const HWND window = WindowOf(*release); window != nullptr)
            SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, kUiPatienceMs, &ignored);
    }
    FreeLibraryAndExitThread(module, 0);
}

}  // namespace

HINSTANCE ModuleInstance() noexcept {
    return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

TModuleHold::TModuleHold(HWND uiWindow) noexcept
    : uiWindow_(uiWindow), uiThread_(GetCurrentThreadId()) {
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&__ImageBase), &module_);
}

TModuleHold::~TModuleHold() {
    if (module_ == nullptr) return;
    // The helper may be the thread that unloads the module, and can end only its own.
    EndThreadState();
    // Without the helper the module stays loaded, which does no harm.
    std::unique_ptr<TRelease> release(new (std::nothrow) TRelease{uiWindow_, uiThread_});
    if (!release) return;
    const TOwnedKernelObject thread(CreateThread(nullptr, kHelperStack, ReleaseModule,
                                                 release.get(), STACK_SIZE_PARAM_IS_A_RESERVATION,
                                                 nullptr));
    // The helper owns the request from now on.
    if (thread) static_cast<void>(release.release());
}

}  // namespace tolvane
