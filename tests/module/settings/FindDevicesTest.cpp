#include <gtest/gtest.h>

#include <windows.h>

#include <atomic>
#include <chrono>

#include "settings/forms/uFindDevices.h"
#include "system/Clock.h"
#include "tests/module/settings/HeldSearch.h"
#include "tests/module/settings/PicturedBoxes.h"
#include "tests/support/window/HostFrame.h"
#include "tests/support/window/Screenshot.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

TDeviceSearch Finds(std::vector<TFoundDevice> found) {
    return [found = std::move(found)](const std::atomic<bool>&, const TProbeReport& report) {
        report(found);
    };
}

const std::vector<TFoundDevice> kThree = {{"192.168.1.10", TDeviceKind::UdpModule},
                                          {"192.168.1.11", TDeviceKind::TcpModule},
                                          {"192.168.1.10", TDeviceKind::TcpModule}};

HWND List(HWND window) {
    return ControlOf(window, "lstDevices");
}

int Count(HWND window) {
    return static_cast<int>(SendMessageW(List(window), LB_GETCOUNT, 0, 0));
}

void DoubleClick(HWND window) {
    SendMessageW(window, WM_COMMAND,
                 MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID(List(window))), LBN_DBLCLK),
                 reinterpret_cast<LPARAM>(List(window)));
}

// Waits until that many addresses are listed.
void Listed(HWND window, int count) {
    EXPECT_TRUE(RunLoopUntil([&] { return Count(window) == count; }));
}

int Selected(HWND window) {
    return static_cast<int>(SendMessageW(List(window), LB_GETCURSEL, 0, 0));
}

