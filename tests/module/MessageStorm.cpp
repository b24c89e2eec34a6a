#include "tests/module/MessageStorm.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "tests/support/module/Commands.h"
#include "tests/support/window/Controls.h"

namespace tolvane::test {
namespace {

constexpr const wchar_t* kHelperClass = L"TestMessageStorm";
constexpr UINT kMark = WM_APP + 1;     // its number
constexpr UINT kHoldKey = WM_APP + 2;  // key, down
constexpr UINT kReleaseKeys = WM_APP + 3;

constexpr int kEnoughRoom = 40;

constexpr const wchar_t* kFrame = L"TestHostFrame";
constexpr const wchar_t* kList = L"TElicomPluScaleListForm";
constexpr const wchar_t* kRun = L"TSetPluForm";
constexpr const wchar_t* kConnection = L"TfrmScaleSettings";
constexpr const wchar_t* kWait = L"TWaitForm";
constexpr const wchar_t* kMenu = L"#32768";

constexpr std::array kKeys = {
    VK_F3,   VK_F5,    VK_UP,     VK_DOWN,  VK_PRIOR,  VK_NEXT,  VK_HOME,   VK_END,     VK_SPACE,
    VK_LEFT, VK_RIGHT, VK_TAB,    VK_TAB,   VK_RETURN, VK_BACK,  VK_ESCAPE, VK_F4,      VK_F1,
    VK_F10,  VK_APPS,  VK_DELETE, int{'A'}, int{'F'},  int{'1'}, VK_ADD,    VK_MULTIPLY};
constexpr auto kUp = static_cast<LPARAM>(0xC0000001);
constexpr std::array kHeldKeys = {VK_CONTROL, VK_SHIFT, VK_MENU};

// The dialog of a scale's connection gets messages in these controls alone.
constexpr std::array<std::string_view, 9> kHarmless = {
    "frmScaleSettings", "edtScaleNumb", "udScaleNumb", "edtScaleName", "cbScaleType",
    "cbbEncoding",      "btnHint",      "btnOk",       "btnCancel"};

constexpr std::array<UINT, 14> kNews = {
    WM_SYSCOLORCHANGE, WM_SETTINGCHANGE, WM_FONTCHANGE,  WM_TIMECHANGE,     WM_CANCELMODE,
    WM_CAPTURECHANGED, WM_PAINT,         WM_NULL,        WM_THEMECHANGED,   WM_KILLFOCUS,
    WM_SETFOCUS,       WM_NCACTIVATE,    WM_ACTIVATEAPP, WM_QUERYENDSESSION};

constexpr std::array<WPARAM, 9> kSystemCommands = {SC_MAXIMIZE,   SC_MINIMIZE, SC_RESTORE,
                                                   SC_NEXTWINDOW, SC_KEYMENU,  SC_MOVE,
                                                   SC_SIZE,       SC_RESTORE,  SC_RESTORE};

constexpr std::array<int, 6> kEdges = {HTCAPTION, HTMINBUTTON, HTMAXBUTTON,
                                       HTVSCROLL, HTHSCROLL,   HTBOTTOMRIGHT};

bool IsEdit(const std::wstring& className) {
    return className == L"Edit" || className == L"ComboBox";
}

}  // namespace

enum class TMessageStorm::TKind : std::uint8_t {
    Command,
    Key,
    SystemKey,
    HeldKey,
    Character,
    Click,
    OtherMouse,
    Wheel,
    Scroll,
    Size,
    Activation,
    Timer,
    SystemCommand,
    News,
    Mdi,
    Button,
    Answer,
    Close
};

TMessageStorm::TMessageStorm(std::uint32_t seed, DWORD milliseconds, HWND spared)
    : draw_(seed),
      milliseconds_(milliseconds),
      spared_(spared),
      helperWindow_(kHelperClass, &Procedure, this) {
    thread_ = std::thread([this] { Run(); });
}

TMessageStorm::~TMessageStorm() {
    over_ = true;
    if (thread_.joinable()) thread_.join();
}

bool TMessageStorm::IsOver() {
    ++turns_;
    return over_;
}

LRESULT CALLBACK TMessageStorm::Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam) {
    auto* self = TMessageWindow::ObjectOf<TMessageStorm>(window);
    std::array<BYTE, 256> keys{};
    switch (id) {
        case kMark:
            self->room_ = self->callRoom_.Left(kEnoughRoom);
            self->read_ = static_cast<int>(wParam);
            return 0;
        case kHoldKey:
            GetKeyboardState(keys.data());
            keys.at(wParam) = lParam != 0 ? 0x80 : 0;
            SetKeyboardState(keys.data());
            return 0;
        case kReleaseKeys:
            SetKeyboardState(keys.data());
            return 0;
        default:
            return DefWindowProcW(window, id, wParam, lParam);
    }
}

