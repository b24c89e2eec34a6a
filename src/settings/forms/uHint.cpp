#include "settings/forms/uHint.h"

#include <commctrl.h>

#include <string>
#include <string_view>

#include "text/Cp1251.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

constexpr int kWidth = 560;
constexpr int kHeight = 330;
constexpr TBounds kPageControl = {8, 8, kWidth - 16, kHeight - 56};
constexpr TBounds kText = {22, 44, kWidth - 44, kHeight - 104};

struct THintPage {
    std::string_view caption;
    const char* name;
    std::string_view text;
};

constexpr std::array kPages = {
    THintPage{"RS232", "lblRS232",
              "RS232\r\n"
              "\r\n"
              "Директна връзка с везната.\r\n"
              "Скорост 38400 kb/s\r\n"
              "\r\n"
              "За везни EVL - CASH67\r\n"
              "За везни ETS - настройва се от меню."_cp1251},
    THintPage{"eCov", "lbleCov",
              "eCov Converter\r\n"
              "\r\n"
              "eCov модула се пуска в режим на TCP сървър.\r\n"
              "Порт: 100"_cp1251},
    THintPage{"WizNet", "lblWizNet",
              "WizNet Convertor\r\n"
              "\r\n"
              "Инсталирайте и стартирайте \"WIZ100SR/WIZ110SR Configuration Tool\".\r\n"
              "Натиснете бутона \"Search\" за сканиране на мрежата за налични WizNet модули.\r\n"
              "В поле \"Local IP\" посочете уникален за Вашата мрежа IP адрес, на който в бъдеще "
              "ще съответства този модул и везна.\r\n"
              "В поле \"Server IP\" посочете IP адреса на сървъра, от който ще се въвеждат данни "
              "във везната.\r\n"
              "Въведете 1001 в двете полета \"Port\".\r\n"
              "Изберете \"Use UDP mode\".\r\n"
              "Скорост на комуникация 38400kb/s, 8 бита данни, 1 стоп бит.\r\n"
              "Въведето 2 в полето \"Time\" - пакета се формира по време.\r\n"
              "\r\n"
              "Запишете направените настройки в модула с натискане на бутона \"Setting\"."_cp1251},
};

}  // namespace

THintForm::THintForm(HWND owner) {
    MakePopup({.className = kHintFormClass,
               .name = "HintForm",
               .caption = "Помощ..."_cp1251,
               .exStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT,
               .clientWidth = kWidth,
               .clientHeight = kHeight},
              owner);
    MakePages();
    AddButton(
        "btnOk", "Потвърди"_cp1251, {kWidth - 98, kHeight - 37, 90, 27}, [this] { EndModal(IDOK); },
        IDOK);
}

void THintForm::MakePages() {
    // The texts come first, so that they are in front of the page control.
    for (std::size_t i = 0; i < kPages.size(); ++i)
        pages_[i] = AddLabel(kPages[i].name, kPages[i].text, kText);
    pageControl_ = Add(TControlKind::Tabs, "PageControl", {}, kPageControl);
    for (std::size_t i = 0; i < kPages.size(); ++i) {
        std::wstring caption = Wide(kPages[i].caption);
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = caption.data();
        SendMessageW(pageControl_, TCM_INSERTITEMW, i, reinterpret_cast<LPARAM>(&item));
    }
    ShowPage(0);
}

std::size_t THintForm::Page() const {
    return static_cast<std::size_t>(SendMessageW(pageControl_, TCM_GETCURSEL, 0, 0));
}

void THintForm::ShowPage(std::size_t page) {
    SendMessageW(pageControl_, TCM_SETCURSEL, page, 0);
    for (std::size_t i = 0; i < pages_.size(); ++i)
        ShowWindow(pages_[i], i == page ? SW_SHOWNA : SW_HIDE);
}

// The texts get the colour of a window. Themed pages have it too; on plain pages a text looks like
// a sheet of paper.
LRESULT THintForm::PageColour(const TMessage& message) {
    SetBkColor(reinterpret_cast<HDC>(message.wParam), GetSysColor(COLOR_WINDOW));
    SetTextColor(reinterpret_cast<HDC>(message.wParam), GetSysColor(COLOR_WINDOWTEXT));
    return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
}

LRESULT THintForm::OnNotify(NMHDR& header) {
    if (header.code == TCN_SELCHANGE) ShowPage(Page());
    return 0;
}

bool THintForm::OnKey(UINT virtualKey, HWND) {
    if (virtualKey != VK_TAB || GetKeyState(VK_CONTROL) >= 0) return false;
    const std::size_t step = GetKeyState(VK_SHIFT) < 0 ? kPages.size() - 1 : 1;
    ShowPage((Page() + step) % kPages.size());
    return true;
}

LRESULT THintForm::HandleMessage(const TMessage& message) {
    if (message.id == WM_CTLCOLORSTATIC) return PageColour(message);
    if (message.id == WM_LBUTTONDOWN) pressed_ = true;
    if (message.id == WM_LBUTTONUP && pressed_) EndModal(IDCANCEL);
    return TForm::HandleMessage(message);
}

}  // namespace tolvane
