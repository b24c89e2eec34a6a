#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>

#include "articles/ArticleLoader.h"
#include "database/DatabaseCalls.h"
#include "window/Handles.h"

namespace tolvane {

// Asks the user, on a thread of its own, what to do about a call that does not come back: the
// interface thread is the one that waits for it. The question goes away when the call has come
// back. Interface thread.
class TDatabasePatience final : public TPatience {
public:
    explicit TDatabasePatience(const TDatabaseCalls& calls) noexcept;
    TDatabasePatience(const TDatabasePatience&) = delete;
    TDatabasePatience& operator=(const TDatabasePatience&) = delete;
    ~TDatabasePatience() override;

private:
    static DWORD WINAPI Run(void* self) noexcept;
    static void CALLBACK TakeBack(HWND timers, UINT message, UINT_PTR timer, DWORD time) noexcept;
    bool IsOver() const noexcept;
    void Wait() noexcept;
    void Ask() noexcept;

    const TDatabaseCalls calls_;
    std::uint64_t call_ = 0;  // the one that is waited for; the thread's own
    std::atomic<bool> asks_ = false;
    const TOwnedKernelObject ended_;
    TOwnedKernelObject thread_;
};

}  // namespace tolvane