// A run over all articles.
void TMessageStorm::BeginRun() {
    constexpr int kMostRounds = 1000;
    HWND save = nullptr;
    for (int round = 0; round < kMostRounds && save == nullptr && !over_; ++round) {
        FindTargets();
        for (const TTarget& target : targets_) {
            if (front_ == nullptr && target.className == kList && round % 10 == 0)
                Post(target.window, WM_COMMAND, kWriteAll);
            if (target.top == front_ && ComponentNameOf(target.window) == "SaveBtn")
                save = target.window;
        }
        Sleep(20);
    }
    Post(save, BM_CLICK);
}

void TMessageStorm::Run() {
    BeginRun();
    const DWORD start = GetTickCount();
    while (!over_ && GetTickCount() - start < milliseconds_)
        Blow();
    ending_ = true;
    CalmDown();
    over_ = true;
}

void TMessageStorm::Blow() {
    // By how often: a storm that mostly closes things reaches nothing.
    static constexpr std::array kKinds = {
        TKind::Command,    TKind::Command,   TKind::Key,          TKind::Key,
        TKind::Key,        TKind::Key,       TKind::Key,          TKind::SystemKey,
        TKind::HeldKey,    TKind::Character, TKind::Character,    TKind::Click,
        TKind::Click,      TKind::Click,     TKind::Click,        TKind::OtherMouse,
        TKind::OtherMouse, TKind::Wheel,     TKind::Wheel,        TKind::Scroll,
        TKind::Scroll,     TKind::Size,      TKind::Activation,   TKind::Timer,
        TKind::Timer,      TKind::News,      TKind::News,         TKind::Mdi,
        TKind::Button,     TKind::Button,    TKind::Button,       TKind::Answer,
        TKind::Answer,     TKind::Close,     TKind::SystemCommand};
    constexpr std::size_t kLongestGust = 60;
    FindTargets();
    if (targets_.empty()) {
        Sleep(1);
        return;
    }
    for (unsigned left = draw_(kLongestGust) + 1; left > 0; --left)
        PostKind(kKinds.at(draw_(kKinds.size())), Draw());
    WaitUntilRead();
    if (room_ < kEnoughRoom) MakeRoom();
}

BOOL CALLBACK TMessageStorm::AddTop(HWND window, LPARAM parameter) {
    auto& self = *reinterpret_cast<TMessageStorm*>(parameter);
    const std::wstring className = ClassOf(window);
    // Nobody can reach the wait window, which shows itself and hides.
    if (window == self.spared_ || className == L"IME" || className == kWait) return TRUE;
    const std::size_t first = self.targets_.size();
    self.Add(window, window);
    EnumChildWindows(window, &AddChild, parameter);
    const bool isFront = className != kFrame && IsWindowVisible(window) != 0 &&
                         IsWindowEnabled(window) != 0 && className != TOOLTIPS_CLASSW &&
                         (className != kMenu || self.IsMenuOpen());
    if (!isFront || self.front_ != nullptr) return TRUE;
    self.front_ = window;
    for (std::size_t i = first; i < self.targets_.size(); ++i)
        self.inFront_.push_back(i);
    return TRUE;
}

// Wine may leave a menu's window on the screen when the menu has ended.
bool TMessageStorm::IsMenuOpen() const {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    constexpr DWORD kMenuOpen = GUI_INMENUMODE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE;
    return GetGUIThreadInfo(watched_, &info) != 0 && (info.flags & kMenuOpen) != 0;
}

BOOL CALLBACK TMessageStorm::AddChild(HWND window, LPARAM parameter) {
    reinterpret_cast<TMessageStorm*>(parameter)->Add(window, GetAncestor(window, GA_ROOT));
    return TRUE;
}

