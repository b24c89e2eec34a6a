#include "host/TradeHostForm.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <utility>

#include "config/IniFile.h"
#include "config/WindowPlace.h"
#include "host/DatabaseForm.h"
#include "host/FileVersion.h"
#include "host/PrintService.h"
#include "host/SqlScript.h"
#include "system/SystemError.h"
#include "system/TemporaryFile.h"
#include "text/Cp1251.h"
#include "text/Failure.h"
#include "window/MessageBoxes.h"
#include "window/Module.h"
#include "window/Placement.h"
#include "window/VisualStyle.h"
#include "window/WideText.h"

namespace tolvane::host {
namespace {

constexpr std::string_view kTitle = "Търговска система (демо)"_cp1251;

// Where the window was, in the settings.
constexpr std::string_view kPlaceSection = "Window";
constexpr std::string_view kPlaceName = "Main";

// In the folder "demo" beside the program: what makes the demo shop, and the shop itself.
constexpr std::array kDemoScripts = {"schema.sql", "shop.sql"};
constexpr const char* kDemoFile = "shop.fdb";
constexpr const char* kUnfinishedDemoFile = "shop.fdb.new";

// At 96 dots per inch.
constexpr int kWidth = 1100;
constexpr int kHeight = 760;

// In the middle of the screen, and not larger than that.
RECT FirstPlace() {
    RECT screen{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
    const LONG width = std::min<LONG>(TDpi::System().Scale(kWidth), screen.right - screen.left);
    const LONG height = std::min<LONG>(TDpi::System().Scale(kHeight), screen.bottom - screen.top);
    const LONG left = (screen.left + screen.right - width) / 2;
    const LONG top = (screen.top + screen.bottom - height) / 2;
    return {left, top, left + width, top + height};
}

class TWaitCursor {
public:
    TWaitCursor() : before_(SetCursor(LoadCursorW(nullptr, IDC_WAIT))) {}
    TWaitCursor(const TWaitCursor&) = delete;
    TWaitCursor& operator=(const TWaitCursor&) = delete;
    ~TWaitCursor() { SetCursor(before_); }

private:
    HCURSOR before_;
};

}  // namespace

TTradeHostForm::TTradeHostForm(std::filesystem::path program) : program_(std::move(program)) {
    InitCommonControlClasses();
    operations_.Load(program_.parent_path() / "Operations");
    const RECT place = FirstPlace();
    MakeWindow({.className = L"TTradeHostForm",
                .name = "TradeHostForm",
                .caption = kTitle,
                .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                .x = place.left,
                .y = place.top,
                .width = place.right - place.left,
                .height = place.bottom - place.top});
    AddMenu();
    AddClient();
    ShowConnectionState();
}

TTradeHostForm::~TTradeHostForm() {
    Destroy();
}

std::filesystem::path TTradeHostForm::SettingsFile() const {
    return std::filesystem::path(program_).replace_extension(".ini");
}

std::optional<TIniDocument> TTradeHostForm::ReadSettings() const {
    try {
        return ReadIniFile(SettingsFile());
    } catch (const TFileError& error) {
        ShowError(Handle(), error.what());
        return std::nullopt;
    }
}

void TTradeHostForm::Remember(const std::function<void(TIniDocument&)>& change) const noexcept {
    try {
        UpdateIniFile(SettingsFile(), change);
    } catch (...) {  // NOLINT(bugprone-empty-catch): the next start shows what was there before
    }
}

void TTradeHostForm::RememberPlace() const noexcept {
    Remember([this](TIniDocument& settings) {
        SaveWindowPlace(PlaceOf(Handle()), kPlaceSection, kPlaceName, settings);
    });
}

void TTradeHostForm::Show(int show) {
    std::optional<TWindowPlace> place;
    try {
        const TIniDocument settings = ReadIniFile(SettingsFile());
        place = LoadWindowPlace(settings, kPlaceSection, kPlaceName);
        ShowLastDatabases(menu_, LastDatabases(settings));
    } catch (const TFileError&) {  // NOLINT(bugprone-empty-catch): Connect shows it
    }
    if (place) MoveTo(Handle(), *place);
    const bool usual = show == SW_SHOWNORMAL || show == SW_SHOWDEFAULT;
    ShowWindow(Handle(), usual && place && place->maximized ? SW_SHOWMAXIMIZED : show);
    UpdateWindow(Handle());
}

void TTradeHostForm::AddMenu() {
    menu_ = MakeHostMenu(operations_.Titles());
    SetMenu(Handle(), menu_.bar);
}

void TTradeHostForm::AddClient() {
    CLIENTCREATESTRUCT create{menu_.windows, kFirstChild};
    client_ = CreateWindowExW(WS_EX_CLIENTEDGE, L"MDICLIENT", nullptr,
                              WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_VSCROLL | WS_HSCROLL, 0,
                              0, 0, 0, Handle(), nullptr, ModuleInstance(), &create);
    statusBar_ =
        CreateWindowExW(0, STATUSCLASSNAMEW, nullptr, WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0,
                        0, 0, Handle(), nullptr, ModuleInstance(), nullptr);
    if (client_ == nullptr || statusBar_ == nullptr)
        throw TWindowError(WindowsErrorText(GetLastError()));
    SetComponentName(statusBar_, "StatusBar");
    Layout();
}

void TTradeHostForm::Layout() const {
    if (client_ == nullptr || statusBar_ == nullptr) return;
    SendMessageW(statusBar_, WM_SIZE, 0, 0);
    // Without this, the size grip would also stay visible at its old position.
    InvalidateRect(statusBar_, nullptr, TRUE);
    RECT area{};
    RECT bar{};
    GetClientRect(Handle(), &area);
    GetWindowRect(statusBar_, &bar);
    MoveWindow(client_, 0, 0, area.right, area.bottom - (bar.bottom - bar.top), TRUE);
}

void TTradeHostForm::FollowDpi(TDpi dpi, const RECT& place) {
    TOwnedFont font = MakeStatusFont(dpi);
    SendMessageW(statusBar_, WM_SETFONT, reinterpret_cast<WPARAM>(font.Get()), FALSE);
    statusFont_ = std::move(font);
    SetWindowPos(Handle(), nullptr, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
    Layout();
}

LRESULT TTradeHostForm::HandleMessage(const TMessage& message) {
    if (HandleCompletion(message.id)) return 0;
    switch (message.id) {
        case WM_SIZE:
            Layout();
            return 0;
        case WM_DPICHANGED:
            FollowDpi(TDpi(LOWORD(message.wParam)), *reinterpret_cast<RECT*>(message.lParam));
            return 0;
        case WM_COMMAND:
            if (HandleCommand(LOWORD(message.wParam))) return 0;
            break;
        case WM_QUERYENDSESSION:
            return CloseChildren() ? TRUE : FALSE;
        case WM_ENDSESSION:
            if (message.wParam != 0) RememberPlace();
            return 0;
        case WM_CLOSE:
            if (!CloseChildren()) return 0;
            RememberPlace();
            Destroy();
            return 0;
        case WM_DESTROY:
            RemoveComponentNames(Handle());
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
    const int number = id - kFirstOperation + 1;
    if (operations_.Has(number)) {
        StartOperation(number);
        return true;
    }
    const int last = id - kFirstDatabase;
    if (last >= 0 && last < static_cast<int>(kLastDatabases)) {
        OpenLast(static_cast<std::size_t>(last));
        return true;
    }
    switch (id) {
        case kConnect:
            Connect();
            return true;
        case kChooseDatabase:
            ChooseDatabase();
            return true;
        case kDisconnect:
            Disconnect();
            return true;
        case kExit:
            PostMessageW(Handle(), WM_CLOSE, 0, 0);
            return true;
        case kModules:
            ShowModules();
            return true;
        case kAbout:
            ShowAbout();
            return true;
        default:
            return HandleWindowCommand(id);
    }
}

bool TTradeHostForm::HandleWindowCommand(int id) {
    switch (id) {
        case kCascade:
            SendMessageW(client_, WM_MDICASCADE, 0, 0);
            return true;
        case kTileHorizontally:
            SendMessageW(client_, WM_MDITILE, MDITILE_HORIZONTAL, 0);
            return true;
        case kTileVertically:
            SendMessageW(client_, WM_MDITILE, MDITILE_VERTICAL, 0);
            return true;
        case kArrangeIcons:
            SendMessageW(client_, WM_MDIICONARRANGE, 0, 0);
            return true;
        case kCloseAll:
            CloseChildren();
            return true;
        default:
            return false;
    }
}

// A module uses the connection until its operation has ended.
bool TTradeHostForm::MayChangeConnection() const {
    const bool running = operations_.IsAnyRunning();
    if (running)
        ShowWarning(Handle(),
                    "Затворете прозорците на операциите, преди да смените връзката."_cp1251);
    return !running;
}

void TTradeHostForm::Connect() {
    if (!MayChangeConnection()) return;
    const std::optional<TIniDocument> document = ReadSettings();
    if (!document) return;
    const THostSettings settings = ReadHostSettings(*document);
    if (settings.database.empty()) {
        ChooseDatabase();
    } else {
        OpenDatabase(settings);
    }
}

void TTradeHostForm::ChooseDatabase() {
    if (!MayChangeConnection()) return;
    const std::optional<TIniDocument> document = ReadSettings();
    if (!document) return;
    THostSettings settings = ReadHostSettings(*document);
    const TDemoOffer demo = DemoOffer(settings);
    while (true) {
        TDatabaseForm form(Handle(), settings, demo);
        const int answer = form.ShowModal();
        if (answer != IDOK && answer != TDatabaseForm::kDemoShop) return;
        const bool isDemo = answer == TDatabaseForm::kDemoShop;
        const THostSettings chosen = isDemo ? DemoLogin(settings) : form.Settings();
        if ((!isDemo || MakeDemo(chosen)) && OpenDatabase(chosen)) {
            Remember([&](TIniDocument& changed) { WriteLogin(chosen, changed); });
            return;
        }
        if (!isDemo) settings = chosen;
    }
}

std::filesystem::path TTradeHostForm::DemoFolder() const {
    return program_.parent_path() / "demo";
}

// Only where there is no database yet.
TDemoOffer TTradeHostForm::DemoOffer(const THostSettings& settings) {
    const auto isThere = [this](const char* script) {
        std::error_code ignored;
        return std::filesystem::exists(DemoFolder() / script, ignored);
    };
    if (!settings.database.empty() || connection_.IsOpen() ||
        !std::ranges::all_of(kDemoScripts, isThere))
        return TDemoOffer::None;
    return connection_.FindEngine(settings, program_.parent_path()) ? TDemoOffer::Ready
                                                                    : TDemoOffer::NeedsEngine;
}

THostSettings TTradeHostForm::DemoLogin(const THostSettings& settings) const {
    THostSettings demo = settings;
    demo.database = Narrow((DemoFolder() / kDemoFile).wstring());
    return demo;
}

// Under another name first, so that a shop that is there is a whole one.
bool TTradeHostForm::MakeDemo(const THostSettings& settings) {
    const std::filesystem::path file = DemoFolder() / kDemoFile;
    std::string failure;
    try {
        if (std::filesystem::exists(file)) return true;
        const TWaitCursor wait;
        ShowStatus("Създаване на демо магазина..."_cp1251);
        std::vector<std::string> statements;
        for (const char* const script : kDemoScripts)
            for (std::string& each :
                 SqlStatements(FromUtf8(ReadWholeFile(DemoFolder() / script).value_or(""))))
                statements.push_back(std::move(each));
        const std::filesystem::path made = DemoFolder() / kUnfinishedDemoFile;
        std::filesystem::remove(made);
        THostSettings unfinished = settings;
        unfinished.database = Narrow(made.wstring());
        connection_.Make(unfinished, program_.parent_path(), statements);
        std::filesystem::rename(made, file);
    } catch (const std::exception& error) {
        failure = FailureText(error);
    }
    ShowConnectionState();
    if (!failure.empty()) ShowError(Handle(), failure);
    return failure.empty();
}

void TTradeHostForm::OpenLast(std::size_t number) {
    if (!MayChangeConnection()) return;
    const std::optional<TIniDocument> document = ReadSettings();
    if (!document) return;
    const std::vector<std::string> databases = LastDatabases(*document);
    if (number >= databases.size()) return;
    THostSettings settings = ReadHostSettings(*document);
    settings.database = databases[number];
    if (OpenDatabase(settings))
        Remember([&](TIniDocument& changed) { WriteLogin(settings, changed); });
}

bool TTradeHostForm::OpenDatabase(const THostSettings& settings) {
    std::string failure;
    try {
        const TWaitCursor wait;
        ShowStatus("Свързване с базата данни..."_cp1251);
        connection_.Open(settings, program_.parent_path());
    } catch (const std::exception& error) {
        failure = MessageOf(error);
    }
    ShowConnectionState();
    if (!failure.empty()) {
        ShowError(Handle(), failure);
        return false;
    }
    Remember([&](TIniDocument& document) {
        AddLastDatabase(settings.database, document);
        ShowLastDatabases(menu_, LastDatabases(document));
    });
    return true;
}

void TTradeHostForm::Disconnect() {
    if (!MayChangeConnection()) return;
    connection_.Close();
    ShowConnectionState();
}

void TTradeHostForm::ShowStatus(std::string_view text) const {
    SendMessageW(statusBar_, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(Wide(text).c_str()));
    UpdateWindow(statusBar_);
}

void TTradeHostForm::ShowConnectionState() const {
    if (connection_.IsOpen()) {
        std::string text("Свързана база: "_cp1251);
        ShowStatus(text += connection_.Database());
    } else {
        ShowStatus("Няма връзка с базата данни"_cp1251);
    }
    EnableMenuItem(menu_.connection, kDisconnect, connection_.IsOpen() ? MF_ENABLED : MF_GRAYED);
}

void TTradeHostForm::StartOperation(int number) {
    if (!operations_.Has(number)) {
        std::string text("Няма операция с номер "_cp1251);
        ShowError(Handle(), text += std::to_string(number) + ".");
        return;
    }
    if (!connection_.IsOpen()) {
        ShowWarning(
            Handle(),
            "Няма връзка с базата данни. Изберете \"Връзка с базата\", \"Свързване\"."_cp1251);
        return;
    }
    const THostDatabase database = {sizeof(THostDatabase), connection_.HandleCell(),
                                    connection_.ClientLibrary()};
    ShowRunning(number, true);
    operations_.Start(number, Handle(), database, MakePrintProc(Handle()));
}

bool TTradeHostForm::HandleCompletion(UINT message) {
    const int number = operations_.TakeCompletion(message);
    if (number != 0) ShowRunning(number, false);
    return number != 0;
}

void TTradeHostForm::ShowRunning(int number, bool running) const {
    EnableMenuItem(menu_.operations, static_cast<UINT>(number - 1),
                   MF_BYPOSITION | (running ? MF_GRAYED : MF_ENABLED));
}

// Asks every child to close; returns false when one stays.
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
    text += "\r\n\r\nОперации:"_cp1251;
    int number = 0;
    const std::vector<std::string> titles = operations_.Titles();
    for (const std::string& title : titles)
        text += "\r\n" + std::to_string(++number) + ". " + title;
    if (titles.empty()) text += "\r\nняма"_cp1251;
    if (!operations_.Refused().empty()) text += "\r\n\r\nФайлове, които не са операции:"_cp1251;
    for (const std::string& line : operations_.Refused())
        text += "\r\n- " + line;
    ShowInformation(Handle(), text);
}

void TTradeHostForm::ShowAbout() const {
    std::string text(kTitle);
    text += " " TOLVANE_VERSION;
    text +=
        "\r\nМалка търговска система за изпробване на операционни модули. Настройките са във файла TradeHost.ini до програмата, модулите са в папка Operations до нея."_cp1251;
    text += "\r\n\r\nМодули:"_cp1251;
    const std::vector<std::filesystem::path> files = operations_.Files();
    for (const std::filesystem::path& file : files)
        text += "\r\n" + Narrow(file.filename().wstring()) + " " + FileVersion(file);
    if (files.empty()) text += "\r\nняма"_cp1251;
    text += "\r\n\r\nКлиентска библиотека:\r\n"_cp1251;
    const std::string client = connection_.ClientVersion();
    text += client.empty() ? std::string("още не е заредена"_cp1251)
                           : std::string(connection_.ClientLibrary()) + " " + client;
    ShowInformation(Handle(), text);
}

}  // namespace tolvane::host
