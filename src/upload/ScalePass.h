#pragma once

#include "scale/DevElicomScaleUnit.h"
#include "system/Clock.h"
#include "upload/RunView.h"

namespace tolvane {

// What a pass over one scale needs. The parts outlive the pass.
struct TPassParts {
    TElicomScale& scale;  // open
    TClock& clock;
    TRunView& view;
    const TRunStop& stop;
    char decimalSeparator;  // of the prices in article lines
};

}  // namespace tolvane
