#include "host/HostMenu.h"

#include <array>
#include <string_view>

#include "text/Cp1251.h"
#include "window/WideText.h"

namespace tolvane::host {
namespace {

struct TMenuLine {
    int command;  // 0: a separator
    std::string_view caption;
};

constexpr std::array<TMenuLine, 4> kConnectionLines = {{{kConnect, "&Свързване"_cp1251},
                                                        {kDisconnect, "&Прекъсване"_cp1251},
                                                        {kChooseDatabase, "&База данни..."_cp1251},
                                                        {0, {}}}};
constexpr TMenuLine kExitLine = {kExit, "&Изход\tAlt+F4"_cp1251};
constexpr std::array<TMenuLine, 6> kWindowsLines = {
    {{kCascade, "&Каскадно"_cp1251},
     {kTileHorizontally, "&Хоризонтално"_cp1251},
     {kTileVertically, "&Вертикално"_cp1251},
     {kArrangeIcons, "&Подреждане на иконите"_cp1251},
     {0, {}},
     {kCloseAll, "&Затваряне на всички"_cp1251}}};
constexpr std::array<TMenuLine, 2> kHelpLines = {
    {{kModules, "&Модули..."_cp1251}, {kAbout, "&За програмата...\tF1"_cp1251}}};

void AddLine(HMENU menu, const TMenuLine& line) {
    if (line.command == 0) {
        AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    } else {
        AppendMenuW(menu, MF_STRING, static_cast<UINT_PTR>(line.command),
                    Wide(line.caption).c_str());
    }
}

template <std::size_t N>
HMENU AddMenu(HMENU bar, std::string_view caption, const std::array<TMenuLine, N>& lines) {
    const HMENU menu = CreatePopupMenu();
    for (const TMenuLine& line : lines)
        AddLine(menu, line);
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(menu), Wide(caption).c_str());
    return menu;
}

// A title is shown unchanged: an ampersand in it does not mark a key.
std::wstring MenuText(std::string_view title) {
    std::wstring text;
    for (const wchar_t c : Wide(title)) {
        text += c;
        if (c == L'&') text += c;
    }
    return text;
}

}  // namespace

THostMenu MakeHostMenu(const std::vector<std::string>& operations) {
    THostMenu menu;
    menu.bar = CreateMenu();
    menu.connection = AddMenu(menu.bar, "&Връзка с базата"_cp1251, kConnectionLines);
    ShowLastDatabases(menu, {});
    menu.operations = AddMenu(menu.bar, "&Операции"_cp1251, std::array<TMenuLine, 0>{});
    menu.windows = AddMenu(menu.bar, "&Прозорци"_cp1251, kWindowsLines);
    AddMenu(menu.bar, "По&мощ"_cp1251, kHelpLines);
    UINT_PTR command = kFirstOperation;
    for (const std::string& title : operations)
        AppendMenuW(menu.operations, MF_STRING, command++, MenuText(title).c_str());
    if (operations.empty())
        AppendMenuW(menu.operations, MF_STRING | MF_GRAYED, 0,
                    Wide("Няма модули в папка Operations"_cp1251).c_str());
    return menu;
}

void ShowLastDatabases(const THostMenu& menu, const std::vector<std::string>& databases) {
    const HMENU lines = menu.connection;
    while (GetMenuItemCount(lines) > static_cast<int>(kConnectionLines.size()))
        DeleteMenu(lines, static_cast<UINT>(kConnectionLines.size()), MF_BYPOSITION);
    UINT_PTR command = kFirstDatabase;
    for (const std::string& database : databases) {
        const std::wstring number = std::to_wstring(command - kFirstDatabase + 1);
        AppendMenuW(lines, MF_STRING, command++,
                    (L"&" + number + L" " + MenuText(database)).c_str());
    }
    if (!databases.empty()) AppendMenuW(lines, MF_SEPARATOR, 0, nullptr);
    AddLine(lines, kExitLine);
}

TOwnedAccelerators MakeHostAccelerators() {
    std::array<ACCEL, 1> keys = {{{FVIRTKEY, VK_F1, kAbout}}};
    return TOwnedAccelerators(CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size())));
}

}  // namespace tolvane::host
