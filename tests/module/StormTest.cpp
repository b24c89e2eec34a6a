#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "simulator/VirtualScale.h"
#include "tests/module/LoopWatch.h"
#include "tests/module/MessageStorm.h"
#include "tests/support/Environment.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/CallRoom.h"
#include "tests/support/window/Controls.h"
#include "tests/support/window/MessageWindow.h"
#include "tests/support/window/ObjectCounts.h"

namespace tolvane::test {
namespace {

constexpr const wchar_t* kListWindowClass = L"TElicomPluScaleListForm";
constexpr DWORD kWarmUpMs = 2000;
constexpr int kPatience = 60;

// The system makes objects of many kinds once, when they are first needed. A leak with each window
// shows in ten minutes; that of a single cycle is what CyclesTest is for.
constexpr int kMadeOnce = 64;

DWORD StormMs() {
    constexpr int kMsOfSecond = 1000;
    return static_cast<DWORD>(CountFromEnvironment("TOLVANE_STORM_SECONDS", 3) * kMsOfSecond);
}

std::uint32_t Seed() {
    return static_cast<std::uint32_t>(
        CountFromEnvironment("TOLVANE_STORM_SEED", static_cast<int>(GetTickCount() & 0xFFFFFF)));
}

// Two scales of which the second cannot be reached.
void WriteScales(int port) {
    const auto section = [](const char* number, const char* name, int at) {
        return std::string("[SCALE") + number + "]\r\nScaleNumb=" + number +
               "\r\nScaleName=" + name +
               "\r\nTCPAddress=127.0.0.1\r\nTCPPort=" + std::to_string(at) +
               "\r\nChecked=1\r\nBaudRate=0\r\nScaleType=16\r\nEncoding=2\r\nScaleAddr=0\r\n"
               "CommType=1\r\n";
    };
    TConfiguration::Write(section("1", "A", port) + section("2", "B", 9));
}

simulator::TScaleOptions SmallScale() {
    constexpr int kCapacity = 130;
    simulator::TScaleOptions options;
    options.scale = simulator::DefaultProperties(simulator::TModel::Evl);
    options.scale.capacity = kCapacity;
    return options;
}

struct TStormResult {
    int messages = 0;
    int starts = 0;
    int mainWindows = 0;
    int requests = 0;
    int roomMade = 0;
    int lostBeats = 0;
    std::vector<TLoopWatch::TGap> gaps{};
    std::vector<TLoopWatch::TGap> gapsInLoads{};
};

// Measures the room within calls.
class TCallsInCalls {
public:
    explicit TCallsInCalls(const TCallRoom& room) : room_(room) {}
    int LeftWithin(int calls, int most) {
        SendMessageW(window_.Handle(), kCall, static_cast<WPARAM>(calls), most);
        return left_;
    }

private:
    static constexpr UINT kCall = WM_APP + 1;
    static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM calls, LPARAM most) {
        auto* self = TMessageWindow::ObjectOf<TCallsInCalls>(window);
        if (id != kCall || self == nullptr) return DefWindowProcW(window, id, calls, most);
        if (calls > 1)
            SendMessageW(window, id, calls - 1, most);
        else
            self->left_ = self->room_.Left(static_cast<int>(most));
        return 0;
    }

    const TCallRoom& room_;
    int left_ = 0;
    TMessageWindow window_{L"TestCallsInCalls", &Procedure, this};
};

// A host whose user has lost patience. Its main window is made again when the storm has closed it,
// and the operation started again when its list is gone; the application's window stays.
class TStormyHost {
public:
    TStormyHost() { scale_.Start(); }

    TStormResult Storm(std::uint32_t seed, DWORD milliseconds) {
        TLoopWatch watch;
        TMessageStorm storm(seed, milliseconds, session_.host.Frame());
        const bool over = RunLoopUntil(
            [&] {
                if (!storm.IsEnding()) KeepOpen();
                return storm.IsOver();
            },
            static_cast<int>(milliseconds / 1000) + kPatience);
        EXPECT_TRUE(over) << "in front: " << storm.InFront();
        CloseAll();
        watch.Stop();
        session_.module.Unload();
        EXPECT_TRUE(RunLoopUntil(TLoadedModule::IsGone));
        return {storm.Messages(),  starts_,
                frames_,           static_cast<int>(scale_.State().requests.total),
                storm.RoomMade(),  watch.Lost(),
                watch.Gaps(false), watch.Gaps(true)};
    }

private:
    bool HasFrame() const { return frame_ && IsWindow(frame_->Frame()) != 0; }
    HWND List() const { return HasFrame() ? frame_->ChildOfClass(kListWindowClass) : nullptr; }
    void KeepOpen() {
        if (!HasFrame()) {
            frame_.reset();
            frame_ = std::make_unique<THostFrame>();
            ++frames_;
        }
        if (List() != nullptr) return;
        WriteScales(scale_.Port());
        session_.module.Start(session_.host.Frame(), 17, &session_.messageId, frame_->Frame(),
                              session_.connection.Database(), nullptr, {});
        ++starts_;
    }
    // Everything closes as it does in good weather.
    void CloseAll() {
        if (List() != nullptr) SendMessageW(List(), WM_CLOSE, 0, 0);
        EXPECT_EQ(List(), nullptr);
        if (HasFrame()) {
            EXPECT_TRUE(IsWindowEnabled(frame_->Frame()));
            EXPECT_TRUE(IsWindowEnabled(frame_->Client()));
            SendMessageW(frame_->Frame(), WM_CLOSE, 0, 0);
        }
        EXPECT_FALSE(HasFrame());
        EXPECT_TRUE(IsWindowEnabled(session_.host.Frame()));
        frame_.reset();
        RunLoopDry();
        EXPECT_EQ(session_.Completions(), starts_);
    }

