#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "comm/DeviceDiscovery.h"
#include "window/Form.h"
#include "window/WorkerThread.h"

namespace tolvane {

inline constexpr const wchar_t* kFindDevicesFormClass = L"TFindDevicesForm";

// A search. It is called on a thread of its own, reports what it finds while it goes on, and
// returns soon after `stop` is set.
using TDeviceSearch =
    std::function<void(const std::atomic<bool>& stop, const TProbeReport& report)>;

// The search that the network modules of the scales answer.
TDeviceSearch NetworkSearch();

// The window that searches the network for scales. During a search the window stays responsive, and
// the user can choose what has been found. Closing the window, with a choice or without, stops the
// search first. Interface thread.
class TFindDevicesForm : public TForm {
public:
    TFindDevicesForm(HWND owner, TDeviceSearch search);
    ~TFindDevicesForm() override;

    // The chosen device after ShowModal has returned IDOK.
    const std::optional<TFoundDevice>& Chosen() const { return chosen_; }

protected:
    LRESULT HandleMessage(const TMessage& message) override;
    void OnCommand(int id, int code, HWND control) override;
    bool CanClose(int result) override;
    void OnDestroy() override;

private:
    void MakeControls();
    void btnFindClick();
    void btnOKClick();
    void AddFound(const std::vector<TFoundDevice>& found);
    void SearchEnded();

    TDeviceSearch search_;
    std::shared_ptr<std::atomic<bool>> stop_ = std::make_shared<std::atomic<bool>>(false);
    std::vector<TFoundDevice> found_;  // as listed
    std::optional<TFoundDevice> chosen_;
    HWND lstDevices_ = nullptr;
    HWND btnFind_ = nullptr;
    bool searching_ = false;
    std::optional<int> closing_;  // the result to close with when the search has ended
    TWorkerThread worker_;
};

}  // namespace tolvane
