#pragma once

#include <windows.h>

#include "tests/support/window/MessageWindow.h"

namespace tolvane::test {

// How much deeper the procedures of a thread's windows may still call each other, over all of its
// nested message loops. Wine has room for 65 such calls. It does not make the next one: the message
// is lost, be it that a window is being destroyed. For the thread that makes the object.
class TCallRoom {
public:
    // At most `most`.
    int Left(int most) const;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM depth, LPARAM most);

    mutable int deepest_ = 0;
    TMessageWindow window_{L"TestCallRoom", &Procedure, this};
};

}  // namespace tolvane::test
