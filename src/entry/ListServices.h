#pragma once

#include "articles/forms/PLUScaleListUnit.h"

namespace tolvane {

// What the list window gets from the module: its files, the other forms, the host's print service
// and the completion message.
TListServices ListServices();

// Posts the completion message to the host, once per call.
void PostCompletion() noexcept;

}  // namespace tolvane
