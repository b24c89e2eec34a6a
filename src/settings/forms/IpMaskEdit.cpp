#include "settings/forms/IpMaskEdit.h"

#include <commctrl.h>

#include <memory>
#include <optional>

#include "settings/IpMask.h"
#include "window/Handles.h"
#include "window/WideText.h"
#include "window/Window.h"

namespace tolvane {
namespace {

constexpr UINT_PTR kMask = 1;
constexpr wchar_t kBackspace = 8;

std::string ClipboardText(HWND owner) {
    const TOpenClipboard clipboard(OpenClipboard(owner) != 0);
    const HANDLE data = clipboard ? GetClipboardData(CF_UNICODETEXT) : nullptr;
    const TLockedGlobal<const wchar_t> text(data);
    if (text.Get() == nullptr) return {};
    return Narrow({text.Get(), wcsnlen(text.Get(), GlobalSize(data) / sizeof(wchar_t))});
}

class TMaskedEdit {
public:
    explicit TMaskedEdit(HWND edit) : edit_(edit) {}

    LRESULT SetText(LPARAM lParam) {
        const auto* text = reinterpret_cast<const wchar_t*>(lParam);
        mask_.SetText(text != nullptr ? Narrow(text) : std::string());
        return Show(0);
    }

    // Returns whether the mask has handled the key.
    bool Type(WPARAM character) {
        if (character == kBackspace) {
            Show(mask_.Backspace(Selection()));
            return true;
        }
        // The other control characters are commands: copy, paste, select all.
        if (character < ' ') return false;
        const std::string typed = Narrow(std::wstring(1, static_cast<wchar_t>(character)));
        ShowOrBeep(mask_.Type(typed[0], Selection()));
        return true;
    }

    void Paste() { ShowOrBeep(mask_.Paste(ClipboardText(edit_), Selection())); }
    void Replace(LPARAM lParam) {
        const auto* text = reinterpret_cast<const wchar_t*>(lParam);
        ShowOrBeep(mask_.Paste(text != nullptr ? Narrow(text) : std::string(), Selection()));
    }
    void Delete() { Show(mask_.Delete(Selection())); }
    void Clear() {
        if (Selection().end > Selection().start) Delete();
    }
    LRESULT Show(int caret) {
        const LRESULT result = DefSubclassProc(
            edit_, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(Wide(mask_.Text()).c_str()));
        SendMessageW(edit_, EM_SETSEL, static_cast<WPARAM>(caret), caret);
        return result;
    }

private:
    TIpMask::TSelection Selection() const {
        DWORD start = 0;
        DWORD end = 0;
        SendMessageW(edit_, EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                     reinterpret_cast<LPARAM>(&end));
        return {static_cast<int>(start), static_cast<int>(end)};
    }

    void ShowOrBeep(std::optional<int> caret) {
        if (caret)
            Show(*caret);
        else
            MessageBeep(MB_OK);
    }

    HWND edit_;
    TIpMask mask_;
};

LRESULT Handle(TMaskedEdit& masked, HWND edit, UINT id, WPARAM wParam, LPARAM lParam) {
    switch (id) {
        case WM_SETTEXT:
            return masked.SetText(lParam);
        case WM_CHAR:
            if (masked.Type(wParam)) return 0;
            break;
        case WM_KEYDOWN:
            if (wParam != VK_DELETE) break;
            // With Shift, Delete cuts, as everywhere.
            if (GetKeyState(VK_SHIFT) < 0) SendMessageW(edit, WM_COPY, 0, 0);
            masked.Delete();
            return 0;
        case WM_PASTE:
            masked.Paste();
            return 0;
        case EM_REPLACESEL:
            masked.Replace(lParam);
            return 0;
        case WM_CUT:
            SendMessageW(edit, WM_COPY, 0, 0);
            masked.Clear();
            return 0;
        case WM_CLEAR:
            masked.Clear();
            return 0;
        // The edit line's own undo does not know the mask.
        case WM_UNDO:
        case EM_UNDO:
        case EM_CANUNDO:
            return FALSE;
        default:
            break;
    }
    return DefSubclassProc(edit, id, wParam, lParam);
}

LRESULT CALLBACK Procedure(HWND edit, UINT id, WPARAM wParam, LPARAM lParam, UINT_PTR,
                           DWORD_PTR parameter) noexcept {
    auto* masked = reinterpret_cast<TMaskedEdit*>(parameter);
    if (id == WM_NCDESTROY) {
        RemoveWindowSubclass(edit, &Procedure, kMask);
        delete masked;
        return DefSubclassProc(edit, id, wParam, lParam);
    }
    try {
        return Handle(*masked, edit, id, wParam, lParam);
    } catch (const std::exception&) {
        return 0;  // out of memory: the field stays as it was
    }
}

}  // namespace

void MakeIpMaskEdit(HWND edit) {
    auto masked = std::make_unique<TMaskedEdit>(edit);
    if (SetWindowSubclass(edit, &Procedure, kMask, reinterpret_cast<DWORD_PTR>(masked.get())) == 0)
        throw TWindowError("SetWindowSubclass: no mask");
    masked.release()->Show(0);
}

}  // namespace tolvane
