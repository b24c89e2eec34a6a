#include "simulator/Console.h"

namespace tolvane::simulator {

void ShowUtf8() {}

}  // namespace tolvane::simulator
