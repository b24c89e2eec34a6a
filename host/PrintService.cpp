#include "host/PrintService.h"

#include <exception>
#include <string>
#include <string_view>

#include "host/PrintPreviewForm.h"
#include "text/Cp1251.h"
#include "text/Failure.h"
#include "window/MessageBoxes.h"
#include "window/WideText.h"

namespace tolvane::host {
namespace {

std::wstring CountedText(const std::uint8_t* text) {
    if (text == nullptr) return {};
    return Wide(std::string_view(reinterpret_cast<const char*>(text + 1), text[0]));
}

// A module calls this, so it must not throw.
void TOLVANE_STDCALL Print(void* object, const std::uint8_t* title, const std::uint8_t* dateTime,
                           void* grid) noexcept {
    const auto frame = static_cast<HWND>(object);
    try {
        if (IsWindow(static_cast<HWND>(grid)) == 0) {
            ShowError(frame, "Операцията не посочи таблица за печат."_cp1251);
            return;
        }
        TPrintPreviewForm preview(frame, static_cast<HWND>(grid),
                                  {CountedText(title), CountedText(dateTime)});
        preview.ShowModal();
    } catch (const std::exception& error) {
        ShowError(frame, MessageOf(error));
    }
}

}  // namespace

TPrintProc MakePrintProc(HWND frame) {
    return {Print, frame};
}

}  // namespace tolvane::host
