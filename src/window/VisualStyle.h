#pragma once

#include <windows.h>

namespace tolvane {

// The number of the manifest resource that asks for version 6 of the common controls.
inline constexpr int kVisualStyleManifest = 2;

// While it lives, windows that this thread creates get the themed common controls of this module's
// manifest, whatever the host uses. Without the resource or the controls the plain ones are used.
class TVisualStyleScope {
public:
    TVisualStyleScope() noexcept;
    TVisualStyleScope(const TVisualStyleScope&) = delete;
    TVisualStyleScope& operator=(const TVisualStyleScope&) = delete;
    ~TVisualStyleScope();

private:
    ULONG_PTR cookie_ = 0;
    bool active_ = false;
};

// The version of the common controls that windows created now would get: 5 or 6.
int CommonControlsVersion() noexcept;
// Registers the classes of the common controls; call before the first list view or progress bar.
void InitCommonControlClasses() noexcept;

}  // namespace tolvane
