#include "tests/module/LoopWatch.h"

#include <tlhelp32.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "tests/support/window/Controls.h"

namespace tolvane::test {
namespace {

constexpr const wchar_t* kBeatClass = L"TestLoopWatch";
constexpr UINT kBeat = WM_APP + 1;
constexpr DWORD kBetweenBeatsMs = 10;
constexpr DWORD kShortGapMs = 50;
constexpr DWORD kSampledGapMs = 100;
constexpr DWORD kAgainMs = 1000;
constexpr DWORD kHungMs = 120000;
constexpr std::size_t kMostSamples = 40;
constexpr std::size_t kMostAddresses = 40;

std::int64_t NowUs() {
    static const std::int64_t kFrequency = [] {
        LARGE_INTEGER frequency{};
        QueryPerformanceFrequency(&frequency);
        return frequency.QuadPart;
    }();
    LARGE_INTEGER now{};
    QueryPerformanceCounter(&now);
    return now.QuadPart * 1'000'000 / kFrequency;
}

DWORD MsBetween(std::int64_t from, std::int64_t to) {
    return static_cast<DWORD>(std::max<std::int64_t>(0, to - from) / 1000);
}

bool IsWaitWindowOpen() {
    const HWND window = FindWindowW(L"TWaitForm", nullptr);
    return window != nullptr && IsWindowVisible(window) != 0;
}

std::string Hexadecimal(std::uintptr_t number) {
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "%zx", static_cast<std::size_t>(number));
    return text.data();
}

}  // namespace

std::string TLoopWatch::TGap::Text(std::size_t mostSamples) const {
    std::string text = std::to_string(ms) + " ms, " + std::to_string(processorMs) +
                       " ms of them on the processor" + (isLoading ? ", loading" : "") + "\n";
    for (std::size_t i = 0; i < std::min(mostSamples, samples.size()); ++i) {
        text += "  after " + std::to_string(samples[i].afterMs) + " ms:";
        for (const std::string& address : samples[i].addresses)
            text += " " + address;
        text += "\n";
    }
    return text;
}

TLoopWatch::TLoopWatch() : window_(kBeatClass, &Procedure, this) {
    answer_ = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    watched_ = OpenThread(THREAD_SUSPEND_RESUME | THREAD_GET_CONTEXT | THREAD_QUERY_INFORMATION,
                          FALSE, GetCurrentThreadId());
    if (answer_ == nullptr || watched_ == nullptr)
        throw std::runtime_error("the message loop cannot be watched");
    stackEnd_ = reinterpret_cast<std::uintptr_t>(
        reinterpret_cast<const NT_TIB*>(NtCurrentTeb())->StackBase);
    thread_ = std::thread([this] { Watch(); });
}

TLoopWatch::~TLoopWatch() {
    Stop();
    CloseHandle(answer_);
    CloseHandle(watched_);
}

void TLoopWatch::Stop() {
    stop_ = true;
    SetEvent(answer_);
    if (thread_.joinable()) thread_.join();
}

std::vector<TLoopWatch::TGap> TLoopWatch::Gaps(bool loading) const {
    std::vector<TGap> gaps;
    std::copy_if(gaps_.begin(), gaps_.end(), std::back_inserter(gaps),
                 [loading](const TGap& gap) { return gap.isLoading == loading; });
    std::sort(gaps.begin(), gaps.end(), [](const TGap& a, const TGap& b) { return a.ms > b.ms; });
    return gaps;
}

LRESULT CALLBACK TLoopWatch::Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam) {
    auto* self = TMessageWindow::ObjectOf<TLoopWatch>(window);
    if (id != kBeat || self == nullptr) return DefWindowProcW(window, id, wParam, lParam);
    // One of the gap before may come late.
    if (wParam < self->waitedFor_ || self->answeredAt_ != 0) return 0;
    self->answered_ = wParam;
    self->answeredAt_ = NowUs();
    SetEvent(self->answer_);
    return 0;
}

void TLoopWatch::Watch() {
    while (!stop_) {
        Beat();
        Sleep(kBetweenBeatsMs);
    }
}

