#include "host/DatabaseForm.h"

#include <utility>

#include "text/Cp1251.h"
#include "window/MessageBoxes.h"
#include "window/WideText.h"

namespace tolvane::host {

TDatabaseForm::TDatabaseForm(HWND owner, THostSettings settings, bool offersDemo)
    : settings_(std::move(settings)) {
    MakePopup({.className = L"TDatabaseForm",
               .name = "DatabaseForm",
               .caption = "База данни"_cp1251,
               .exStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT,
               .clientWidth = 440,
               .clientHeight = 196},
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
    if (offersDemo)
        AddButton("DemoButton", "Демо магазин"_cp1251, {12, 156, 120, 25},
                  [this] { EndModal(kDemoShop); });
    AddButton(
        "ConnectButton", "Свързване"_cp1251, {236, 156, 92, 25}, [this] { EndModal(IDOK); }, IDOK);
    AddButton(
        "CancelButton", "Отказ"_cp1251, {336, 156, 92, 25}, [this] { EndModal(IDCANCEL); },
        IDCANCEL);
    SendMessageW(database_, EM_SETSEL, 0, -1);
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
