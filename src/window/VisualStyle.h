#pragma once

#include <windows.h>

namespace tolvane {

// The number of the manifest resource that asks for version 6 of the common controls.
inline constexpr int kVisualStyleManifest = 2;

// While it exists, windows that this thread creates use the themed common controls of this module's
// manifest, independently of the host. Without that resource or those controls they use the plain
// ones.
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
// Registers the classes of the common controls. Must be called before the first of them is made.
void InitCommonControlClasses() noexcept;

}  // namespace tolvane
