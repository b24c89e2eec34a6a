#include "host/TradeHostForm.h"

#include <commctrl.h>

#include <array>
#include <utility>

#include "host/PrintService.h"
#include "text/Cp1251.h"
#include "window/MessageBoxes.h"
#include "window/Module.h"
#include "window/VisualStyle.h"
#include "window/WideText.h"

namespace tolvane::host {
namespace {

enum TCommand : int {
    kConnect = 100,
    kDisconnect,
    kExit,
    kCascade,
    kTileHorizontally,
    kTileVertically,
    kCloseAll,
    kModules,
    kAbout,
    kFirstOperation = 1000,
    kFirstChild = 50000,
};

struct TMenuLine {
    int command;  // 0: a separator
    std::string_view caption;
};

constexpr std::array<TMenuLine, 4> kFileMenu = {{{kConnect, "&Връзка с базата данни"_cp1251},
                                                 {kDisconnect, "&Прекъсване на връзката"_cp1251},
                                                 {0, {}},
                                                 {kExit, "&Изход"_cp1251}}};
constexpr std::array<TMenuLine, 5> kWindowsMenu = {{{kCascade, "&Каскадно"_cp1251},
                                                    {kTileHorizontally, "&Хоризонтално"_cp1251},
                                                    {kTileVertically, "&Вертикално"_cp1251},
                                                    {0, {}},
                                                    {kCloseAll, "&Затваряне на всички"_cp1251}}};
constexpr std::array<TMenuLine, 2> kHelpMenu = {
    {{kModules, "&Модули..."_cp1251}, {kAbout, "&За програмата..."_cp1251}}};

template <std::size_t N>
HMENU AddMenu(HMENU bar, std::string_view caption, const std::array<TMenuLine, N>& lines) {
    const HMENU menu = CreatePopupMenu();
    for (const TMenuLine& line : lines) {
        if (line.command == 0) {
            AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
        } else {
            AppendMenuW(menu, MF_STRING, static_cast<UINT_PTR>(line.command),
                        Wide(line.caption).c_str());
        }
    }
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(menu), Wide(caption).c_str());
    return menu;
}

constexpr std::string_view kTitle = "Търговска система"_cp1251;

}  // namespace

TTradeHostForm::TTradeHostForm(std::filesystem::path program) : program_(std::move(program)) {
    InitCommonControlClasses();
    TFoundModules found = FindModules(program_.parent_path() / "Operations");
    for (TOperationModule& module : found.modules)
        operations_.push_back({std::move(module)});
    refused_.assign(found.refused.begin(), found.refused.end());

    TWindowOptions options;
    options.className = L"TTradeHostForm";
    options.name = "TradeHostForm";
    options.caption = kTitle;
    options.style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
    options.width = 1100;
    options.height = 760;
    MakeWindow(options);
    MakeMenu();
    MakeClient();
    ShowConnectionState();
}

TTradeHostForm::~TTradeHostForm() {
    Destroy();
}

void TTradeHostForm::MakeMenu() {
    menu_.Reset(CreateMenu());
    AddMenu(menu_.Get(), "&Файл"_cp1251, kFileMenu);
    operationsMenu_ = AddMenu(menu_.Get(), "&Операции"_cp1251, std::array<TMenuLine, 0>{});
    windowsMenu_ = AddMenu(menu_.Get(), "&Прозорци"_cp1251, kWindowsMenu);
    AddMenu(menu_.Get(), "По&мощ"_cp1251, kHelpMenu);
    UINT_PTR command = kFirstOperation;
    for (const TOperation& operation : operations_)
        AppendMenuW(operationsMenu_, MF_STRING, command++, Wide(operation.module.Title()).c_str());
    if (operations_.empty())
        AppendMenuW(operationsMenu_, MF_STRING | MF_GRAYED, 0,
                    Wide("Няма модули в папка Operations"_cp1251).c_str());
    SetMenu(Handle(), menu_.Get());
}

void TTradeHostForm::MakeClient() {
    CLIENTCREATESTRUCT create{windowsMenu_, kFirstChild};
    client_ = CreateWindowExW(WS_EX_CLIENTEDGE, L"MDICLIENT", nullptr,
                              WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_VSCROLL | WS_HSCROLL, 0,
                              0, 0, 0, Handle(), nullptr, ModuleInstance(), &create);
    statusBar_ =
        CreateWindowExW(0, STATUSCLASSNAMEW, nullptr, WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0,
                        0, 0, Handle(), nullptr, ModuleInstance(), nullptr);
    if (client_ == nullptr || statusBar_ == nullptr)
        throw TWindowError(SystemErrorText(GetLastError()));
    Layout();
}

void TTradeHostForm::Layout() const {
    if (client_ == nullptr || statusBar_ == nullptr) return;
    SendMessageW(statusBar_, WM_SIZE, 0, 0);
    RECT area{};
    RECT bar{};
    GetClientRect(Handle(), &area);
    GetWindowRect(statusBar_, &bar);
    MoveWindow(client_, 0, 0, area.right, area.bottom - (bar.bottom - bar.top), TRUE);
}

LRESULT TTradeHostForm::HandleMessage(const TMessage& message) {
    if (HandleCompletion(message.id)) return 0;
    switch (message.id) {
        case WM_SIZE:
            Layout();
            return 0;
        case WM_COMMAND:
            if (HandleCommand(LOWORD(message.wParam))) return 0;
            break;
        case WM_CLOSE:
            if (CloseChildren()) Destroy();
            return 0;
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        default:
            break;
    }
    return DefaultProc(message);
}

