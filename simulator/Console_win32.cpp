#include <windows.h>

#include "simulator/Console.h"

namespace tolvane::simulator {

void ShowUtf8() {
    SetConsoleOutputCP(CP_UTF8);
}

}  // namespace tolvane::simulator
