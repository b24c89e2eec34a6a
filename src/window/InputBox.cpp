#include "window/InputBox.h"

#include "text/Cp1251.h"
#include "window/Form.h"
#include "window/OwnerWatch.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

class TInputBoxForm : public TForm {
public:
    TInputBoxForm(HWND owner, std::string_view title, std::string_view prompt,
                  std::string_view initial) {
        MakePopup({.className = kInputBoxClass,
                   .name = "InputBoxForm",
                   .caption = title,
                   .exStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT,
                   .clientWidth = 300,
                   .clientHeight = 100},
                  owner);
        AddLabel("PromptLabel", prompt, {12, 12, 276, 16});
        edit_ = Add(TControlKind::Edit, "ValueEdit", initial, {12, 30, 276, 22});
        AddButton(
            "OkButton", "OK", {72, 64, 75, 25}, [this] { EndModal(IDOK); }, IDOK);
        AddButton(
            "CancelButton", "Отказ"_cp1251, {153, 64, 75, 25}, [this] { EndModal(IDCANCEL); },
            IDCANCEL);
        SendMessageW(edit_, EM_SETSEL, 0, -1);
    }

    // Reads the text while the window exists.
    std::optional<std::string> Ask() {
        if (ShowModal() != IDOK || Handle() == nullptr) return std::nullopt;
        return WindowText(edit_);
    }

private:
    HWND edit_ = nullptr;
};

}  // namespace

std::optional<std::string> AskText(HWND owner, std::string_view title, std::string_view prompt,
                                   std::string_view initial) {
    TInputBoxForm form(owner, title, prompt, initial);
    const TOwnerWatch watch(owner, form);
    return form.Ask();
}

}  // namespace tolvane
