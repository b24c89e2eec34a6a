#pragma once

#include <windows.h>

#include "tests/support/window/UserScript.h"

namespace tolvane::test {

// A user who also measures the message loop: each look of this script is a turn of the loop. A step
// that waits for more than a minute, or a window that stays that long after the last step, ends the
// test program, since the call that shows the windows would never return.
class TMeasuredScript : public TUserScript {
public:
    // Begins the measurement anew.
    void Measure();
    int Turns() const { return turns_; }
    // The longest time between two turns, without the steps' own actions.
    DWORD LongestGap() const { return longestGap_; }

protected:
    void Look() override;

private:
    DWORD lastTurn_ = GetTickCount();
    DWORD longestGap_ = 0;
    int turns_ = 0;
};

}  // namespace tolvane::test