void TMessageStorm::Add(HWND window, HWND top) {
    TTarget target{window, top, ClassOf(window)};
    const bool isTop = window == top;
    // To restore or maximise a hidden window would show it.
    target.isForm = target.className == kFrame || target.className == kList ||
                    (isTop && IsWindowVisible(window) != 0 && !ComponentNameOf(window).empty());
    if (ClassOf(top) == kConnection &&
        std::find(kHarmless.begin(), kHarmless.end(), ComponentNameOf(window)) == kHarmless.end())
        return;
    targets_.push_back(std::move(target));
}

void TMessageStorm::FindTargets() {
    targets_.clear();
    inFront_.clear();
    front_ = nullptr;
    EnumThreadWindows(watched_, &AddTop, reinterpret_cast<LPARAM>(this));
}

const TMessageStorm::TTarget& TMessageStorm::Draw() {
    const bool front = !inFront_.empty() && draw_(4) != 0;
    return front ? targets_[inFront_[draw_(inFront_.size())]] : targets_[draw_(targets_.size())];
}

void TMessageStorm::Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (PostMessageW(window, message, wParam, lParam) != 0) ++messages_;
}

void TMessageStorm::PostKind(TKind kind, const TTarget& to) {
    switch (kind) {
        case TKind::Command:
            return PostCommand(to);
        case TKind::Key:
            return PostKey(to, false);
        case TKind::SystemKey:
            return PostKey(to, true);
        case TKind::HeldKey:
            return Post(helper_, kHoldKey, static_cast<WPARAM>(kHeldKeys.at(draw_(3))),
                        draw_(3) == 0 ? 1 : 0);
        case TKind::Character:
            return PostCharacter(to);
        case TKind::Click:
            return PostClick(to);
        case TKind::OtherMouse:
            return PostOtherMouse(to);
        case TKind::Wheel:
            return Post(to.window, WM_MOUSEWHEEL,
                        MAKEWPARAM(draw_(16), draw_(2) == 0 ? -WHEEL_DELTA : WHEEL_DELTA),
                        PointIn(to.window));
        case TKind::Scroll:
            return Post(to.window, draw_(2) == 0 ? WM_VSCROLL : WM_HSCROLL,
                        MAKEWPARAM(draw_(9), draw_(1000)));
        case TKind::Size:
            return PostSize(to);
        case TKind::Activation:
            return Post(to.window, WM_ACTIVATE, draw_(3));
        case TKind::Timer:
            return Post(to.window, WM_TIMER, draw_(4));
        case TKind::SystemCommand:
            return PostSystemCommand(to);
        case TKind::News:
            return PostSystemNews(to);
        case TKind::Mdi:
            return PostMdi(to);
        case TKind::Button:
            if (to.className == L"Button") Post(to.window, BM_CLICK);
            return;
        case TKind::Answer:
            return PostAnswer();
        case TKind::Close:
            return PostClose(to);
    }
}

// The list's menus, the system's standard numbers, and others.
void TMessageStorm::PostCommand(const TTarget& to) {
    constexpr int kFirstSearch = 2000;
    constexpr int kFirstControl = 100;
    const auto id = [this]() -> int {
        switch (draw_(4)) {
            case 0:
                return kWriteAll - 1 + static_cast<int>(draw_(7));
            case 1:
                return kFirstSearch + static_cast<int>(draw_(30));
            case 2:
                return static_cast<int>(draw_(8));
            default:
                return kFirstControl + static_cast<int>(draw_(30));
        }
    };
    const auto list = std::find_if(targets_.begin(), targets_.end(),
                                   [](const TTarget& target) { return target.className == kList; });
    const bool toList = list != targets_.end() && draw_(2) == 0;
    Post(toList ? list->window : to.window, WM_COMMAND, static_cast<WPARAM>(id()));
}

void TMessageStorm::PostKey(const TTarget& to, bool system) {
    const int key = kKeys.at(draw_(kKeys.size()));
    const bool isClose = system && key == VK_F4;
    if (isClose && draw_(20) != 0) return;
    // Arrows choose another connection.
    const bool isArrow = key >= VK_LEFT && key <= VK_DOWN;
    if (ClassOf(to.top) == kConnection && (isArrow || system)) return;
    const LPARAM alt = system ? LPARAM{1} << 29 : 0;
    Post(to.window, system ? WM_SYSKEYDOWN : WM_KEYDOWN, static_cast<WPARAM>(key), 1 | alt);
    Post(to.window, system ? WM_SYSKEYUP : WM_KEYUP, static_cast<WPARAM>(key), kUp | alt);
}

