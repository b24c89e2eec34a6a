#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace tolvane::test {

enum class TBoxIcon { None, Error, Warning, Information };

struct TSeenBox {
    std::string caption;       // UTF-8
    std::string text;          // UTF-8
    std::vector<int> buttons;  // command numbers
    TBoxIcon icon = TBoxIcon::None;
};

// While it lives, answers the message boxes of this thread with a button, and keeps what they said.
class TBoxAnswerer {
public:
    explicit TBoxAnswerer(int button = IDOK);
    TBoxAnswerer(const TBoxAnswerer&) = delete;
    TBoxAnswerer& operator=(const TBoxAnswerer&) = delete;
    ~TBoxAnswerer();

    const std::vector<TSeenBox>& Seen() const { return seen_; }

private:
    static void CALLBACK Tick(HWND window, UINT message, UINT_PTR timer, DWORD time);
    static BOOL CALLBACK Visit(HWND window, LPARAM parameter);
    void Answer(HWND box);

    int button_;
    UINT_PTR timer_;
    std::vector<TSeenBox> seen_;
};

// While it lives, calls `act` once with the first visible window of the class on this thread; for
// modal windows that the test opens by a call that returns only when they are closed.
class TWindowActor {
public:
    TWindowActor(std::wstring className, std::function<void(HWND)> act);
    TWindowActor(const TWindowActor&) = delete;
    TWindowActor& operator=(const TWindowActor&) = delete;
    ~TWindowActor();

    bool HasActed() const { return acted_; }

private:
    static void CALLBACK Tick(HWND window, UINT message, UINT_PTR timer, DWORD time);
    static BOOL CALLBACK Visit(HWND window, LPARAM parameter);

    std::wstring className_;
    std::function<void(HWND)> act_;
    UINT_PTR timer_;
    bool acted_ = false;
};

}  // namespace tolvane::test
