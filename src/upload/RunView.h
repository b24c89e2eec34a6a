#pragma once

#include <atomic>
#include <string>

#include "upload/RunProgress.h"

namespace tolvane {

// Shows what a run is doing. The run calls it on its own thread, in the order of its steps. Texts
// are code page 1251.
class TRunView {
public:
    virtual ~TRunView() = default;

    virtual void ClearLog() = 0;
    // Adds one entry at the log's end. The entry may contain line breaks.
    virtual void Log(std::string line) = 0;
    // ReadPropLabel: the connection of the current scale.
    virtual void SetConnection(std::string text) = 0;
    // lblStatus: the current step.
    virtual void SetProgress(std::string text) = 0;
    // How far the run has come; a count of nothing when there is no run.
    virtual void ShowCount(const TRunCount& count) = 0;
    // During a run only StopReadBtn is enabled; between runs, SaveBtn, OkBtn, DeleteBtn and
    // ScaleList are enabled and StopReadBtn is not. A run that meets no error ends with
    // SetRunning(false).
    virtual void SetRunning(bool running) = 0;
    // cbPluName1, cbPluName2 and PriceRadio.
    virtual void SetChoicesEnabled(bool enabled) = 0;
    // An error outside the scale layer has ended the run. The controls stay as they are.
    virtual void ShowRunError(std::string text) = 0;
    // The same when memory is too short even for the error's text. Must not need any; the user gets
    // kOutOfMemory. At most once for a view.
    virtual void ShowMemoryError() noexcept = 0;
};

// How the interface thread stops a run. The run reads it between articles and before it puts a
// scale into programming mode. Any thread.
class TRunStop {
public:
    // The user's stop: ends the pass over the current scale. A run that begins cancels an earlier
    // stop with TakeBack.
    void Stop() noexcept { stopped_ = true; }
    // The window closes: ends the whole run. Cannot be taken back.
    void Abandon() noexcept { abandoned_ = true; }

    bool IsStopped() const noexcept { return stopped_ || abandoned_; }
    bool IsAbandoned() const noexcept { return abandoned_; }
    void TakeBack() noexcept { stopped_ = false; }

private:
    std::atomic<bool> stopped_ = false;
    std::atomic<bool> abandoned_ = false;
};

}  // namespace tolvane