void Select(HWND window, int index) {
    SendMessageW(List(window), LB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

// Waits for the end of a search.
void Searched(HWND window) {
    EXPECT_TRUE(RunLoopUntil([&] { return IsEnabledIn(window, "btnFind"); }));
}

class FindDevicesTest : public testing::Test {
protected:
    // Shows the form and takes the steps. Returns its result.
    int Show(TDeviceSearch search, std::vector<TDialogScript::TStep> steps) {
        TFindDevicesForm form(host_.Frame(), std::move(search));
        const TDialogScript script(kFindDevicesFormClass, std::move(steps));
        const int result = form.ShowModal();
        chosen_ = form.Chosen();
        return result;
    }

    // The same, but the user chooses, by `choice`, an address that the first of three probes found.
    int ShowAndChooseEarly(const TDialogScript::TStep& choice) {
        early_.ended = 1;
        return Show(early_.Search(), {[](HWND window) { Press(window, "btnFind"); },
                                      [](HWND window) { Listed(window, 1); },
                                      [&](HWND window) {
                                          EXPECT_FALSE(IsEnabledIn(window, "btnFind"));
                                          Select(window, 0);
                                          choice(window);
                                      }});
    }

    THostFrame host_;
    std::optional<TFoundDevice> chosen_;
    TSteppedSearch early_{.probes = {{kThree[0]}, {kThree[0]}, {kThree[1]}}};
};

int ticks = 0;
void CALLBACK CountTick(HWND, UINT, UINT_PTR, DWORD) {
    ++ticks;
}

}  // namespace

TEST_F(FindDevicesTest, LooksAsDescribed) {
    Show(Finds({}), {[](HWND window) {
             EXPECT_EQ(Utf8TextOf(window), "Налични везни");
             EXPECT_EQ(TextOf(window, "btnFind"), "Търси налични везни");
             EXPECT_EQ(TextOf(window, "btnCancel"), "Отказ");
             EXPECT_EQ(TextOf(window, "btnOK"), "Потвърди");
             EXPECT_EQ(Count(window), 0);
             EXPECT_EQ(GetDlgCtrlID(ControlOf(window, "btnOK")), IDOK);
             Picture(window, "find-empty");
             Press(window, "btnCancel");
         }});
}

TEST_F(FindDevicesTest, NoAnswersAreReportedAndOkDoesNothing) {
    const TPicturedBoxes boxes("box-nothing-found");
    EXPECT_EQ(Show(Finds({}), {[](HWND window) { Press(window, "btnFind"); }, Searched,
                               [](HWND window) {
                                   EXPECT_EQ(Count(window), 0);
                                   Press(window, "btnOK");
                               },
                               [](HWND window) { Press(window, "btnCancel"); }}),
              IDCANCEL);
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Не са намерени везни.");
    EXPECT_EQ(boxes.Seen()[0].icon, TBoxIcon::Information);
    EXPECT_EQ(boxes.Seen()[0].buttons.size(), 1U);
}

TEST_F(FindDevicesTest, ListsWhoAnsweredWithTheirKinds) {
    Show(Finds(kThree), {[](HWND window) { Press(window, "btnFind"); }, Searched,
                         [](HWND window) {
                             ASSERT_EQ(Count(window), 3);
                             EXPECT_EQ(SendMessageW(List(window), LB_GETITEMDATA, 0, 0), 1);
                             EXPECT_EQ(SendMessageW(List(window), LB_GETITEMDATA, 1, 0), 2);
                             EXPECT_EQ(SendMessageW(List(window), LB_GETITEMDATA, 2, 0), 2);
                             wchar_t text[32] = {};
                             SendMessageW(List(window), LB_GETTEXT, 1,
                                          reinterpret_cast<LPARAM>(text));
                             EXPECT_STREQ(text, L"192.168.1.11");
                             SendMessageW(List(window), LB_SETCURSEL, 1, 0);
                             Picture(window, "find-found");
                             Press(window, "btnCancel");
                         }});
    EXPECT_FALSE(chosen_);
}

TEST_F(FindDevicesTest, OkNeedsASelectedEntry) {
    EXPECT_EQ(Show(Finds(kThree), {[](HWND window) { Press(window, "btnFind"); }, Searched,
                                   [](HWND window) { Press(window, "btnOK"); },
                                   [](HWND window) {
                                       SendMessageW(List(window), LB_SETCURSEL, 1, 0);
                                       Press(window, "btnOK");
                                   }}),
              IDOK);
    ASSERT_TRUE(chosen_);
    EXPECT_EQ(*chosen_, (TFoundDevice{"192.168.1.11", TDeviceKind::TcpModule}));
}

TEST_F(FindDevicesTest, ADoubleClickIsOk) {
    EXPECT_EQ(Show(Finds(kThree), {[](HWND window) { Press(window, "btnFind"); }, Searched,
                                   [](HWND window) {
                                       SendMessageW(List(window), LB_SETCURSEL, 0, 0);
                                       DoubleClick(window);
                                   }}),
              IDOK);
    ASSERT_TRUE(chosen_);
    EXPECT_EQ(*chosen_, (TFoundDevice{"192.168.1.10", TDeviceKind::UdpModule}));
}

TEST_F(FindDevicesTest, ADoubleClickOnAnEmptyListDoesNothing) {
    EXPECT_EQ(Show(Finds({}), {[](HWND window) { DoubleClick(window); },
                               [](HWND window) { Press(window, "btnCancel"); }}),
              IDCANCEL);
}

TEST_F(FindDevicesTest, ASecondSearchEmptiesTheListFirst) {
    Show(Finds(kThree), {[](HWND window) { Press(window, "btnFind"); }, Searched,
                         [](HWND window) { Press(window, "btnFind"); }, Searched,
                         [](HWND window) {
                             EXPECT_EQ(Count(window), 3);
                             Press(window, "btnCancel");
                         }});
}

TEST_F(FindDevicesTest, TheWindowLivesWhileASearchWorks) {
    THeldSearch held;
    held.found = kThree;
    const HWND frame = host_.Frame();
    Show(held.Search(),
         {[](HWND window) { Press(window, "btnFind"); },
          [&](HWND window) {
              EXPECT_FALSE(IsEnabledIn(window, "btnFind"));
              EXPECT_TRUE(IsEnabledIn(window, "btnCancel"));
              EXPECT_EQ(GetFocus(), List(window));
              SendMessageW(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window),
                           MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
              EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_APPSTARTING));
              Picture(window, "find-searching");
              // The host paints meanwhile.
              RunLoopDry();
              host_.Forget();
              InvalidateRect(frame, nullptr, TRUE);
              EXPECT_TRUE(RunLoopUntil([&] { return host_.Received(WM_PAINT) > 0; }));
              held.released = true;
              Searched(window);
          },
          [](HWND window) {
              EXPECT_TRUE(IsEnabledIn(window, "btnFind"));
              EXPECT_EQ(Count(window), 3);
              Press(window, "btnCancel");
          }});
    EXPECT_TRUE(held.started);
    EXPECT_FALSE(held.sawStop);
}

