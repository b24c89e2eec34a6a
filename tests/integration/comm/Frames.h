#pragma once

#include "comm/DevCommBaseUnit.h"

namespace tolvane::test {

// The shortest frame that a reader takes for a reply: start byte, one byte, end byte.
inline const TCmdBuffer kFrame = {0x02, 0x41, 0x03};

}  // namespace tolvane::test
