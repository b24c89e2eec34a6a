#include "window/Form.h"

#include <algorithm>
#include <string>
#include <utility>

#include "text/Cp1251.h"
#include "window/FlatButton.h"
#include "window/Placement.h"
#include "window/VisualStyle.h"
#include "window/WideText.h"

namespace tolvane {

TForm::TForm() : dpi_(TDpi::System()), font_(MakeFont(dpi_)), boldFont_(MakeFont(dpi_, true)) {
    InitCommonControlClasses();
}

TForm::~TForm() {
    queue_.Detach();
}

SIZE TForm::OuterSizeOf(const TFormOptions& options) const {
    return OuterSize(dpi_, {dpi_.Scale(options.clientWidth), dpi_.Scale(options.clientHeight)},
                     options.style, options.exStyle);
}

void TForm::MakePopup(const TFormOptions& options, HWND owner) {
    const HWND root = owner != nullptr ? GetAncestor(owner, GA_ROOT) : nullptr;
    TakeDpi(TDpi::Of(root));
    const SIZE size = OuterSizeOf(options);
    RECT around{};
    const HWND centre = options.overOwner ? owner : root;
    if (centre == nullptr || IsIconic(root) != 0 || GetWindowRect(centre, &around) == 0)
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &around, 0);
    minWidth_ = options.minWidth;
    minHeight_ = options.minHeight;
    const int width = size.cx;
    const int height = size.cy;
    const RECT area = WorkArea(around);
    const auto centred = [](LONG low, LONG high, int length, LONG areaLow, LONG areaHigh) {
        const LONG start = (low + high - length) / 2;
        return static_cast<int>(std::max(areaLow, std::min(start, areaHigh - length)));
    };
    const int x = centred(around.left, around.right, width, area.left, area.right);
    const int y = centred(around.top, around.bottom, height, area.top, area.bottom);
    MakeWindow({.className = options.className,
                .name = options.name,
                .caption = options.caption,
                .style = options.style,
                .exStyle = options.exStyle,
                .parent = root,
                .x = x,
                .y = y,
                .width = width,
                .height = height});
    queue_.Attach(Handle(), kRunQueueMessage);
}

void TForm::MakeMdiChild(const TFormOptions& options, HWND mdiClient) {
    const DWORD exStyle = options.exStyle | WS_EX_MDICHILD | WS_EX_CONTROLPARENT;
    const DWORD style = options.style | WS_CHILD | WS_CLIPSIBLINGS;
    TFormOptions whole = options;
    whole.style = style;
    whole.exStyle = exStyle;
    TakeDpi(TDpi::Of(mdiClient));
    const SIZE size = OuterSizeOf(whole);
    minWidth_ = options.minWidth;
    minHeight_ = options.minHeight;
    mdiChild_ = true;
    MakeWindow({.className = options.className,
                .name = options.name,
                .caption = options.caption,
                .style = style,
                .exStyle = exStyle,
                .parent = mdiClient,
                .width = size.cx,
                .height = size.cy});
    queue_.Attach(Handle(), kRunQueueMessage);
    keyHook_.Install();
}

HWND TForm::AddControl(const TControlOptions& options) {
    const int id = options.id != 0 ? options.id : nextId_++;
    const HWND control = MakeControl(Handle(), id, dpi_, font_.Get(), options);
    if (options.action) actions_[id] = options.action;
    if (!options.hint.empty()) hints_.Add(Handle(), control, options.hint);
    return control;
}

HWND TForm::Add(TControlKind kind, const char* name, std::string_view text, const TBounds& bounds,
                DWORD style) {
    return AddControl({.kind = kind, .name = name, .text = text, .bounds = bounds, .style = style});
}

HWND TForm::AddLabel(const char* name, std::string_view text, const TBounds& bounds, DWORD style) {
    return Add(TControlKind::Label, name, text, bounds, style);
}

HWND TForm::AddButton(const char* name, std::string_view text, const TBounds& bounds,
                      std::function<void()> click, int id) {
    return AddControl(
        {.name = name, .text = text, .bounds = bounds, .action = std::move(click), .id = id});
}

HWND TForm::Control(std::string_view name) const {
    const HWND control = FindComponent(Handle(), name);
    if (control == nullptr) throw TWindowError("no control " + std::string(name));
    return control;
}

