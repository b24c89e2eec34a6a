#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tests/support/window/UserScript.h"

namespace tolvane::test {

enum class TBoxIcon { None, Error, Warning, Information };

struct TSeenBox {
    std::string caption;       // UTF-8
    std::string text;          // UTF-8
    std::vector<int> buttons;  // command numbers
    TBoxIcon icon = TBoxIcon::None;
};

// What a message box shows.
TSeenBox ReadBox(HWND box);

// While it lives, answers the message boxes of this thread with a button, and keeps what they said.
class TBoxAnswerer {
public:
    explicit TBoxAnswerer(int button = IDOK);
    TBoxAnswerer(const TBoxAnswerer&) = delete;
    TBoxAnswerer& operator=(const TBoxAnswerer&) = delete;
    ~TBoxAnswerer() = default;

    const std::vector<TSeenBox>& Seen() const { return seen_; }

private:
    static BOOL CALLBACK Visit(HWND window, LPARAM parameter);
    void Answer(HWND box);

    int button_;
    std::vector<TSeenBox> seen_;
    TRegularCall look_;
};

}  // namespace tolvane::test