void TMessageStorm::PostCharacter(const TTarget& to) {
    static constexpr std::wstring_view kCharacters =
        L"1290 aЯяж.,-\b\t\x03\x16\x18\x1A\u2028\xFFFE";
    for (unsigned left = IsEdit(to.className) ? draw_(8) : 0; left > 0; --left)
        Post(to.window, WM_CHAR, kCharacters[draw_(kCharacters.size())], 1);
    Post(to.window, WM_CHAR, draw_(0x10000), 1);
}

LPARAM TMessageStorm::PointIn(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    constexpr LONG kBeyond = 8;
    const auto at = [this](LONG size) {
        return static_cast<int>(draw_(static_cast<std::size_t>(size + 2 * kBeyond))) - kBeyond;
    };
    const int x = at(client.right);
    return MAKELPARAM(x, at(client.bottom));
}

void TMessageStorm::PostClick(const TTarget& to) {
    const LPARAM at = PointIn(to.window);
    const WPARAM held = draw_(4) == 0 ? MK_CONTROL : draw_(4) == 0 ? MK_SHIFT : 0;
    Post(to.window, draw_(5) == 0 ? WM_LBUTTONDBLCLK : WM_LBUTTONDOWN, MK_LBUTTON | held, at);
    if (draw_(6) == 0) Post(to.window, WM_MOUSEMOVE, MK_LBUTTON | held, PointIn(to.window));
    Post(to.window, WM_LBUTTONUP, held, at);
}

void TMessageStorm::PostOtherMouse(const TTarget& to) {
    const LPARAM at = PointIn(to.window);
    switch (draw_(5)) {
        case 0:
            Post(to.window, WM_RBUTTONDOWN, MK_RBUTTON, at);
            Post(to.window, WM_RBUTTONUP, 0, at);
            break;
        case 1:
            Post(to.window, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(to.window), -1);
            break;
        case 2:
            Post(to.window, WM_NCLBUTTONDOWN, static_cast<WPARAM>(kEdges.at(draw_(kEdges.size()))),
                 at);
            Post(to.window, WM_LBUTTONUP, 0, at);
            break;
        default:
            Post(to.window, WM_MOUSEMOVE, 0, at);
    }
}

void TMessageStorm::PostSystemCommand(const TTarget& to) {
    if (to.isForm)
        Post(to.window, WM_SYSCOMMAND, kSystemCommands.at(draw_(kSystemCommands.size())));
}

void TMessageStorm::PostSystemNews(const TTarget& to) {
    Post(to.window, kNews.at(draw_(kNews.size())));
}

void TMessageStorm::PostMdi(const TTarget& to) {
    static constexpr std::array<UINT, 6> kToClient = {
        WM_MDINEXT, WM_MDICASCADE, WM_MDITILE, WM_MDIICONARRANGE, WM_MDIRESTORE, WM_MDIMAXIMIZE};
    const HWND client = FindWindowExW(to.top, nullptr, L"MDIClient", nullptr);
    const HWND list = client == nullptr ? nullptr : FindWindowExW(client, nullptr, kList, nullptr);
    if (list == nullptr) return;
    const UINT message = kToClient.at(draw_(kToClient.size()));
    const bool takesNumber = message == WM_MDICASCADE || message == WM_MDITILE;
    Post(client, message, takesNumber ? 0 : reinterpret_cast<WPARAM>(list));
}

void TMessageStorm::PostSize(const TTarget& to) {
    const int width = static_cast<int>(draw_(1400));
    const int height = static_cast<int>(draw_(1000));
    if (draw_(2) == 0) return Post(to.window, WM_SIZE, draw_(5), MAKELPARAM(width, height));
    if (!to.isForm) return;
    SetWindowPos(to.window, nullptr, static_cast<int>(draw_(200)), static_cast<int>(draw_(200)),
                 width, height, SWP_ASYNCWINDOWPOS | SWP_NOZORDER | SWP_NOACTIVATE);
    ++messages_;
}