    simulator::TVirtualScale scale_{SmallScale()};
    TSession session_{"scales.fdb"};
    std::unique_ptr<THostFrame> frame_;
    int starts_ = 0;
    int frames_ = 0;
};

// The windows of this thread, one in a line. Those of menus are Wine's, see TMessageStorm.
BOOL CALLBACK AddWindow(HWND window, LPARAM windows) {
    const std::wstring className = ClassOf(window);
    if (className != L"#32768")
        reinterpret_cast<std::vector<std::string>*>(windows)->push_back(Utf8(className) + " \"" +
                                                                        Utf8TextOf(window) + "\"");
    return TRUE;
}

std::vector<std::string> WindowsLeft() {
    std::vector<std::string> windows;
    EnumThreadWindows(GetCurrentThreadId(), &AddWindow, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

// What is open when no host is there.
struct TLeftOver {
    int handles = OpenHandles();
    int gdi = GdiObjects();
    int user = UserObjects();
    std::vector<std::string> windows = WindowsLeft();

    std::string Text() const {
        return std::to_string(handles) + " handles, GDI " + std::to_string(gdi) + ", user " +
               std::to_string(user) + ", windows " + std::to_string(windows.size());
    }
    bool IsWithin(const TLeftOver& limit) const {
        return handles <= limit.handles + kMadeOnce && gdi <= limit.gdi + kMadeOnce &&
               user <= limit.user + kMadeOnce && windows.size() <= limit.windows.size();
    }
};

void Report(const std::vector<TLoopWatch::TGap>& gaps, bool loading) {
    const DWORD longest = gaps.empty() ? 0 : gaps.front().ms;
    const std::string when = loading ? "InLoads" : "";
    testing::Test::RecordProperty("LongestGapMs" + when, static_cast<int>(longest));
    testing::Test::RecordProperty("GapsAbove50Ms" + when, static_cast<int>(gaps.size()));
    std::printf("%s: longest gap %u ms, %u above 50 ms\n", loading ? "in loads" : "otherwise",
                static_cast<unsigned>(longest), static_cast<unsigned>(gaps.size()));
    const bool all = CountFromEnvironment("TOLVANE_STORM_STACKS", 0) != 0;
    constexpr std::size_t kUsual = 3;
    const std::size_t most = all ? gaps.size() : kUsual;
    for (std::size_t i = 0; i < std::min(most, gaps.size()); ++i)
        std::printf("%s", gaps[i].Text(all ? gaps[i].samples.size() : kUsual).c_str());
}

}  // namespace

TEST(Storm, TheRoomForCallsIsMeasured) {
    constexpr int kMost = 100;
    const TCallRoom room;
    const int all = room.Left(kMost);
    EXPECT_GT(all, 50);
    EXPECT_EQ(room.Left(10), 10);
    EXPECT_EQ(TCallsInCalls(room).LeftWithin(3, kMost), all == kMost ? kMost : all - 3);
}

TEST(Storm, NothingIsLostInAStormOfMessages) {
    const std::uint32_t seed = Seed();
    std::printf("seed %u\n", static_cast<unsigned>(seed));
    std::fflush(stdout);
    TStormyHost().Storm(seed, kWarmUpMs);
    const TLeftOver before;
    const TStormResult result = TStormyHost().Storm(seed + 1, StormMs());
    EXPECT_TRUE(RunLoopUntil([&] { return TLeftOver().IsWithin(before); }, kPatience))
        << testing::PrintToString(WindowsLeft());
    std::printf(
        "%d messages, %d starts, %d main windows, %d requests to the scale\n"
        "room made for calls %d times\n%s, then %s\n",
        result.messages, result.starts, result.mainWindows, result.requests, result.roomMade,
        before.Text().c_str(), TLeftOver().Text().c_str());
    testing::Test::RecordProperty("Messages", result.messages);
    std::printf("%d of the watch's messages lost by the system\n", result.lostBeats);
    Report(result.gaps, false);
    Report(result.gapsInLoads, true);
}

}  // namespace tolvane::test
