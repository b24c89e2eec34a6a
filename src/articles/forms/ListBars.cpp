#include "articles/forms/ListBars.h"

#include <array>
#include <utility>

#include "articles/forms/PLUScaleListUnit.h"
#include "text/Cp1251.h"
#include "window/FlatButton.h"
#include "window/Handles.h"
#include "window/Module.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

constexpr int kBarHeight = 33;
constexpr int kButtonTop = 4;
constexpr int kButtonHeight = 25;
constexpr int kButtonWidth = 88;
constexpr int kMargin = 4;
constexpr int kScaleIconSize = 16;

struct TMenuItem {
    int command;  // 0: a separator
    std::string_view caption;
};
constexpr std::array kSaveMenu = {
    TMenuItem{kFirstRunCommand + static_cast<int>(TRunNumber::SaveAll),
              "Запис на всички артикули"_cp1251},
    TMenuItem{kFirstRunCommand + static_cast<int>(TRunNumber::SaveMarked),
              "Запис на маркираните артикули"_cp1251},
    TMenuItem{0, {}},
    TMenuItem{kFirstRunCommand + static_cast<int>(TRunNumber::DeleteAll),
              "Изтриване всички артикули"_cp1251},
    TMenuItem{kFirstRunCommand + static_cast<int>(TRunNumber::DeleteMarked),
              "Изтриване на маркираните артикули"_cp1251},
    TMenuItem{0, {}},
    TMenuItem{kSettingsCommand, "Настройка на комуникацията със везните"_cp1251},
};

}  // namespace

void TListBars::MakeTop(TClick search) {
    search_ =
        form_.AddControl({.kind = TControlKind::FlatButton,
                          .name = "SearchButton",
                          .text = "Търси:"_cp1251,
                          .bounds = {kMargin, kButtonTop, 180, kButtonHeight},
                          .action = std::move(search),
                          .hint = "Търсене в избраната колона (Ctrl+F); следващо: F3"_cp1251});
    searchMenuButton_ =
        form_.AddControl({.kind = TControlKind::FlatDropButton,
                          .name = "SearchMenuButton",
                          .bounds = {184, kButtonTop, 24, kButtonHeight},
                          .action = [this] { DropMenu(searchMenu_.Get(), searchMenuButton_); },
                          .hint = "Избор на колоната, в която се търси"_cp1251});
    form_.Add(TControlKind::VerticalLine, "SearchBevel", {}, {212, 5, 2, 23});
    MakeSaveButton();
    form_.Add(TControlKind::VerticalLine, "SaveBevel", {}, {464, 5, 2, 23});
    MakeSaveMenu();
}

void TListBars::MakeSaveButton() {
    save_ =
        form_.AddControl({.kind = TControlKind::FlatDropButton,
                          .name = "SaveButton",
                          .text = "Везни Elicom EVL/ETS"_cp1251,
                          .bounds = {218, kButtonTop, 242, kButtonHeight},
                          .action = [this] { DropMenu(saveMenu_.Get(), save_); },
                          .hint = "Запис и изтриване на артикули, настройка на везните"_cp1251});
    SendMessageW(save_, WM_SETFONT, reinterpret_cast<WPARAM>(form_.BoldFont()), FALSE);
    LoadIcon();
}

void TListBars::LoadIcon() {
    const int iconSize = form_.Dpi().Scale(kScaleIconSize);
    scaleIcon_.Reset(
        static_cast<HICON>(LoadImageW(ModuleInstance(), MAKEINTRESOURCEW(kModuleIcon), IMAGE_ICON,
                                      iconSize, iconSize, LR_DEFAULTCOLOR)));
    SetFlatButtonIcon(save_, scaleIcon_.Get());
}

void TListBars::MakeBottom(TClick refresh, TClick columns, TClick print) {
    // Arrange gives them their positions.
    const TBounds later{0, 0, kButtonWidth, kButtonHeight};
    refresh_ = form_.AddButton("RefreshBtn", "Обнови"_cp1251, later, std::move(refresh));
    columns_ = form_.AddButton("ColBtn", "Колони"_cp1251, later, std::move(columns));
    print_ = form_.AddButton("PrintBtn", "Печат"_cp1251, later, std::move(print));
    printBevel_ = form_.Add(TControlKind::VerticalLine, "PrintBevel", {}, {0, 0, 2, 23});
    close_ = form_.AddButton(
        "btnCloseBtn", "Затвори"_cp1251, later, [this] { form_.Close(); }, IDCANCEL);
}

void TListBars::Arrange(HWND grid) const {
    const SIZE client = form_.ClientSize();
    const int bottom = client.cy - kBarHeight;
    const int top = bottom + kButtonTop;
    form_.Place(grid, {0, kBarHeight, client.cx, bottom - kBarHeight});
    form_.Place(refresh_, {kMargin, top, kButtonWidth, kButtonHeight});
    form_.Place(columns_, {kMargin + 92, top, kButtonWidth, kButtonHeight});
    form_.Place(print_, {kMargin + 184, top, kButtonWidth, kButtonHeight});
    form_.Place(printBevel_, {kMargin + 278, bottom + 5, 2, 23});
    form_.Place(close_, {client.cx - kMargin - kButtonWidth, top, kButtonWidth, kButtonHeight});
    InvalidateRect(form_.Handle(), nullptr, TRUE);
}

void TListBars::Paint() const {
    const TPainting painting(form_.Handle());
    RECT client{};
    GetClientRect(form_.Handle(), &client);
    const int height = form_.Dpi().Scale(kBarHeight);
    RECT top{0, 0, client.right, height};
    RECT bottom{0, client.bottom - height, client.right, client.bottom};
    DrawEdge(painting.Dc(), &top, BDR_SUNKENOUTER, BF_RECT);
    DrawEdge(painting.Dc(), &bottom, BDR_SUNKENOUTER, BF_RECT);
}

void TListBars::MakeSaveMenu() {
    saveMenu_.Reset(CreatePopupMenu());
    for (const TMenuItem& item : kSaveMenu) {
        if (item.command == 0)
            AppendMenuW(saveMenu_.Get(), MF_SEPARATOR, 0, nullptr);
        else
            AppendMenuW(saveMenu_.Get(), MF_STRING, static_cast<UINT_PTR>(item.command),
                        Wide(item.caption).c_str());
    }
}

void TListBars::FillSearchMenu(const std::vector<TField>& fields) {
    searchMenu_.Reset(CreatePopupMenu());
    UINT_PTR command = kFirstSearchCommand;
    for (const TField field : fields)
        AppendMenuW(searchMenu_.Get(), MF_STRING, command++, Wide(FieldInfo(field).label).c_str());
}

void TListBars::ShowSearchField(TField field) const {
    SetWindowText(search_, std::string("Търси по: "_cp1251) + std::string(FieldInfo(field).label) +
                               std::string(" (F3)"));
    InvalidateRect(search_, nullptr, TRUE);
}

std::string TListBars::SearchCaption() const {
    return WindowText(search_);
}

void TListBars::DropMenu(HMENU menu, HWND button) const {
    RECT rect{};
    GetWindowRect(button, &rect);
    TPMPARAMS around{sizeof around, rect};
    TrackPopupMenuEx(menu, TPM_LEFTALIGN | TPM_TOPALIGN | TPM_VERTICAL, rect.left, rect.bottom,
                     form_.Handle(), &around);
}

}  // namespace tolvane