// The host's main window closes seldom. A control would be destroyed by this.
void TMessageStorm::PostClose(const TTarget& to) {
    if (!to.isForm || (to.className == kFrame && draw_(10) != 0)) return;
    Post(to.window, WM_CLOSE);
}

void TMessageStorm::PostAnswer() {
    if (front_ == nullptr) return;
    const std::wstring className = ClassOf(front_);
    if (className == kMessageBoxClass) return Post(front_, WM_COMMAND, draw_(8));
    if (className == kMenu) return Post(front_, WM_KEYDOWN, VK_ESCAPE, 1);
    const auto press = [this](std::string_view name) {
        for (const TTarget& target : targets_) {
            if (target.top == front_ && ComponentNameOf(target.window) == name)
                Post(target.window, BM_CLICK);
        }
    };
    if (className == kRun) {
        static constexpr std::array<std::string_view, 3> kRunButtons = {"SaveBtn", "DeleteBtn",
                                                                        "StopReadBtn"};
        return press(kRunButtons.at(draw_(kRunButtons.size())));
    }
    press("btnOk");
    press("btnOK");
    press("OkButton");
}

void TMessageStorm::WaitUntilRead() {
    constexpr int kMostRounds = 1000;
    room_ = 0;
    PostMessageW(helper_, kMark, static_cast<WPARAM>(++mark_), 0);
    for (int round = 0; round < kMostRounds && read_ != mark_ && !over_; ++round)
        Sleep(2);
}

void TMessageStorm::MakeRoom() {
    constexpr int kMostRounds = 200;
    ++roomMade_;
    for (int round = 0; round < kMostRounds && room_ < kEnoughRoom && !over_; ++round) {
        FindTargets();
        EndLoops();
        WaitUntilRead();
    }
}

void TMessageStorm::EndWaiting(HWND window) {
    PostMessageW(window, WM_CANCELMODE, 0, 0);
    PostMessageW(window, WM_KEYDOWN, VK_ESCAPE, 1);
    PostMessageW(window, WM_LBUTTONUP, 0, 0);
}

void TMessageStorm::CloseFront() {
    if (ClassOf(front_) == kMessageBoxClass) {
        for (const WPARAM button : {IDOK, IDCANCEL, IDNO})
            PostMessageW(front_, WM_COMMAND, button, 0);
    } else if (!ComponentNameOf(front_).empty()) {
        PostMessageW(front_, WM_CLOSE, 0, 0);
    }
}

// Whoever waits for the end of a menu, of a move by keys or of a dialog gets it.
void TMessageStorm::EndLoops() {
    // The system may wait for the end of a move although the window has gone.
    EndWaiting(helper_);
    for (const TTarget& target : targets_) {
        if (!target.isForm) continue;
        EndWaiting(target.window);
        if (IsIconic(target.window) != 0) PostMessageW(target.window, WM_SYSCOMMAND, SC_RESTORE, 0);
    }
    if (front_ != nullptr) CloseFront();
}

// A window that does not close ends the program, as nobody could get out of its message loop.
void TMessageStorm::CalmDown() {
    constexpr DWORD kBetweenMs = 50;
    constexpr DWORD kPatienceMs = 60000;
    const DWORD start = GetTickCount();
    int turnsBefore = turns_;
    int quiet = 0;
    constexpr int kLongEnough = 4;
    while (!over_ && quiet < kLongEnough) {
        FindTargets();
        PostMessageW(helper_, kReleaseKeys, 0, 0);
        if (turns_ != turnsBefore && front_ == nullptr) {
            ++quiet;
        } else {
            quiet = 0;
            EndLoops();
        }
        turnsBefore = turns_;
        Sleep(kBetweenMs);
        if (GetTickCount() - start < kPatienceMs) continue;
        std::printf("does not close after the storm: %s\n", Front().c_str());
        std::fflush(stdout);
        std::_Exit(3);
    }
}

std::string TMessageStorm::Front() const {
    return front_ == nullptr ? "nothing" : Utf8(ClassOf(front_)) + " " + Utf8TextOf(front_);
}

std::string TMessageStorm::InFront() {
    over_ = true;
    if (thread_.joinable()) thread_.join();
    FindTargets();
    return Front();
}

}  // namespace tolvane::test
