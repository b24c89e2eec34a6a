#include "host/PrintService.h"

#include <exception>
#include <string>
#include <string_view>

#include "host/PrintPreviewForm.h"
#include "window/MessageBoxes.h"
#include "window/WideText.h"

namespace tolvane::host {
namespace {

std::wstring CountedText(const std::uint8_t* text) {
    if (text == nullptr) return {};
    return Wide(std::string_view(reinterpret_cast<const char*>(text + 1), text[0]));
}

void TOLVANE_STDCALL Print(void* object, const std::uint8_t* title, const std::uint8_t* dateTime,
                           void* grid) {
    const auto frame = static_cast<HWND>(object);
    try {
        TPrintPreviewForm preview(frame, static_cast<HWND>(grid),
                                  {CountedText(title), CountedText(dateTime)});
        preview.ShowModal();
    } catch (const std::exception& error) {
        ShowError(frame, error.what());
    }
}

}  // namespace

TPrintProc MakePrintProc(HWND frame) {
    return {Print, frame};
}

}  // namespace tolvane::host
