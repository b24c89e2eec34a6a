#pragma once

#include <atomic>
#include <string>

namespace tolvane {

// What a run shows, in the order of a run on one thread. Called on the run's thread. Texts are code
// page 1251.
class TRunView {
public:
    virtual ~TRunView() = default;

    virtual void ClearLog() = 0;
    // One entry at the log's end. A scale's failure may hold a line break of its own.
    virtual void Log(std::string line) = 0;
    // ReadPropLabel: the connection of the scale in work.
    virtual void SetConnection(std::string text) = 0;
    // lblStatus: what is being done.
    virtual void SetProgress(std::string text) = 0;
    // During a run StopReadBtn is enabled and SaveBtn, OkBtn, DeleteBtn and ScaleList are disabled;
    // at rest the other way round; that is the last that a run without an error tells.
    virtual void SetRunning(bool running) = 0;
    // cbPluName1, cbPluName2 and PriceRadio.
    virtual void SetChoicesEnabled(bool enabled) = 0;
    // An error outside the scale layer ended the run. The controls stay as they are.
    virtual void ShowRunError(std::string text) = 0;
};

// How the interface thread ends a run: read between articles, and before a scale is put into
// programming mode. Any thread.
class TRunStop {
public:
    // The user's stop: ends the pass over a scale. A run takes it back when it begins.
    void Stop() noexcept { stopped_ = true; }
    // The window goes: ends the whole run, for good.
    void Abandon() noexcept { abandoned_ = true; }

    bool IsStopped() const noexcept { return stopped_ || abandoned_; }
    bool IsAbandoned() const noexcept { return abandoned_; }
    void TakeBack() noexcept { stopped_ = false; }

private:
    std::atomic<bool> stopped_ = false;
    std::atomic<bool> abandoned_ = false;
};

}  // namespace tolvane
