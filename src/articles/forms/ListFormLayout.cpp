#include <array>
#include <string>

#include "articles/GridColumns.h"
#include "articles/PromotionColour.h"
#include "articles/forms/PLUScaleListUnit.h"
#include "window/FlatButton.h"
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
constexpr std::array kSavePopup = {
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

bool IsNumber(TField field) {
    const TFieldType type = FieldInfo(field).type;
    return type == TFieldType::Integer || type == TFieldType::Float;
}

COLORREF WindowPromotionColour() {
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const TRgb colour = PromotionColour({GetRValue(window), GetGValue(window), GetBValue(window)});
    return RGB(colour.red, colour.green, colour.blue);
}

}  // namespace

void TElicomPluScaleListForm::MakeControls() {
    MakeTopBar();
    TControlOptions list;
    list.kind = TControlKind::ListView;
    list.name = "aDBGrid";
    list.style = kGridListStyle;
    grid_.Attach(AddControl(list));
    MakeBottomBar();
    MakeMenus();
    OnSize();
}

void TElicomPluScaleListForm::MakeTopBar() {
    AddControl({TControlKind::FlatButton,
                "SearchButton",
                "Търси:"_cp1251,
                {kMargin, kButtonTop, 180, kButtonHeight},
                0,
                [this] { SearchButtonClick(); },
                0});
    AddControl({TControlKind::FlatDropButton,
                "SearchMenuButton",
                {},
                {184, kButtonTop, 24, kButtonHeight},
                0,
                [this] { DropMenu(searchMenu_.Get(), "SearchMenuButton"); },
                0});
    AddControl({TControlKind::VerticalLine, "SearchBevel", {}, {212, 5, 2, 23}, 0, {}, 0});
    const HWND save = AddControl({TControlKind::FlatDropButton,
                                  "SaveButton",
                                  "Везни Elicom EVL/ETS"_cp1251,
                                  {218, kButtonTop, 242, kButtonHeight},
                                  0,
                                  [this] { DropMenu(savePopup_.Get(), "SaveButton"); },
                                  0});
    SendMessageW(save, WM_SETFONT, reinterpret_cast<WPARAM>(BoldFont()), FALSE);
    const int iconSize = Dpi().Scale(kScaleIconSize);
    scaleIcon_.Reset(
        static_cast<HICON>(LoadImageW(ModuleInstance(), MAKEINTRESOURCEW(kModuleIcon), IMAGE_ICON,
                                      iconSize, iconSize, LR_DEFAULTCOLOR)));
    SetFlatButtonIcon(save, scaleIcon_.Get());
    AddControl({TControlKind::VerticalLine, "SaveBevel", {}, {464, 5, 2, 23}, 0, {}, 0});
}

void TElicomPluScaleListForm::MakeBottomBar() {
    const TPlace place{0, 0, kButtonWidth, kButtonHeight};
    AddControl({TControlKind::Button, "RefreshBtn", "Обнови"_cp1251, place, 0,
                [this] { RefreshBtnClick(); }, 0});
    AddControl(
        {TControlKind::Button, "ColBtn", "Колони"_cp1251, place, 0, [this] { ColBtnClick(); }, 0});
    AddControl({TControlKind::Button, "PrintBtn", "Печат"_cp1251, place, 0,
                [this] { PrintBtnClick(); }, 0});
    AddControl({TControlKind::VerticalLine, "PrintBevel", {}, {0, 0, 2, 23}, 0, {}, 0});
    AddControl({TControlKind::Button, "btnCloseBtn", "Затвори"_cp1251, place, 0,
                [this] { Close(); }, IDCANCEL});
}

