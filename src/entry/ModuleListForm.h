#pragma once

#include "articles/forms/PLUScaleListUnit.h"
#include "window/Module.h"

namespace tolvane {

// The list window inside the host: it opens the module's other windows, uses the host's print
// service and posts the completion message when it ends. Its hold on the module is its first base
// class and so is destroyed last: until then the code of the other destructors stays in memory.
// Must be made by new; deletes itself when its window is destroyed. Interface thread.
class TModuleListForm final : private TModuleHold, public TElicomPluScaleListForm {
public:
    // Makes and shows the window in the frame's MDI client. Throws TWindowError.
    explicit TModuleListForm(HWND mdiClient);

private:
    void OpenRun(TRunNumber number) override;
    void EditScales() override;
    void Print(std::string_view title, std::string_view dateTime, HWND grid) override;
    void Ended() override;
};

}  // namespace tolvane
