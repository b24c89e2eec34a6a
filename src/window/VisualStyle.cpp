#include "window/VisualStyle.h"

#include <commctrl.h>
#include <shlwapi.h>

#include "window/Handles.h"
#include "window/Module.h"

namespace tolvane {
namespace {

struct TActivationTraits {
    using TValue = HANDLE;
    static inline const HANDLE kNone = INVALID_HANDLE_VALUE;
    static void Free(HANDLE context) noexcept { ReleaseActCtx(context); }
};
using TActivationContext = TOwned<TActivationTraits>;

// Owns nothing when the module has no such resource.
TActivationContext MakeActivationContext() noexcept {
    ACTCTXW request{};
    request.cbSize = sizeof request;
    request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    request.hModule = ModuleInstance();
    request.lpResourceName = MAKEINTRESOURCEW(kVisualStyleManifest);
    return TActivationContext(CreateActCtxW(&request));
}

const TActivationContext& ActivationContext() noexcept {
    static const TActivationContext kContext = MakeActivationContext();
    return kContext;
}

}  // namespace

TVisualStyleScope::TVisualStyleScope() noexcept {
    const TActivationContext& context = ActivationContext();
    active_ = context && ActivateActCtx(context.Get(), &cookie_) != 0;
}

TVisualStyleScope::~TVisualStyleScope() {
    if (active_) DeactivateActCtx(0, cookie_);
}

int CommonControlsVersion() noexcept {
    constexpr int kPlain = 5;
    const TVisualStyleScope style;
    // The controls that exist have loaded it.
    const HMODULE library = GetModuleHandleW(L"comctl32.dll");
    if (library == nullptr) return kPlain;
    DLLVERSIONINFO info{};
    info.cbSize = sizeof info;
    const auto getVersion = reinterpret_cast<DLLGETVERSIONPROC>(
        reinterpret_cast<void*>(GetProcAddress(library, "DllGetVersion")));
    const bool known = getVersion != nullptr && getVersion(&info) == S_OK;
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
