#include "window/WorkerThread.h"

#include <stdexcept>
#include <utility>

#include "window/WideText.h"
#include "window/Window.h"

namespace tolvane {

namespace {

// The window waits for the end of its job, so it must be notified even if it cannot be reached for
// a while.
void PostUntilAccepted(TPostQueue& queue, TPostQueue::TPrepared& done) noexcept {
    constexpr DWORD kRetryMs = 100;
    for (bool isUnderWay = queue.Post(done); !isUnderWay; isUnderWay = queue.Announce())
        Sleep(kRetryMs);
}

}  // namespace

void TWorkerThread::Start(std::function<void()> body, TPostQueue queue,
                          std::function<void()> done) {
    Wait();
    ended_.Reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!ended_) throw std::runtime_error("CreateEvent: " + WindowsErrorText(GetLastError()));
    // The end is prepared now: there may be no memory then.
    thread_ =
        std::thread([body = std::move(body), queue = std::move(queue),
                     end = TPostQueue::TPrepared(std::move(done)), ended = ended_.Get()]() mutable {
            try {
                body();
            } catch (...) {  // NOLINT(bugprone-empty-catch): nothing may unwind into the host
            }
            PostUntilAccepted(queue, end);
            SetEvent(ended);
        });
}

void TWorkerThread::Wait() noexcept {
    if (!thread_.joinable()) return;
    constexpr DWORD kSliceMs = 50;
    const HANDLE ended = ended_.Get();
    for (;;) {
        const DWORD result =
            MsgWaitForMultipleObjects(1, &ended, FALSE, kSliceMs, QS_SENDMESSAGE | QS_PAINT);
        if (result == WAIT_OBJECT_0 || result == WAIT_FAILED) break;
        PumpPaintMessages();
    }
    // A sent message that was handled meanwhile may have waited for the same job and joined the
    // thread.
    if (thread_.joinable()) thread_.join();
}

}  // namespace tolvane
