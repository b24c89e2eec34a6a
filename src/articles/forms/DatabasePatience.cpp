#include "articles/forms/DatabasePatience.h"

#include <array>
#include <string_view>
#include <utility>

#include "text/Cp1251.h"
#include "window/MessageBoxes.h"
#include "window/Module.h"

namespace tolvane {
namespace {

constexpr std::string_view kSilent =
    "Базата данни не отговаря. Ако връзката с нея бъде прекъсната, списъкът остава празен и търговската система трябва да се свърже отново.\nДа бъде ли прекъсната?"_cp1251;

constexpr DWORD kLookMs = 500;
// The question comes within ten seconds.
constexpr DWORD kPatienceMs = 8'000;
// A user who wants to wait is asked again after a minute.
constexpr DWORD kNextPatienceMs = 60'000;
constexpr DWORD kTakeBackMs = 100;
constexpr SIZE_T kStack = 256 * 1024;

BOOL CALLBACK AnswerNo(HWND window, LPARAM /*none*/) noexcept {
    std::array<wchar_t, 8> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    if (std::wstring_view(name.data()) == L"#32770") PostMessageW(window, WM_COMMAND, IDNO, 0);
    return TRUE;
}

}  // namespace

TDatabasePatience::TDatabasePatience(const TDatabaseCalls& calls) noexcept
    : calls_(calls), ended_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    // Without the thread nobody is asked.
    if (ended_)
        thread_.Reset(
            CreateThread(nullptr, kStack, &Run, this, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
}

// While its box closes, the other thread may send this one's windows a message.
TDatabasePatience::~TDatabasePatience() {
    if (!thread_) return;
    constexpr DWORD kSliceMs = 50;
    SetEvent(ended_.Get());
    const HANDLE thread = thread_.Get();
    for (;;) {
        const DWORD result =
            MsgWaitForMultipleObjects(1, &thread, FALSE, kSliceMs, asks_ ? QS_SENDMESSAGE : 0);
        if (result == WAIT_OBJECT_0 || result == WAIT_FAILED) return;
        MSG none;
        if (asks_) PeekMessageW(&none, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
}

DWORD WINAPI TDatabasePatience::Run(void* self) noexcept {
    static_cast<TDatabasePatience*>(self)->Wait();
    return 0;
}

// Counts its own looks instead of the time, as a computer may sleep for a while.
void TDatabasePatience::Wait() noexcept {
    DWORD waited = 0;
    DWORD patience = kPatienceMs;
    while (WaitForSingleObject(ended_.Get(), kLookMs) == WAIT_TIMEOUT) {
        const std::uint64_t call = calls_.Current();
        if (std::exchange(call_, call) != call || call == 0) {
            waited = 0;
            patience = kPatienceMs;
            continue;
        }
        waited += kLookMs;
        if (waited < patience) continue;
        Ask();
        waited = 0;
        patience = kNextPatienceMs;
    }
}

bool TDatabasePatience::IsOver() const noexcept {
    return calls_.Current() != call_ || WaitForSingleObject(ended_.Get(), 0) != WAIT_TIMEOUT;
}

void TDatabasePatience::Ask() noexcept {
    asks_ = true;
    try {
        const TOwnedWindow timers(CreateWindowExW(0, L"Static", nullptr, 0, 0, 0, 0, 0,
                                                  HWND_MESSAGE, nullptr, ModuleInstance(),
                                                  nullptr));
        SetWindowLongPtrW(timers.Get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetTimer(timers.Get(), 1, kTakeBackMs, &TakeBack);
        if (AskInFront(kSilent)) calls_.End(call_);
    } catch (...) {  // NOLINT(bugprone-empty-catch): without memory nobody is asked
    }
    asks_ = false;
}

// The box handles this timer.
void CALLBACK TDatabasePatience::TakeBack(HWND timers, UINT /*message*/, UINT_PTR /*timer*/,
                                          DWORD /*time*/) noexcept {
    const auto* const self =
        reinterpret_cast<const TDatabasePatience*>(GetWindowLongPtrW(timers, GWLP_USERDATA));
    if (self->IsOver()) EnumThreadWindows(GetCurrentThreadId(), &AnswerNo, 0);
}

}  // namespace tolvane