TEST_F(FindDevicesTest, ListsWhatAProbeHasFoundWhileTheNextOneWorks) {
    TSteppedSearch search{.probes = {{kThree[0]}, {kThree[0], kThree[2]}, {}, {kThree[1]}}};
    search.ended = 1;
    const TBoxAnswerer boxes;
    EXPECT_EQ(Show(search.Search(), {[](HWND window) { Press(window, "btnFind"); },
                                     [&](HWND window) {
                                         Listed(window, 1);
                                         EXPECT_FALSE(IsEnabledIn(window, "btnFind"));
                                         EXPECT_EQ(Selected(window), -1);
                                         Select(window, 0);
                                         search.ended = 2;
                                         Listed(window, 3);
                                         EXPECT_EQ(Selected(window), 0);
                                         Select(window, 2);
                                         search.ended = 3;
                                         EXPECT_FALSE(IsEnabledIn(window, "btnFind"));
                                         search.ended = 4;
                                         Searched(window);
                                     },
                                     [](HWND window) {
                                         EXPECT_EQ(Count(window), 4);
                                         EXPECT_EQ(Selected(window), 2);
                                         Press(window, "btnOK");
                                     }}),
              IDOK);
    ASSERT_TRUE(chosen_);
    EXPECT_EQ(*chosen_, kThree[2]);
    EXPECT_FALSE(search.sawStop);
    EXPECT_TRUE(boxes.Seen().empty());
}

TEST_F(FindDevicesTest, AChoiceDuringASearchClosesTheWindowAndStopsTheSearch) {
    const TBoxAnswerer boxes;
    const std::vector<TDialogScript::TStep> choices = {Pressing("btnOK"), &DoubleClick,
                                                       [](HWND) { PostKey(VK_RETURN); }};
    for (const TDialogScript::TStep& choice : choices) {
        early_.sawStop = false;
        EXPECT_EQ(ShowAndChooseEarly(choice), IDOK);
        ASSERT_TRUE(chosen_);
        EXPECT_EQ(*chosen_, kThree[0]);
        EXPECT_TRUE(early_.sawStop);
    }
    EXPECT_TRUE(boxes.Seen().empty());
}

TEST_F(FindDevicesTest, TheFirstWayOutOfASearchCounts) {
    EXPECT_EQ(ShowAndChooseEarly([](HWND window) {
                  Press(window, "btnOK");
                  Press(window, "btnCancel");
              }),
              IDOK);
    EXPECT_EQ(chosen_, kThree[0]);
    EXPECT_EQ(ShowAndChooseEarly([](HWND window) {
                  Press(window, "btnCancel");
                  Press(window, "btnOK");
              }),
              IDCANCEL);
    EXPECT_FALSE(chosen_);
}

TEST_F(FindDevicesTest, OkWithoutASelectionLetsTheSearchGoOn) {
    EXPECT_EQ(ShowAndChooseEarly([this](HWND window) {
                  Select(window, -1);
                  Press(window, "btnOK");
                  early_.ended = 3;
                  Searched(window);
                  EXPECT_EQ(Count(window), 3);
                  Press(window, "btnCancel");
              }),
              IDCANCEL);
    EXPECT_FALSE(early_.sawStop);
}

TEST_F(FindDevicesTest, ClosingDuringASearchStopsIt) {
    for (const char* way : {"btnCancel", "box"}) {
        THeldSearch held;
        EXPECT_EQ(Show(held.Search(), {[](HWND window) { Press(window, "btnFind"); },
                                       [&](HWND window) {
                                           if (std::string(way) == "box")
                                               SendMessageW(window, WM_CLOSE, 0, 0);
                                           else
                                               Press(window, way);
                                       }}),
                  IDCANCEL);
        EXPECT_TRUE(held.sawStop) << way;
    }
}