LRESULT TTradeHostForm::DefaultProc(const TMessage& message) {
    return DefFrameProcW(Handle(), client_, message.id, message.wParam, message.lParam);
}

bool TTradeHostForm::HandleCommand(int id) {
    const int place = id - kFirstOperation + 1;
    if (place >= 1 && place <= static_cast<int>(operations_.size())) {
        StartOperation(place);
        return true;
    }
    switch (id) {
        case kConnect:
            Connect();
            return true;
        case kDisconnect:
            Disconnect();
            return true;
        case kExit:
            PostMessageW(Handle(), WM_CLOSE, 0, 0);
            return true;
        case kCascade:
            SendMessageW(client_, WM_MDICASCADE, 0, 0);
            return true;
        case kTileHorizontally:
            SendMessageW(client_, WM_MDITILE, MDITILE_HORIZONTAL, 0);
            return true;
        case kTileVertically:
            SendMessageW(client_, WM_MDITILE, MDITILE_VERTICAL, 0);
            return true;
        case kCloseAll:
            CloseChildren();
            return true;
        case kModules:
            ShowModules();
            return true;
        case kAbout:
            ShowAbout();
            return true;
        default:
            return false;
    }
}

void TTradeHostForm::Connect() {
    if (AnyRunning()) {
        ShowWarning(Handle(),
                    "Затворете прозорците на операциите, преди да смените връзката."_cp1251);
        return;
    }
    try {
        connection_.Open(
            ReadHostSettings(std::filesystem::path(program_).replace_extension(".ini")));
    } catch (const std::exception& error) {
        ShowConnectionState();
        ShowError(Handle(), error.what());
    }
    ShowConnectionState();
}

void TTradeHostForm::Disconnect() {
    if (AnyRunning()) {
        ShowWarning(Handle(),
                    "Затворете прозорците на операциите, преди да прекъснете връзката."_cp1251);
        return;
    }
    connection_.Close();
    ShowConnectionState();
}

void TTradeHostForm::ShowConnectionState() const {
    const std::string_view text =
        connection_.IsOpen() ? "Има връзка с базата данни"_cp1251
                             : "Няма връзка с базата данни (Файл, Връзка с базата данни)"_cp1251;
    SendMessageW(statusBar_, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(Wide(text).c_str()));
    EnableMenuItem(menu_.Get(), kDisconnect, connection_.IsOpen() ? MF_ENABLED : MF_GRAYED);
}

void TTradeHostForm::StartOperation(int place) {
    if (place < 1 || place > static_cast<int>(operations_.size())) {
        ShowError(Handle(), "Няма операция с такъв номер."_cp1251);
        return;
    }
    if (!connection_.IsOpen()) {
        ShowWarning(
            Handle(),
            "Няма връзка с базата данни. Изберете \"Файл\", \"Връзка с базата данни\"."_cp1251);
        return;
    }
    TOperation& operation = operations_[static_cast<std::size_t>(place - 1)];
    operation.database = {sizeof(THostDatabase), connection_.HandleCell(),
                          connection_.ClientLibrary()};
    SetRunning(operation, true);
    operation.module.Start(Handle(), place, operation.messageId, operation.database,
                           MakePrintProc(Handle()));
}

// A completion message may come twice, and while the operation is still being started.
bool TTradeHostForm::HandleCompletion(UINT message) {
    for (TOperation& operation : operations_) {
        if (operation.messageId == 0 || operation.messageId != message) continue;
        SetRunning(operation, false);
        return true;
    }
    return false;
}

void TTradeHostForm::SetRunning(TOperation& operation, bool running) {
    operation.running = running;
    for (std::size_t i = 0; i < operations_.size(); ++i) {
        if (&operations_[i] == &operation)
            EnableMenuItem(operationsMenu_, static_cast<UINT>(i),
                           MF_BYPOSITION | (running ? MF_GRAYED : MF_ENABLED));
    }
}

bool TTradeHostForm::AnyRunning() const {
    for (const TOperation& operation : operations_)
        if (operation.running) return true;
    return false;
}

// Asks every child to close; false when one stays.
bool TTradeHostForm::CloseChildren() {
    HWND child = GetWindow(client_, GW_CHILD);
    while (child != nullptr) {
        SendMessageW(child, WM_CLOSE, 0, 0);
        if (IsWindow(child) != 0) return false;
        child = GetWindow(client_, GW_CHILD);
    }
    return true;
}

void TTradeHostForm::ShowModules() const {
    std::string text("Папка: "_cp1251);
    text += Narrow((program_.parent_path() / "Operations").wstring());
    for (const TOperation& operation : operations_)
        text += "\r\n- " + operation.module.Title();
    if (!refused_.empty()) text += "\r\n\r\nНеизползваеми файлове:"_cp1251;
    for (const std::string& line : refused_)
        text += "\r\n- " + line;
    ShowInformation(Handle(), text);
}

void TTradeHostForm::ShowAbout() const {
    ShowInformation(
        Handle(),
        "Малка търговска система за операционни модули.\r\nНастройките са във файла TradeHost.ini до програмата, модулите - в папка Operations."_cp1251);
}

}  // namespace tolvane::host