void TForm::Place(HWND control, const TBounds& bounds) const {
    // Without SWP_NOCOPYBITS, a control that moves to where its neighbour was could keep the
    // neighbour's picture.
    SetWindowPos(control, nullptr, dpi_.Scale(bounds.x), dpi_.Scale(bounds.y),
                 dpi_.Scale(bounds.width), dpi_.Scale(bounds.height),
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

SIZE TForm::ClientSize() const {
    RECT rect{};
    GetClientRect(Handle(), &rect);
    return {dpi_.Unscale(rect.right), dpi_.Unscale(rect.bottom)};
}

void TForm::OnCancel() {
    const HWND button = GetDlgItem(Handle(), IDCANCEL);
    if (button != nullptr) {
        if (IsWindowEnabled(button) != 0) SendMessageW(button, BM_CLICK, 0, 0);
    } else if (modal_) {
        Close();
    }
}

void TForm::Close() {
    if (Handle() == nullptr) return;
    if (modal_) {
        EndModal(IDCANCEL);
        return;
    }
    if (!CanClose(IDCANCEL)) return;
    OnClose();
    if (Handle() == nullptr) return;
    if (mdiChild_)
        SendMessageW(GetParent(Handle()), WM_MDIDESTROY, reinterpret_cast<WPARAM>(Handle()), 0);
    else
        Destroy();
}

LRESULT TForm::DefaultProc(const TMessage& message) {
    return mdiChild_ ? DefMDIChildProcW(Handle(), message.id, message.wParam, message.lParam)
                     : TWindow::DefaultProc(message);
}

LRESULT TForm::HandleMessage(const TMessage& message) {
    if (HandleDpiChange(message)) return 0;
    switch (message.id) {
        case WM_COMMAND:
            return HandleCommand(message);
        case WM_NOTIFY: {
            auto& header = *reinterpret_cast<NMHDR*>(message.lParam);
            // An MDI child gets no message of its own when its frame loses the focus.
            if (header.code == NM_KILLFOCUS) lastFocus_ = header.hwndFrom;
            return OnNotify(header);
        }
        case WM_DRAWITEM:
            DrawFlatButton(*reinterpret_cast<const DRAWITEMSTRUCT*>(message.lParam), dpi_);
            return TRUE;
        case WM_CLOSE:
            Close();
            return 0;
        case WM_DESTROY:
            keyHook_.Remove();
            queue_.Detach();
            hints_.Remove();
            OnDestroy();
            return 0;
        case WM_GETMINMAXINFO:
            return HandleMinMax(message);
        case WM_SIZE: {
            const LRESULT result = DefaultProc(message);
            if (message.wParam != SIZE_MINIMIZED) OnSize();
            return result;
        }
        case WM_SETFOCUS:
        case WM_ACTIVATE:
        case WM_MDIACTIVATE:
            return HandleFocus(message);
        case WM_SETTINGCHANGE:
        case WM_SYSCOLORCHANGE:
            OnSettingChange();
            return DefaultProc(message);
        case DM_GETDEFID:
            return GetDlgItem(Handle(), IDOK) != nullptr ? MAKELRESULT(IDOK, DC_HASDEFID) : 0;
        case kRunQueueMessage:
            queue_.Run();
            return 0;
        case kHookKeyMessage:
            return !modal_ && HandleKeyDown(*reinterpret_cast<MSG*>(message.lParam)) ? TRUE : FALSE;
        default:
            return DefaultProc(message);
    }
}

bool TForm::IsBehindAnother() const {
    return IsWindowEnabled(GetAncestor(Handle(), GA_ROOT)) == 0;
}

LRESULT TForm::HandleCommand(const TMessage& message) {
    const int id = LOWORD(message.wParam);
    const int code = HIWORD(message.wParam);
    const auto control = reinterpret_cast<HWND>(message.lParam);
    const auto action = actions_.find(id);
    const bool acts = code == BN_CLICKED || code == CBN_SELCHANGE;
    if (acts && IsBehindAnother()) return 0;
    if (control != nullptr && action != actions_.end()) {
        if (acts && IsWindowEnabled(control) != 0) {
            const std::function<void()> run = action->second;
            run();
        }
        return 0;
    }
    OnCommand(id, code, control);
    // The system's own commands of an MDI child.
    return id >= 0xF000 && control == nullptr ? DefaultProc(message) : 0;
}

LRESULT TForm::HandleMinMax(const TMessage& message) {
    const LRESULT result = DefaultProc(message);
    auto& info = *reinterpret_cast<MINMAXINFO*>(message.lParam);
    if (minWidth_ > 0) info.ptMinTrackSize.x = dpi_.Scale(minWidth_);
    if (minHeight_ > 0) info.ptMinTrackSize.y = dpi_.Scale(minHeight_);
    return result;
}

void TForm::RememberFocus() {
    const HWND focus = GetFocus();
    if (focus != nullptr && IsChild(Handle(), focus) != 0) lastFocus_ = focus;
}

LRESULT TForm::HandleFocus(const TMessage& message) {
    const bool leaving =
        message.id == WM_ACTIVATE
            ? LOWORD(message.wParam) == WA_INACTIVE
            : message.id == WM_MDIACTIVATE && reinterpret_cast<HWND>(message.wParam) == Handle();
    if (leaving) RememberFocus();
    const LRESULT result = DefaultProc(message);
    if (message.id != WM_SETFOCUS) return result;
    HWND target = lastFocus_;
    if (target == nullptr || IsChild(Handle(), target) == 0 || IsWindowEnabled(target) == 0)
        target = GetNextDlgTabItem(Handle(), nullptr, FALSE);
    if (target != nullptr && target != Handle()) SetFocus(target);
    return result;
}

}  // namespace tolvane