void TElicomPluScaleListForm::OnSize() {
    if (grid_.Handle() == nullptr) return;
    const SIZE client = ClientSize();
    const int bottom = client.cy - kBarHeight;
    const int top = bottom + kButtonTop;
    Place(grid_.Handle(), {0, kBarHeight, client.cx, bottom - kBarHeight});
    Place(Control("RefreshBtn"), {kMargin, top, kButtonWidth, kButtonHeight});
    Place(Control("ColBtn"), {kMargin + 92, top, kButtonWidth, kButtonHeight});
    Place(Control("PrintBtn"), {kMargin + 184, top, kButtonWidth, kButtonHeight});
    Place(Control("PrintBevel"), {kMargin + 278, bottom + 5, 2, 23});
    Place(Control("btnCloseBtn"),
          {client.cx - kMargin - kButtonWidth, top, kButtonWidth, kButtonHeight});
    InvalidateRect(Handle(), nullptr, TRUE);
}

void TElicomPluScaleListForm::PaintBars() const {
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(Handle(), &paint);
    RECT client{};
    GetClientRect(Handle(), &client);
    const int height = Dpi().Scale(kBarHeight);
    RECT top{0, 0, client.right, height};
    RECT bottom{0, client.bottom - height, client.right, client.bottom};
    DrawEdge(dc, &top, BDR_SUNKENOUTER, BF_RECT);
    DrawEdge(dc, &bottom, BDR_SUNKENOUTER, BF_RECT);
    EndPaint(Handle(), &paint);
}

void TElicomPluScaleListForm::MakeMenus() {
    savePopup_.Reset(CreatePopupMenu());
    for (const TMenuItem& item : kSavePopup) {
        if (item.command == 0)
            AppendMenuW(savePopup_.Get(), MF_SEPARATOR, 0, nullptr);
        else
            AppendMenuW(savePopup_.Get(), MF_STRING, static_cast<UINT_PTR>(item.command),
                        Wide(item.caption).c_str());
    }
}

void TElicomPluScaleListForm::FillSearchMenu() {
    searchMenu_.Reset(CreatePopupMenu());
    for (std::size_t column = 0; column < grid_.ColumnCount(); ++column)
        AppendMenuW(searchMenu_.Get(), MF_STRING, kFirstSearchCommand + column,
                    Wide(FieldInfo(FieldOfColumn(column)).label).c_str());
}

void TElicomPluScaleListForm::RebuildSearchMenu() {
    FillSearchMenu();
    if (grid_.ColumnCount() > 0) SearchMenuClick(0);
}

void TElicomPluScaleListForm::MakeColumns(const TGridLayout& layout) {
    std::vector<TGridColumnState> columns;
    columns.reserve(layout.columns.size());
    for (const TColumnLayout& column : layout.columns) {
        const bool hidden = IsHidden(layout.hiddenRows, columns.size()).value_or(false);
        columns.push_back({static_cast<std::size_t>(column.field), Wide(TitleOf(column.field)),
                           column.width, IsNumber(column.field), !hidden});
    }
    grid_.SetColumns(std::move(columns));
}

TGridSource TElicomPluScaleListForm::GridSource() {
    TGridSource source;
    source.rowCount = [this] { return suspended_ ? 0 : articles_->RowCount(); };
    source.rowAt = [this](std::size_t place) { return articles_->RowAt(place); };
    source.placeOf = [this](TRowId row) { return articles_->PlaceOf(row); };
    source.text = [this](TRowId row, std::size_t key) {
        return articles_->DisplayText(row, static_cast<TField>(key), regional_,
                                      loader_ ? loader_->BaseCurrency() : std::string_view());
    };
    source.promoted = [this](TRowId row) {
        return articles_->Boolean(row, TField::HasActivePromotion);
    };
    source.promotionColour = &WindowPromotionColour;
    source.titleClicked = [this](std::size_t column) { aDBGridTitleBtnClick(column); };
    source.columnEntered = [this](std::size_t column) { aDBGridColEnter(column); };
    return source;
}

void TElicomPluScaleListForm::DropMenu(HMENU menu, std::string_view button) {
    RECT rect{};
    GetWindowRect(Control(button), &rect);
    TPMPARAMS around{sizeof around, rect};
    TrackPopupMenuEx(menu, TPM_LEFTALIGN | TPM_TOPALIGN | TPM_VERTICAL, rect.left, rect.bottom,
                     Handle(), &around);
}

}  // namespace tolvane
