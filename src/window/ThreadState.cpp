#include "window/ThreadState.h"

#include <windows.h>

#include <exception>

#include "window/Module.h"

// Among other things, what the loader calls in this module when a thread begins or ends.
extern "C" const IMAGE_TLS_DIRECTORY32 _tls_used;  // NOLINT

namespace tolvane {

void EndThreadState() noexcept {
    if (std::current_exception() != nullptr || std::uncaught_exceptions() != 0) return;
    const auto* callback = reinterpret_cast<PIMAGE_TLS_CALLBACK*>(_tls_used.AddressOfCallBacks);
    for (; *callback != nullptr; ++callback)
        (*callback)(ModuleInstance(), DLL_THREAD_DETACH, nullptr);
}

}  // namespace tolvane
