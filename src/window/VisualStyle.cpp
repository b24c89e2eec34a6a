#include "window/VisualStyle.h"

#include <commctrl.h>
#include <shlwapi.h>

#include "window/Module.h"

namespace tolvane {
namespace {

class TActivationContext {
public:
    TActivationContext() noexcept {
        ACTCTXW request{};
        request.cbSize = sizeof request;
        request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
        request.hModule = ModuleInstance();
        request.lpResourceName = MAKEINTRESOURCEW(kVisualStyleManifest);
        handle_ = CreateActCtxW(&request);
    }
    TActivationContext(const TActivationContext&) = delete;
    TActivationContext& operator=(const TActivationContext&) = delete;
    ~TActivationContext() {
        if (Exists()) ReleaseActCtx(handle_);
    }
    bool Exists() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE Get() const noexcept { return handle_; }

private:
    HANDLE handle_ = INVALID_HANDLE_VALUE;
};

const TActivationContext& ActivationContext() noexcept {
    static const TActivationContext kContext;
    return kContext;
}

}  // namespace

TVisualStyleScope::TVisualStyleScope() noexcept {
    const TActivationContext& context = ActivationContext();
    active_ = context.Exists() && ActivateActCtx(context.Get(), &cookie_) != 0;
}

TVisualStyleScope::~TVisualStyleScope() {
    if (active_) DeactivateActCtx(0, cookie_);
}

int CommonControlsVersion() noexcept {
    constexpr int kPlain = 5;
    const TVisualStyleScope style;
    const HMODULE library = LoadLibraryW(L"comctl32.dll");
    if (library == nullptr) return kPlain;
    DLLVERSIONINFO info{};
    info.cbSize = sizeof info;
    const auto getVersion = reinterpret_cast<DLLGETVERSIONPROC>(
        reinterpret_cast<void*>(GetProcAddress(library, "DllGetVersion")));
    const bool known = getVersion != nullptr && getVersion(&info) == S_OK;
    FreeLibrary(library);
    return known ? static_cast<int>(info.dwMajorVersion) : kPlain;
}

void InitCommonControlClasses() noexcept {
    const TVisualStyleScope style;
    INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LISTVIEW_CLASSES | ICC_PROGRESS_CLASS |
                                                     ICC_BAR_CLASSES | ICC_STANDARD_CLASSES |
                                                     ICC_TAB_CLASSES | ICC_UPDOWN_CLASS};
    InitCommonControlsEx(&classes);
}

}  // namespace tolvane