TEST_F(FindDevicesTest, EscapeDuringASearchStopsIt) {
    THeldSearch held;
    EXPECT_EQ(Show(held.Search(), {[](HWND window) { Press(window, "btnFind"); },
                                   [](HWND) { PostKey(VK_ESCAPE); }}),
              IDCANCEL);
    EXPECT_TRUE(held.sawStop);
}

TEST_F(FindDevicesTest, TheWindowMayBeDestroyedDuringASearch) {
    THeldSearch held;
    EXPECT_EQ(Show(held.Search(), {[](HWND window) { Press(window, "btnFind"); },
                                   [](HWND window) { DestroyWindow(window); }}),
              IDCANCEL);
    EXPECT_TRUE(held.sawStop);
}

TEST_F(FindDevicesTest, AFailedSearchHasFoundNothing) {
    const TBoxAnswerer boxes;
    Show([](const std::atomic<bool>&, const TProbeReport&) { throw std::bad_alloc(); },
         {[](HWND window) { Press(window, "btnFind"); }, Searched,
          [](HWND window) { Press(window, "btnCancel"); }});
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Не са намерени везни.");
    EXPECT_EQ(boxes.Seen()[0].icon, TBoxIcon::Information);
}

TEST_F(FindDevicesTest, ASearchThatFailsHasFoundWhatIsListed) {
    const TBoxAnswerer boxes;
    Show(
        [](const std::atomic<bool>&, const TProbeReport& report) {
            report(kThree);
            throw std::bad_alloc();
        },
        {[](HWND window) { Press(window, "btnFind"); }, Searched,
         [](HWND window) {
             EXPECT_EQ(Count(window), 3);
             Press(window, "btnCancel");
         }});
    EXPECT_TRUE(boxes.Seen().empty());
}

// Three probes of a second each, into this computer's own loopback, where nobody answers; a timer
// of this thread goes on meanwhile.
TEST_F(FindDevicesTest, ASearchTakesAboutThreeSecondsAndNotOnThisThread) {
    const TDeviceSearch search = [](const std::atomic<bool>& stop, const TProbeReport& report) {
        TDiscoveryTarget target;
        target.address = "127.255.255.255";
        FindDevices(SystemClock(), stop, report, target);
    };
    const TBoxAnswerer boxes;
    ticks = 0;
    std::chrono::steady_clock::time_point start;
    std::chrono::steady_clock::duration passed{};
    Show(search, {[&](HWND window) {
                      start = std::chrono::steady_clock::now();
                      Press(window, "btnFind");
                  },
                  [&](HWND window) {
                      const UINT_PTR timer = SetTimer(nullptr, 0, 10, &CountTick);
                      Searched(window);
                      passed = std::chrono::steady_clock::now() - start;
                      KillTimer(nullptr, timer);
                  },
                  [](HWND window) { Press(window, "btnCancel"); }});
    EXPECT_GE(passed, std::chrono::milliseconds(2900));
    EXPECT_GE(ticks, 50);
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Не са намерени везни.");
}

// Whatever network this computer has.
TEST_F(FindDevicesTest, TheNetworkIsSearchedAndNothingFoundIsReported) {
    const TBoxAnswerer boxes;
    int count = -1;
    Show(NetworkSearch(), {[](HWND window) { Press(window, "btnFind"); },
                           [&](HWND window) {
                               Searched(window);
                               count = Count(window);
                           },
                           [](HWND window) { Press(window, "btnCancel"); }});
    EXPECT_GE(count, 0);
    EXPECT_EQ(boxes.Seen().size(), count == 0 ? 1U : 0U);
}

TEST_F(FindDevicesTest, TabGoesThroughTheControls) {
    std::vector<std::string> names;
    const auto tab = [&](HWND) {
        names.push_back(ComponentNameOf(GetFocus()));
        PostKey(VK_TAB);
    };
    Show(Finds({}), {tab, tab, tab, tab, tab, [](HWND) { PostKey(VK_ESCAPE); }});
    EXPECT_EQ(names,
              (std::vector<std::string>{"btnFind", "lstDevices", "btnOK", "btnCancel", "btnFind"}));
}

}  // namespace tolvane::test
