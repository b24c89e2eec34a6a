// Searches by broadcast in a network that the steps set up anew for each of these suites. Each
// suite says what its network holds.
#include <gtest/gtest.h>

#include <windows.h>

#include <psapi.h>

#include <chrono>
#include <memory>

#include "settings/forms/uFindDevices.h"
#include "tests/module/links/LinksFixture.h"
#include "tests/support/scales/FoundDevices.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/HostFrame.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

using TFound = std::vector<TFoundDevice>;

TFound Search() {
    return FoundDevices(SystemClock(), false);
}

std::vector<std::string> Listed(HWND window) {
    const HWND list = ControlOf(window, "lstDevices");
    std::vector<std::string> listed;
    const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        const auto index = static_cast<WPARAM>(i);
        wchar_t text[64] = {};
        SendMessageW(list, LB_GETTEXT, index, reinterpret_cast<LPARAM>(text));
        listed.push_back(Utf8(text) + " " +
                         std::to_string(SendMessageW(list, LB_GETITEMDATA, index, 0)));
    }
    return listed;
}

// The search window over the network: one search, then `after`, then Cancel.
void SearchInWindow(const TDialogScript::TStep& after) {
    const THostFrame host;
    TFindDevicesForm form(host.Frame(), NetworkSearch());
    const TDialogScript script(
        kFindDevicesFormClass,
        {[](HWND window) { Press(window, "btnFind"); },
         [](HWND window) {
             EXPECT_TRUE(RunLoopUntil([&] { return IsEnabledIn(window, "btnFind"); }));
         },
         after, [](HWND window) { Press(window, "btnCancel"); }});
    EXPECT_EQ(form.ShowModal(), IDCANCEL);
}

// Counts what reaches the search.
class TCountingSocket : public TProbeSocket {
public:
    explicit TCountingSocket(int& datagrams) : datagrams_(datagrams) {}

    void Open(std::uint16_t localPort) override { socket_->Open(localPort); }
    void Broadcast(std::span<const std::uint8_t> request, const std::string& address,
                   std::uint16_t port) override {
        socket_->Broadcast(request, address, port);
    }
    std::optional<TDatagram> Receive(TMilliseconds limit) override {
        auto datagram = socket_->Receive(limit);
        if (datagram) ++datagrams_;
        return datagram;
    }

private:
    std::unique_ptr<TProbeSocket> socket_ = MakeProbeSocket();
    int& datagrams_;
};

std::size_t PrivateBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    EXPECT_NE(GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters), 0);
    return counters.PagefileUsage;
}

}  // namespace

// Nobody answers.
using SearchNoneTest = testing::Test;

TEST_F(SearchNoneTest, FindsNothing) {
    EXPECT_EQ(Search(), TFound{});
}

TEST_F(SearchNoneTest, TheWindowSaysSoAndItsOkDoesNothing) {
    const TBoxAnswerer boxes;
    SearchInWindow([](HWND window) {
        EXPECT_EQ(Listed(window), std::vector<std::string>{});
        Press(window, "btnOK");
    });
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Не са намерени везни.");
    EXPECT_EQ(boxes.Seen()[0].icon, TBoxIcon::Information);
    EXPECT_EQ(boxes.Seen()[0].buttons.size(), 1U);
}

// One UDP module.
using SearchOneTest = testing::Test;

TEST_F(SearchOneTest, FindsItByBothProbesForUdpModules) {
    const std::string udp1 = Setting("UDP1");
    EXPECT_EQ(Search(), (TFound{Udp(udp1), Udp(udp1)}));
}

TEST_F(SearchOneTest, TheWindowListsIt) {
    const TBoxAnswerer boxes;
    const std::string udp1 = Setting("UDP1");
    SearchInWindow([&](HWND window) {
        EXPECT_EQ(Listed(window), (std::vector<std::string>{udp1 + " 1", udp1 + " 1"}));
    });
    EXPECT_EQ(boxes.Seen().size(), 0U);
}

TEST_F(SearchOneTest, TheWindowListsItWhileTheOtherProbesWork) {
    const std::string udp1 = Setting("UDP1");
    const THostFrame host;
    TFindDevicesForm form(host.Frame(), NetworkSearch());
    const TDialogScript script(
        kFindDevicesFormClass,
        {[](HWND window) { Press(window, "btnFind"); },
         [&](HWND window) {
             EXPECT_TRUE(RunLoopUntil([&] { return !Listed(window).empty(); }));
             EXPECT_EQ(Listed(window), std::vector<std::string>{udp1 + " 1"});
             EXPECT_FALSE(IsEnabledIn(window, "btnFind"));
             SendMessageW(ControlOf(window, "lstDevices"), LB_SETCURSEL, 0, 0);
             Press(window, "btnOK");
         }});
    EXPECT_EQ(form.ShowModal(), IDOK);
    EXPECT_EQ(form.Chosen(), Udp(udp1));
}

// One UDP and one TCP module, each answering a probe with seven datagrams.
using SearchSeveralTest = testing::Test;

TEST_F(SearchSeveralTest, AModuleOfSeveralDatagramsIsListedOncePerProbe) {
    const std::string udp1 = Setting("UDP1");
    EXPECT_EQ(Search(), (TFound{Udp(udp1), Udp(udp1), Tcp(Setting("TCP"))}));
}

// One UDP and one TCP module answer with empty datagrams.
using SearchEmptyTest = testing::Test;

TEST_F(SearchEmptyTest, EmptyDatagramsFindNothing) {
    int datagrams = 0;
    const auto counting = [&] { return std::make_unique<TCountingSocket>(datagrams); };
    EXPECT_EQ(FoundDevices(SystemClock(), false, {}, counting), TFound{});
    // They have come: two to the probes for UDP modules, one to that for TCP modules.
    EXPECT_EQ(datagrams, 3);
}

// One UDP module answers each probe with 10,000 datagrams of 1,400 bytes; one TCP module.
using SearchFloodTest = testing::Test;

TEST_F(SearchFloodTest, AFloodIsOneModuleAndHidesNoOther) {
    // Kept, these would be more than the memory may grow by.
    constexpr int kReadAtLeast = 150;
    constexpr std::size_t kMostGrowth = 1 << 17;
    // The system drops datagrams for which its buffer has no room: on a busy machine, most of them.
    constexpr int kSearches = 5;
    const std::string udp1 = Setting("UDP1");
    const TFound expected = {Udp(udp1), Udp(udp1), Tcp(Setting("TCP"))};
    int datagrams = 0;
    const auto counting = [&] { return std::make_unique<TCountingSocket>(datagrams); };
    EXPECT_EQ(FoundDevices(SystemClock(), false, {}, counting), expected);
    const std::size_t before = PrivateBytes();
    datagrams = 0;
    for (int search = 0; search < kSearches && datagrams < kReadAtLeast; ++search) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(FoundDevices(SystemClock(), false, {}, counting), expected);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    }
    EXPECT_GE(datagrams, kReadAtLeast);
    EXPECT_LT(PrivateBytes(), before + kMostGrowth) << "after " << datagrams << " datagrams";
}

}  // namespace tolvane::test
