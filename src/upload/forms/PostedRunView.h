#pragma once

#include <string>
#include <utility>

#include "upload/RunView.h"
#include "window/PostQueue.h"

namespace tolvane {

// Passes a run's calls from its thread to the window's thread, in order. The window must live until
// the queue is detached; later calls are dropped. A call that finds no memory throws
// std::bad_alloc and is lost; ShowMemoryError needs none.
class TPostedRunView : public TRunView {
public:
    TPostedRunView(TPostQueue queue, TRunView& window)
        : queue_(std::move(queue)),
          window_(window),
          memoryError_([&window] { window.ShowMemoryError(); }) {}

    void ClearLog() override;
    void Log(std::string line) override;
    void SetConnection(std::string text) override;
    void SetProgress(std::string text) override;
    void ShowCount(const TRunCount& count) override;
    void SetRunning(bool running) override;
    void SetChoicesEnabled(bool enabled) override;
    void ShowRunError(std::string text) override;
    void ShowMemoryError() noexcept override;

private:
    TPostQueue queue_;
    TRunView& window_;
    TPostQueue::TPrepared memoryError_;
};

}  // namespace tolvane
