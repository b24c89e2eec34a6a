#include "upload/forms/LogMemo.h"

#include <new>

#include "window/Form.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

// At most this many lines are added at a time, so that the window stays responsive; none waits
// longer than the delay.
constexpr std::size_t kMostLines = 150;
constexpr UINT kDelayMs = 50;
constexpr UINT_PTR kTimer = 1;

// An entry as a memo shows it: a zero byte would end it, and only CR LF breaks a line.
void AppendEntry(std::string_view entry, std::string& text) {
    for (std::size_t i = 0; i < entry.size(); ++i) {
        if (entry.substr(i, 2) == "\r\n") {
            text += "\r\n";
            ++i;
        } else {
            const char c = entry[i];
            text += c == '\0' || c == '\r' || c == '\n' ? ' ' : c;
        }
    }
}

}  // namespace

void TLogMemo::Attach(HWND window, HWND memo) {
    window_ = window;
    memo_ = memo;
    SendMessageW(memo_, EM_SETLIMITTEXT, 0, 0);
}

void TLogMemo::Clear() {
    Flush();
    SetWindowText(memo_, {});
}

void TLogMemo::Add(std::string_view entry) {
    const std::size_t before = pending_.size();
    try {
        if (pendingLines_ > 0) pending_ += "\r\n";
        AppendEntry(entry, pending_);
    } catch (...) {
        pending_.resize(before);
        throw;
    }
    if (pendingLines_ == 0) SetTimer(window_, kTimer, kDelayMs, nullptr);
    if (++pendingLines_ >= kMostLines) Flush();
}

void TLogMemo::Flush() noexcept {
    if (pendingLines_ == 0) return;
    KillTimer(window_, kTimer);
    try {
        AppendLine(memo_, pending_);
    } catch (const std::bad_alloc&) {
        SetTimer(window_, kTimer, kDelayMs, nullptr);
        return;
    }
    pending_.clear();
    pendingLines_ = 0;
}

bool TLogMemo::HandleTimer(WPARAM timer) {
    if (timer != kTimer) return false;
    Flush();
    return true;
}

}  // namespace tolvane
