// Sends Ctrl+C to the console of a process: interrupt_program NUMBER.

#include <windows.h>

#include <cstdlib>

int main(int count, char** words) {
    if (count != 2) return 2;
    FreeConsole();
    const bool isSent = AttachConsole(static_cast<DWORD>(std::atol(words[1]))) != 0 &&
                        SetConsoleCtrlHandler(nullptr, TRUE) != 0 &&
                        GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) != 0;
    return isSent ? 0 : 1;
}