void TLoopWatch::Beat() {
    const DWORD processor = ProcessorMs();
    const std::int64_t start = NowUs();
    waitedFor_ = sent_ + 1;
    answeredAt_ = 0;
    if (!Send()) return;
    TGap gap = WaitForAnswer(start, processor);
    ++beats_;
    if (answeredAt_ != 0 && answered_ != waitedFor_) {
        ++lost_;
    } else if (gap.ms > kShortGapMs) {
        gaps_.push_back(std::move(gap));
    }
}

bool TLoopWatch::Send() {
    ++sent_;
    return SendNotifyMessageW(window_.Handle(), kBeat, sent_, 0) != 0;
}

TLoopWatch::TGap TLoopWatch::WaitForAnswer(std::int64_t start, DWORD processorBefore) {
    constexpr DWORD kLookMs = 20;
    TGap gap;
    std::vector<TCodeRange> code;
    DWORD again = kAgainMs;
    while (answeredAt_ == 0 && !stop_) {
        if (WaitForSingleObject(answer_, kLookMs) == WAIT_OBJECT_0) continue;
        const DWORD soFar = MsBetween(start, NowUs());
        if (soFar > kShortGapMs / 2) gap.isLoading = gap.isLoading || IsWaitWindowOpen();
        if (soFar < kSampledGapMs) continue;
        if (code.empty()) code = LoadedCode();
        if (gap.samples.size() < kMostSamples) TakeSample(gap, soFar, code);
        if (soFar >= again) {
            Send();
            again += kAgainMs;
        }
        if (soFar < kHungMs) continue;
        gap.ms = soFar;
        std::printf("no message was read for %s", gap.Text(kMostSamples).c_str());
        std::fflush(stdout);
        std::_Exit(3);
    }
    if (answeredAt_ != 0) gap.ms = MsBetween(start, answeredAt_);
    if (gap.ms > kShortGapMs) gap.processorMs = ProcessorMs() - processorBefore;
    return gap;
}

std::vector<TLoopWatch::TCodeRange> TLoopWatch::LoadedCode() {
    std::vector<TCodeRange> ranges;
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, 0);
    MODULEENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Module32FirstW(snapshot, &entry); more != 0;
         more = Module32NextW(snapshot, &entry)) {
        const auto begin = reinterpret_cast<std::uintptr_t>(entry.modBaseAddr);
        std::string name = Utf8(entry.szModule);
        name.resize(std::min(name.size(), name.rfind('.')));
        ranges.push_back({name, begin, begin + entry.modBaseSize});
    }
    CloseHandle(snapshot);
    return ranges;
}

// Nothing that takes a lock may happen while the thread is suspended: it may hold that lock.
void TLoopWatch::TakeSample(TGap& gap, DWORD afterMs, const std::vector<TCodeRange>& code) {
    CONTEXT context{};
    context.ContextFlags = CONTEXT_CONTROL;
    std::size_t count = 0;
    if (SuspendThread(watched_) == static_cast<DWORD>(-1)) return;
    if (GetThreadContext(watched_, &context) != 0 && context.Esp < stackEnd_) {
        count =
            std::min<std::size_t>(stack_.size() - 1, (stackEnd_ - context.Esp) / sizeof stack_[0]);
        std::memcpy(stack_.data() + 1, reinterpret_cast<const void*>(context.Esp),
                    count * sizeof stack_[0]);
        stack_[0] = context.Eip;
        ++count;
    }
    ResumeThread(watched_);
    TSample sample{.afterMs = afterMs};
    for (std::size_t i = 0; i < count && sample.addresses.size() < kMostAddresses; ++i) {
        const std::uintptr_t at = stack_[i];
        const auto in = std::find_if(code.begin(), code.end(), [at](const TCodeRange& range) {
            return at >= range.begin && at < range.end;
        });
        if (in != code.end())
            sample.addresses.push_back(in->name + "+" + Hexadecimal(at - in->begin));
    }
    gap.samples.push_back(std::move(sample));
}

DWORD TLoopWatch::ProcessorMs() const {
    FILETIME created{};
    FILETIME exited{};
    FILETIME kernel{};
    FILETIME user{};
    GetThreadTimes(watched_, &created, &exited, &kernel, &user);
    const auto ticks = [](const FILETIME& time) {
        return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
    };
    constexpr std::uint64_t kTicksPerMs = 10000;
    return static_cast<DWORD>((ticks(kernel) + ticks(user)) / kTicksPerMs);
}

}  // namespace tolvane::test
