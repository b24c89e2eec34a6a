#pragma once

#include "comm/DevCommBaseUnit.h"

namespace tolvane::test {

// The shortest that a reader takes for a reply: both marks and a byte between them.
inline const TCmdBuffer kFrame = {0x02, 0x41, 0x03};

}  // namespace tolvane::test
