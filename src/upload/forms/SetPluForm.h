#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "upload/RunKind.h"
#include "upload/RunMarks.h"
#include "upload/RunSettings.h"
#include "upload/RunView.h"
#include "upload/ScaleRun.h"
#include "upload/forms/SetPluControls.h"
#include "upload/forms/SetPluUnit.h"
#include "window/Form.h"
#include "window/WorkerThread.h"

namespace tolvane {

// The run window. At most one run works at a time, on a thread of its own; the form's queue passes
// its calls of TRunView to the interface thread. Interface thread.
class TSetPluForm : public TForm, private TRunView {
public:
    // Throws TWindowError, and TFileError when the saved settings cannot be read.
    TSetPluForm(HWND owner, const TRunKind& kind, const TRunContext& context);
    ~TSetPluForm() override;

    // After ShowModal: ends a run that is still working, copies the check marks into the scale
    // table and saves the window's settings. Throws TFileError. Only the first call does anything.
    void Finish();

protected:
    void OnSize() override;
    void OnShow() override;
    bool CanClose(int result) override;
    void OnDestroy() override;
    bool OnKey(UINT virtualKey, HWND focus) override;
    void OnCancel() override;
    LRESULT OnNotify(NMHDR& header) override;
    LRESULT HandleMessage(const TMessage& message) override;

private:
    void RestorePosition(const TWindowPlace& place);

    // What the controls show now.
    TRunSettings CurrentSettings() const;
    std::vector<TScaleObj> CurrentItems() const;
    // Gives the list's check marks to a run that deletes everything.
    void PublishMarks();

    void SaveBtnClick();
    void DeleteBtnClick();
    void StopReadBtnClick();
    // Starts a run; does nothing while one is working or when the window is closing.
    template <class Body>
    void StartRun(Body body);
    void RunEnded(unsigned run);
    // Tells a user who works with another program that the run is over.
    void CallUserBack() const;
    // Saves check marks and settings; only the first call does anything.
    void StoreResults();

    // TRunView
    void ClearLog() override;
    void Log(std::string line) override;
    void SetConnection(std::string text) override;
    void SetProgress(std::string text) override;
    void ShowCount(const TRunCount& count) override;
    void SetRunning(bool running) override;
    void SetChoicesEnabled(bool enabled) override;
    void ShowRunError(std::string text) override;
    void ShowMemoryError() noexcept override;

    const TRunKind& kind_;
    TRunContext context_;
    std::vector<TScaleObj> items_;  // in the order of ScaleList
    std::shared_ptr<TRunMarks> marks_ = std::make_shared<TRunMarks>(items_);
    bool maximized_ = false;
    bool stored_ = false;

    std::shared_ptr<TRunStop> stop_ = std::make_shared<TRunStop>();
    unsigned run_ = 0;          // the number of the latest run
    bool running_ = false;      // until SetRunning(false), or its end after an error
    bool closing_ = false;      // the window closes now, or when the run has ended
    HWND startedBy_ = nullptr;  // gets the focus after the run

    // The log is flushed before any other control changes, so that the window shows events in
    // order.
    TSetPluControls controls_;

    TWorkerThread worker_;
};

}  // namespace tolvane
