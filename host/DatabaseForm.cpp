#include "host/DatabaseForm.h"

#include <string_view>
#include <utility>

#include "text/Cp1251.h"
#include "window/MessageBoxes.h"
#include "window/WideText.h"

namespace tolvane::host {
namespace {

constexpr int kNoteTop = 148;
constexpr int kNoteHeight = 32;
constexpr int kBelowButtons = 40;

std::string_view NoteOf(TDemoOffer demo) {
    switch (demo) {
        case TDemoOffer::Ready:
            return "Нямате база данни? \"Демо магазин\" създава пробна до програмата и я отваря."_cp1251;
        case TDemoOffer::NeedsEngine:
            return "Нямате база данни? Сложете файловете на Firebird за 32-битов Windows до програмата и я пуснете отново: ще предложи пробна."_cp1251;
        default:
            return {};
    }
}

}  // namespace

TDatabaseForm::TDatabaseForm(HWND owner, THostSettings settings, TDemoOffer demo)
    : settings_(std::move(settings)) {
    const std::string_view note = NoteOf(demo);
    const int buttons = kNoteTop + (note.empty() ? 8 : kNoteHeight + 12);
    MakePopup({.className = L"TDatabaseForm",
               .name = "DatabaseForm",
               .caption = "База данни"_cp1251,
               .exStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT,
               .clientWidth = 440,
               .clientHeight = buttons + kBelowButtons},
              owner);
    AddLabel(
        "HintLabel",
        "Коя база данни да отваря програмата? Например:\r\n127.0.0.1/3050:C:\\Shop\\SHOP.FDB"_cp1251,
        {12, 12, 416, 34});
    AddLabel("DatabaseLabel", "База данни"_cp1251, {12, 58, 100, 16});
    database_ = Add(TControlKind::Edit, "DatabaseEdit", settings_.database, {116, 54, 312, 22});
    AddLabel("UserLabel", "Потребител"_cp1251, {12, 88, 100, 16});
    user_ = Add(TControlKind::Edit, "UserEdit", settings_.user, {116, 84, 160, 22});
    AddLabel("PasswordLabel", "Парола"_cp1251, {12, 118, 100, 16});
    password_ = Add(TControlKind::Edit, "PasswordEdit", settings_.password, {116, 114, 160, 22},
                    ES_PASSWORD);
    if (!note.empty()) AddLabel("NoteLabel", note, {12, kNoteTop, 416, kNoteHeight});
    AddButtons(buttons, demo == TDemoOffer::Ready);
    SendMessageW(database_, EM_SETSEL, 0, -1);
}

void TDatabaseForm::AddButtons(int top, bool withDemo) {
    if (withDemo)
        AddButton("DemoButton", "Демо магазин"_cp1251, {12, top, 120, 25},
                  [this] { EndModal(kDemoShop); });
    AddButton(
        "ConnectButton", "Свързване"_cp1251, {236, top, 92, 25}, [this] { EndModal(IDOK); }, IDOK);
    AddButton(
        "CancelButton", "Отказ"_cp1251, {336, top, 92, 25}, [this] { EndModal(IDCANCEL); },
        IDCANCEL);
}

bool TDatabaseForm::CanClose(int result) {
    if (result != IDOK) return true;
    THostSettings chosen = settings_;
    chosen.database = WindowText(database_);
    chosen.user = WindowText(user_);
    chosen.password = WindowText(password_);
    if (chosen.database.empty()) {
        ShowWarning(Handle(), "Напишете коя база данни да се отвори."_cp1251);
        SetFocus(database_);
        return false;
    }
    settings_ = std::move(chosen);
    return true;
}

}  // namespace tolvane::host
