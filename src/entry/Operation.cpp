#include "entry/Operation.h"

#include <array>
#include <stdexcept>
#include <string>

#include "articles/forms/ColListUnit.h"
#include "articles/forms/PLUScaleListUnit.h"
#include "database/ClientLibrary.h"
#include "entry/ModuleListForm.h"
#include "entry/ModuleState.h"
#include "settings/forms/ScaleComunicationUnit.h"
#include "settings/forms/uFindDevices.h"
#include "settings/forms/uHint.h"
#include "settings/forms/uScaleSettings.h"
#include "system/ProcessMemory.h"
#include "text/Cp1251.h"
#include "text/Failure.h"
#include "upload/forms/SetPluUnit.h"
#include "window/InputBox.h"
#include "window/MessageBoxes.h"
#include "window/Window.h"

namespace tolvane {
namespace {

constexpr std::string_view kErrorTag = "Грешка :\r"_cp1251;

class TStartError : public std::runtime_error {
public:
    explicit TStartError(std::string_view text) : std::runtime_error(std::string(text)) {}
};

void Require(bool holds, std::string_view text) {
    if (!holds) throw TStartError(text);
}

bool IsOfThisThread(HWND window) {
    return GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId();
}

// The frame's MDI client. Throws when an argument from the host is wrong, before anything is made.
HWND CheckArguments(const TStartArguments& arguments) {
    Require(CanWrite(arguments.messageId, sizeof *arguments.messageId),
            "Липсва място за номера на съобщението за край (MessageId)."_cp1251);
    Require(IsWindow(arguments.appHandle) != 0,
            "Подаденият прозорец на приложението (AppHandle) не съществува."_cp1251);
    Require(IsWindow(arguments.mainForm) != 0,
            "Подаденият главен прозорец (MainForm) не съществува."_cp1251);
    Require(IsOfThisThread(arguments.mainForm),
            "Главният прозорец (MainForm) е на друга нишка."_cp1251);
    const HWND client = FindWindowExW(arguments.mainForm, nullptr, L"MDIClient", nullptr);
    Require(client != nullptr, "Главният прозорец (MainForm) не е MDI прозорец."_cp1251);
    const THostDatabase* database = arguments.database;
    constexpr std::string_view kNoDatabase =
        "Не е подадена връзка с базата данни (Database)."_cp1251;
    Require(CanRead(database, sizeof database->Size), kNoDatabase);
    if (database->Size != sizeof(THostDatabase))
        throw TStartError(
            std::string("Непознат размер на записа за базата данни (Database): "_cp1251) +
            std::to_string(database->Size));
    Require(CanRead(database, sizeof *database), kNoDatabase);
    Require(database->ClientLibrary == nullptr || CanReadText(database->ClientLibrary),
            kNoDatabase);
    Require(CanRead(database->Handle, sizeof(void*)) &&
                *static_cast<void**>(database->Handle) != nullptr,
            "Връзката с базата данни не е отворена."_cp1251);
    const TClientLibrary known(database->ClientLibrary);
    return client;
}

TElicomPluScaleListForm* FindListForm(HWND client) {
    for (HWND child = GetWindow(client, GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT)) {
        if (ComponentName(child) != kListFormName) continue;
        if (auto* form = dynamic_cast<TElicomPluScaleListForm*>(TWindow::FromHandle(child)))
            return form;
    }
    return nullptr;
}

void BringToFront(const TWindow& form, HWND client) {
    if (IsIconic(form.Handle()) != 0)
        SendMessageW(client, WM_MDIRESTORE, reinterpret_cast<WPARAM>(form.Handle()), 0);
    SendMessageW(client, WM_MDIACTIVATE, reinterpret_cast<WPARAM>(form.Handle()), 0);
}

// During each of these steps the user or the host may close the window.
void LoadForm(TElicomPluScaleListForm& form) {
    PumpMessages();
    const auto isOpen = [&] { return form.Handle() != nullptr; };
    if (isOpen()) form.Session().ReadBaseCurrency();
    if (isOpen()) form.Session().CheckDatabase();
    if (isOpen()) form.LoadArticles();
    if (!isOpen()) return;
    form.RebuildSearchMenu();
    form.FocusGrid();
}

// Shows the exception that is being handled. A window of another thread cannot be the owner: the
// box would disable it and wait for it.
void ShowStartFailure(const TStartArguments& arguments) noexcept {
    HWND owner = nullptr;
    for (const HWND window : {arguments.appHandle, arguments.mainForm}) {
        if (IsOfThisThread(window)) owner = window;
    }
    ShowCurrentException(kErrorTag, [&](std::string_view text) { ShowError(owner, text); });
}

// Runs `work`; shows its failure and returns false.
template <class Work>
bool Try(const TStartArguments& arguments, Work work) noexcept {
    try {
        work();
        return true;
    } catch (...) {
        ShowStartFailure(arguments);
    }
    return false;
}

void RegisterCompletion(const TStartArguments& arguments) {
    TModuleState& state = ModuleState();
    state.operationNo = arguments.operationNo;
    // An open window of an earlier start still needs a valid handle to report its end.
    if (IsWindow(arguments.appHandle) != 0) state.appHandle = arguments.appHandle;
    state.messageId =
        RegisterWindowMessageA(("DLL_" + std::to_string(arguments.operationNo)).c_str());
    if (CanWrite(arguments.messageId, sizeof *arguments.messageId))
        *arguments.messageId = state.messageId;
    state.printProc = arguments.printProc;
}

// After a failed start no list window stays open in that main window, not even one of an earlier
// start.
void CloseListForm(HWND mainForm) {
    const HWND client = FindWindowExW(mainForm, nullptr, L"MDIClient", nullptr);
    if (client == nullptr || !IsOfThisThread(client)) return;
    if (TElicomPluScaleListForm* form = FindListForm(client)) form->CloseAtOnce();
}

// The list window of an MDI frame, while it is being made.
class TOpening {
public:
    explicit TOpening(HWND client) : before_(ModuleState().openingIn) {
        ModuleState().openingIn = client;
    }
    TOpening(const TOpening&) = delete;
    TOpening& operator=(const TOpening&) = delete;
    ~TOpening() { ModuleState().openingIn = before_; }

private:
    HWND before_;
};

TElicomPluScaleListForm* MakeListForm(HWND client) {
    const TOpening opening(client);
    return new TModuleListForm(client);
}

// While the list is loading or has a window of its own in front of it, a repeated start only brings
// it to the front, and while it is being made does nothing. Throws why the start failed.
void OpenAndLoad(const TStartArguments& arguments) {
    const HWND client = CheckArguments(arguments);
    if (ModuleState().openingIn == client) return;
    TElicomPluScaleListForm* form = FindListForm(client);
    const bool isNew = form == nullptr;
    if (isNew) form = MakeListForm(client);
    const TWindow::TKeep keep(*form);
    if (!isNew) BringToFront(*form, client);
    if (form->Handle() == nullptr || form->Session().IsBusy()) return;
    form->Connect(arguments.database->ClientLibrary, arguments.database->Handle);
    LoadForm(*form);
}

void RunStart(const TStartArguments& arguments) {
    if (Try(arguments, [&] { OpenAndLoad(arguments); })) return;
    if (IsWindow(arguments.mainForm) != 0) CloseListForm(arguments.mainForm);
    PostCompletion();
}

}  // namespace

void StartOperation(const TStartArguments& arguments) {
    const TModuleHold hold(arguments.mainForm);
    RegisterCompletion(arguments);
    RunStart(arguments);
}

void ReleaseWindowClasses() noexcept {
    constexpr std::array kClasses = {
        kListFormClass,          kColListFormClass,     kWaitFormClass,
        kInputBoxClass,          kSetPluFormClass,      kScaleComunicationFormClass,
        kScaleSettingsFormClass, kFindDevicesFormClass, kHintFormClass};
    for (const wchar_t* name : kClasses)
        UnregisterWindowClass(name);
}

}  // namespace tolvane
