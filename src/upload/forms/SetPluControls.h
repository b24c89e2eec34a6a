#pragma once

#include <windows.h>

#include <functional>
#include <vector>

#include "config/TypesUnit.h"
#include "upload/RunKind.h"
#include "upload/forms/LogMemo.h"
#include "upload/forms/RunBar.h"
#include "upload/forms/RunChoices.h"
#include "window/Form.h"

namespace tolvane {

// What the run window's buttons do.
struct TSetPluActions {
    std::function<void()> save;
    std::function<void()> deleteEverything;
    std::function<void()> stop;
    std::function<void()> close;
};

// The controls of the run window and their positions. Plain handles; the form owns the controls.
// Interface thread.
class TSetPluControls {
public:
    // The client area at first, at 96 dots per inch.
    static constexpr int kFormWidth = 680;
    static constexpr int kFormHeight = 500;

    // Makes the controls on the form, in the order of the Tab key, with a line per scale in the
    // list. Throws TWindowError.
    void Make(TForm& form, const TRunKind& kind, const std::vector<TScaleObj>& scales,
              const TSetPluActions& actions);
    // Fits the controls into the client area; does nothing before Make.
    void Arrange(const TForm& form);

    HWND scaleList = nullptr;
    HWND readPropLabel = nullptr;
    HWND statusMemo = nullptr;
    HWND lblStatus = nullptr;
    HWND saveBtn = nullptr;  // hidden in a run that has no save button
    HWND deleteBtn = nullptr;
    HWND stopReadBtn = nullptr;
    HWND okBtn = nullptr;
    TRunChoices choices;
    TRunBar bar;
    TLogMemo log;  // writes into statusMemo

private:
    void MakeScales(TForm& form, const std::vector<TScaleObj>& scales);
    void MakeLog(TForm& form);
    void MakeButtons(TForm& form, const TRunKind& kind, const TSetPluActions& actions);
    // The room that is left between the buttons.
    TBounds ArrangeButtons(const TForm& form, int width, int top) const;

    HWND lblScales_ = nullptr;
    bool saveVisible_ = true;
};

}  // namespace tolvane
