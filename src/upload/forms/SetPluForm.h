#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "upload/RunKind.h"
#include "upload/RunMarks.h"
#include "upload/RunSettings.h"
#include "upload/RunView.h"
#include "upload/ScaleRun.h"
#include "upload/forms/SetPluUnit.h"
#include "window/Form.h"
#include "window/RunWorker.h"

namespace tolvane {

// The run window. At most one run works at a time, on a thread of its own; what it tells arrives
// here, through the form's queue, as calls of TRunView on the interface thread.
class TSetPluForm : public TForm, private TRunView {
public:
    // Throws TFileError when the kept settings cannot be read.
    TSetPluForm(HWND owner, const TRunKind& kind, const TRunContext& context);
    ~TSetPluForm() override;

    // After ShowModal: ends a run that still works, puts the check marks back and saves the
    // window's settings. Throws TFileError. Only the first call does anything.
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
    using TClick = void (TSetPluForm::*)();

    // What is made once.
    HWND Add(TControlKind kind, const char* name, std::string_view text = {}, DWORD style = 0);
    HWND AddButton(const char* name, std::string_view text, TClick click, int id = 0);
    void AddScales();
    void AddChoices();
    void AddLog();
    void AddButtons();
    void Restore(const TRunSettings& settings);
    void RestorePlace(const TWindowPlace& place);

    void PlaceChoices(int left);
    void PlaceButtons(int width, int top);

    // What the controls say now.
    TRunSettings CurrentSettings() const;
    std::vector<TRunItem> CurrentItems() const;
    // Tells a run that deletes everything what the list says now.
    void PublishMarks();

    void SaveBtnClick();
    void DeleteBtnClick();
    void StopReadBtnClick();
    // Starts a run; nothing happens while one works or when the window is closing.
    template <class Body>
    void StartRun(Body body);
    void RunEnded(unsigned run);
    // Check marks and settings, once.
    void StoreResults();

    // TRunView
    void ClearLog() override;
    void Log(std::string line) override;
    void SetConnection(std::string text) override;
    void SetProgress(std::string text) override;
    void SetRunning(bool running) override;
    void SetChoicesEnabled(bool enabled) override;
    void ShowRunError(std::string text) override;
    // Lines wait for one another; they are shown before anything else changes.
    void FlushLog();

    const TRunKind& kind_;
    TRunContext context_;
    std::vector<TRunItem> items_;  // in the order of ScaleList
    std::shared_ptr<TRunMarks> marks_ = std::make_shared<TRunMarks>(items_);
    bool maximized_ = false;
    bool stored_ = false;

    std::shared_ptr<TRunStop> stop_ = std::make_shared<TRunStop>();
    unsigned run_ = 0;          // the number of the latest run
    bool running_ = false;      // until its last word, or its end after an error
    bool closing_ = false;      // closes now or, with a run, at its end
    HWND startedBy_ = nullptr;  // gets the focus after the run

    std::string pendingLog_;
    std::size_t pendingLines_ = 0;

    HWND lblScales_ = nullptr;
    HWND scaleList_ = nullptr;
    HWND priceRadio_ = nullptr;
    std::array<HWND, kPriceCaptions.size()> priceButtons_{};
    HWND lblPluName1_ = nullptr;
    HWND cbPluName1_ = nullptr;
    HWND lblPluName2_ = nullptr;
    HWND cbPluName2_ = nullptr;
    HWND readPropLabel_ = nullptr;
    HWND statusMemo_ = nullptr;
    HWND lblStatus_ = nullptr;
    HWND saveBtn_ = nullptr;
    HWND deleteBtn_ = nullptr;
    HWND stopReadBtn_ = nullptr;
    HWND okBtn_ = nullptr;

    TRunWorker worker_;
};

}  // namespace tolvane
