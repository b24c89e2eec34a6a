#include "settings/forms/uFindDevices.h"

#include <utility>

#include "system/Clock.h"
#include "text/Cp1251.h"
#include "window/MessageBoxes.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

constexpr int kWidth = 300;
constexpr int kHeight = 290;
constexpr std::string_view kNothingFound = "Не са намерени везни."_cp1251;

}  // namespace

TDeviceSearch NetworkSearch() {
    return [](const std::atomic<bool>& stop, const TProbeReport& report) {
        FindDevices(SystemClock(), stop, report);
    };
}

TFindDevicesForm::TFindDevicesForm(HWND owner, TDeviceSearch search) : search_(std::move(search)) {
    MakePopup({.className = kFindDevicesFormClass,
               .name = "FindDevicesForm",
               .caption = "Налични везни"_cp1251,
               .exStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT,
               .clientWidth = kWidth,
               .clientHeight = kHeight},
              owner);
    MakeControls();
}

TFindDevicesForm::~TFindDevicesForm() {
    *stop_ = true;
    worker_.Wait();
    Queue().Detach();
}

void TFindDevicesForm::MakeControls() {
    btnFind_ = AddButton("btnFind", "Търси налични везни"_cp1251, {8, 8, kWidth - 16, 27},
                         &TFindDevicesForm::btnFindClick);
    lstDevices_ = Add(TControlKind::ListBox, "lstDevices", {}, {8, 43, kWidth - 16, kHeight - 88});
    AddButton("btnOK", "Потвърди"_cp1251, {kWidth - 196, kHeight - 35, 90, 27},
              &TFindDevicesForm::btnOKClick, IDOK);
    AddButton(
        "btnCancel", "Отказ"_cp1251, {kWidth - 98, kHeight - 35, 90, 27},
        [this] { EndModal(IDCANCEL); }, IDCANCEL);
}

void TFindDevicesForm::btnFindClick() {
    if (searching_) return;
    SendMessageW(lstDevices_, LB_RESETCONTENT, 0, 0);
    found_.clear();
    *stop_ = false;
    const auto report = [this, queue = Queue()](const std::vector<TFoundDevice>& found) mutable {
        queue.Post([this, found] { AddFound(found); });
    };
    // When a search fails, what it has reported still counts.
    worker_.Start([search = search_, stop = stop_, report] { search(*stop, report); }, Queue(),
                  [this] { SearchEnded(); });
    searching_ = true;
    // Move the focus before its button is disabled: a disabled button swallows keys.
    SetFocus(lstDevices_);
    EnableWindow(btnFind_, FALSE);
    SetCursor(LoadCursorW(nullptr, IDC_APPSTARTING));
}

void TFindDevicesForm::AddFound(const std::vector<TFoundDevice>& found) {
    for (const TFoundDevice& device : found) {
        found_.push_back(device);
        const LRESULT index = SendMessageW(lstDevices_, LB_ADDSTRING, 0,
                                           reinterpret_cast<LPARAM>(Wide(device.address).c_str()));
        SendMessageW(lstDevices_, LB_SETITEMDATA, static_cast<WPARAM>(index),
                     static_cast<LPARAM>(device.kind));
    }
}

void TFindDevicesForm::SearchEnded() {
    worker_.Wait();
    searching_ = false;
    EnableWindow(btnFind_, TRUE);
    SetCursor(LoadCursorW(nullptr, IDC_ARROW));
    if (closing_)
        EndModal(*closing_);
    else if (found_.empty())
        ShowInformation(Handle(), kNothingFound);
}

void TFindDevicesForm::btnOKClick() {
    const LRESULT index = SendMessageW(lstDevices_, LB_GETCURSEL, 0, 0);
    const bool isChoice = index >= 0 && static_cast<std::size_t>(index) < found_.size();
    if (!isChoice || closing_) return;
    chosen_ = found_[static_cast<std::size_t>(index)];
    EndModal(IDOK);
}

void TFindDevicesForm::OnCommand(int, int code, HWND control) {
    if (control == lstDevices_ && code == LBN_DBLCLK) btnOKClick();
}

// The first attempt to close decides the result, as it would if no search were running.
bool TFindDevicesForm::CanClose(int result) {
    if (!searching_) return true;
    if (!closing_) closing_ = result;
    *stop_ = true;
    return false;
}

void TFindDevicesForm::OnDestroy() {
    *stop_ = true;
}

LRESULT TFindDevicesForm::HandleMessage(const TMessage& message) {
    if (message.id == WM_SETCURSOR && searching_ && LOWORD(message.lParam) == HTCLIENT) {
        SetCursor(LoadCursorW(nullptr, IDC_APPSTARTING));
        return TRUE;
    }
    return TForm::HandleMessage(message);
}

}  // namespace tolvane
