#include "window/RunWorker.h"

#include <stdexcept>
#include <utility>

#include "window/WideText.h"
#include "window/Window.h"

namespace tolvane {

void TRunWorker::Start(std::function<void()> body) {
    Wait();
    ended_.Reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!ended_) throw std::runtime_error("CreateEvent: " + SystemErrorText(GetLastError()));
    thread_ = std::thread([body = std::move(body), ended = ended_.Get()] {
        body();
        SetEvent(ended);
    });
}

void TRunWorker::Wait() noexcept {
    if (!thread_.joinable()) return;
    constexpr DWORD kSliceMs = 50;
    const HANDLE ended = ended_.Get();
    for (;;) {
        const DWORD result =
            MsgWaitForMultipleObjects(1, &ended, FALSE, kSliceMs, QS_SENDMESSAGE | QS_PAINT);
        if (result == WAIT_OBJECT_0 || result == WAIT_FAILED) break;
        PumpPaintMessages();
    }
    thread_.join();
}

}  // namespace tolvane
