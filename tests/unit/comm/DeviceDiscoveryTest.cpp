#include "comm/DeviceDiscovery.h"

#include <gtest/gtest.h>

#include <deque>
#include <stdexcept>

#include "tests/support/RecordingClock.h"
#include "tests/support/scales/FoundDevices.h"

namespace tolvane::test {
namespace {

using TBytes = std::vector<std::uint8_t>;
using TFound = std::vector<TFoundDevice>;

// What happens to one probe.
struct TScriptedProbe {
    struct TStep {
        std::string sender;
        std::size_t size = 1;
        bool fails = false;
    };
    bool openFails = false;
    bool sendFails = false;
    bool sendFailsToAll = false;  // but to single networks
    std::deque<TStep> steps{};    // one per wait, and silence after them
};

// What one probe did.
struct TRecordedProbe {
    std::uint16_t localPort = 0;
    TBytes request;
    std::string address;
    std::uint16_t port = 0;
    std::vector<TMilliseconds> waits;
};

// The network as the search sees it. A wait that gets a datagram takes no time; one that gets none
// takes all the time it asked for.
class TScriptedNetwork {
public:
    std::deque<TScriptedProbe> script;
    std::vector<std::string> asked;  // addresses, in order
    TDiscoveryTarget target;
    std::vector<TRecordedProbe> probes;
    TRecordingClock clock;
    std::atomic<bool> stop{false};
    int open = 0;  // sockets that exist
    std::function<void()> onWait;

    TFound Find() { return FoundDevices(clock, stop, target, MakeSocket()); }
    // What the probes could not do.
    std::vector<TProbeFailure> Failures() {
        std::vector<TProbeFailure> failures;
        FindDevices(
            clock, stop, [](const TFound&) {}, target, MakeSocket(),
            [&](const TProbeFailure& failure) { failures.push_back(failure); });
        return failures;
    }
    void Report(const TProbeReport& report) { FindDevices(clock, stop, report, {}, MakeSocket()); }

private:
    TProbeSocketFactory MakeSocket() {
        return [this] { return std::make_unique<TSocket>(*this); };
    }

    class TSocket : public TProbeSocket {
    public:
        explicit TSocket(TScriptedNetwork& network) : network_(network) {
            ++network_.open;
            if (!network_.script.empty()) {
                probe_ = network_.script.front();
                network_.script.pop_front();
            }
            network_.probes.emplace_back();
        }
        ~TSocket() override { --network_.open; }

        void Open(std::uint16_t localPort) override {
            Record().localPort = localPort;
            if (probe_.openFails) throw std::runtime_error("the port is taken");
        }
        void Broadcast(std::span<const std::uint8_t> request, const std::string& address,
                       std::uint16_t port) override {
            Record().request.assign(request.begin(), request.end());
            Record().address = address;
            Record().port = port;
            network_.asked.push_back(address);
            if (probe_.sendFailsToAll && address == "255.255.255.255")
                throw std::runtime_error("there is no way to all");
            if (probe_.sendFails) throw std::runtime_error("there is no network");
        }
        std::optional<TDatagram> Receive(TMilliseconds limit) override {
            Record().waits.push_back(limit);
            if (network_.onWait) network_.onWait();
            if (probe_.steps.empty()) {
                network_.clock.Sleep(limit);
                return std::nullopt;
            }
            const TScriptedProbe::TStep step = probe_.steps.front();
            probe_.steps.pop_front();
            if (step.fails) throw std::runtime_error("the network went down");
            return TDatagram{step.sender, step.size};
        }

    private:
        TRecordedProbe& Record() { return network_.probes.back(); }
        TScriptedNetwork& network_;
        TScriptedProbe probe_;
    };
};

TScriptedProbe Answers(std::deque<TScriptedProbe::TStep> steps) {
    return {.steps = std::move(steps)};
}

class DeviceDiscoveryTest : public testing::Test {
protected:
    TScriptedNetwork network_;
};

}  // namespace

TEST(FoundDevice, IsAnotherWithAnotherAddressOrKind) {
    const TFoundDevice device{.address = "10.0.0.7", .kind = TDeviceKind::UdpModule};
    EXPECT_TRUE(device == (TFoundDevice{.address = "10.0.0.7", .kind = TDeviceKind::UdpModule}));
    EXPECT_FALSE(device == (TFoundDevice{.address = "10.0.0.8", .kind = TDeviceKind::UdpModule}));
    EXPECT_FALSE(device == (TFoundDevice{.address = "10.0.0.7", .kind = TDeviceKind::TcpModule}));
}

TEST_F(DeviceDiscoveryTest, FindDevices_SendsTheThreeProbes) {
    network_.Find();
    ASSERT_EQ(network_.probes.size(), 3U);
    EXPECT_EQ(network_.probes[0].request, TBytes{0x58});
    EXPECT_EQ(network_.probes[0].port, 65535);
    EXPECT_EQ(network_.probes[0].localPort, 0);
    EXPECT_EQ(network_.probes[1].request, (TBytes{0x46, 0x49, 0x4E, 0x44}));
    EXPECT_EQ(network_.probes[1].port, 1460);
    EXPECT_EQ(network_.probes[1].localPort, 5001);
    EXPECT_EQ(network_.probes[2].request,
              (TBytes{0x43, 0x21, 0x30, 0x39, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(network_.probes[2].port, 36);
    EXPECT_EQ(network_.probes[2].localPort, 0);
    for (const TRecordedProbe& probe : network_.probes)
        EXPECT_EQ(probe.address, "255.255.255.255");
}

TEST_F(DeviceDiscoveryTest, FindDevices_WaitsASecondPerProbeInTenthsOfIt) {
    EXPECT_EQ(network_.Find(), TFound{});
    EXPECT_EQ(network_.clock.Passed(), TMilliseconds(3000));
    for (const TRecordedProbe& probe : network_.probes)
        EXPECT_EQ(probe.waits, std::vector<TMilliseconds>(10, TMilliseconds(100)));
}

TEST_F(DeviceDiscoveryTest, FindDevices_WaitsNoLongerThanTheDeadline) {
    network_.clock.perLook = TMilliseconds(20);
    network_.Find();
    EXPECT_LE(network_.clock.Passed(), TMilliseconds(3 * 1000 + 3 * 3 * 20));
}

TEST_F(DeviceDiscoveryTest, FindDevices_TellsModulesOfTheFirstTwoProbesFromConverters) {
    network_.script = {Answers({{"10.0.0.1"}}), Answers({{"10.0.0.2"}}), Answers({{"10.0.0.3"}})};
    EXPECT_EQ(network_.Find(), (TFound{{"10.0.0.1", TDeviceKind::UdpModule},
                                       {"10.0.0.2", TDeviceKind::UdpModule},
                                       {"10.0.0.3", TDeviceKind::TcpModule}}));
    EXPECT_EQ(static_cast<int>(TDeviceKind::UdpModule), 1);
    EXPECT_EQ(static_cast<int>(TDeviceKind::TcpModule), 2);
}

TEST_F(DeviceDiscoveryTest, FindDevices_ListsAModuleOfSeveralDatagramsOncePerProbe) {
    network_.script = {Answers({{"10.0.0.2"}, {"10.0.0.1"}, {"10.0.0.2"}, {"10.0.0.1"}})};
    EXPECT_EQ(network_.Find(),
              (TFound{{"10.0.0.2", TDeviceKind::UdpModule}, {"10.0.0.1", TDeviceKind::UdpModule}}));
}

TEST_F(DeviceDiscoveryTest, FindDevices_ListsAModuleThatAnswersTwoProbesTwice) {
    network_.script = {Answers({{"10.0.0.1"}}), Answers({{"10.0.0.1"}}), Answers({{"10.0.0.1"}})};
    EXPECT_EQ(network_.Find(), (TFound{{"10.0.0.1", TDeviceKind::UdpModule},
                                       {"10.0.0.1", TDeviceKind::UdpModule},
                                       {"10.0.0.1", TDeviceKind::TcpModule}}));
}

TEST_F(DeviceDiscoveryTest, FindDevices_ReportsWhatAProbeHasFoundWhenItHasEnded) {
    network_.script = {Answers({{"10.0.0.1"}, {"10.0.0.2"}}), Answers({}), Answers({{"10.0.0.1"}})};
    std::vector<std::pair<TMilliseconds, TFound>> reports;
    network_.Report([&](const TFound& found) {
        EXPECT_EQ(network_.open, 0);
        reports.emplace_back(network_.clock.Passed(), found);
    });
    EXPECT_EQ(reports,
              (std::vector<std::pair<TMilliseconds, TFound>>{
                  {TMilliseconds(1000),
                   {{"10.0.0.1", TDeviceKind::UdpModule}, {"10.0.0.2", TDeviceKind::UdpModule}}},
                  {TMilliseconds(3000), {{"10.0.0.1", TDeviceKind::TcpModule}}}}));
}

TEST_F(DeviceDiscoveryTest, FindDevices_IgnoresAReplyWithEmptyContent) {
    network_.script = {Answers({{"10.0.0.1", 0}, {"10.0.0.2", 5}})};
    EXPECT_EQ(network_.Find(), (TFound{{"10.0.0.2", TDeviceKind::UdpModule}}));
}

TEST_F(DeviceDiscoveryTest, FindDevices_IgnoresAReplyOfAnUnknownSender) {
    network_.script = {Answers({{"", 5}})};
    EXPECT_EQ(network_.Find(), TFound{});
}

TEST_F(DeviceDiscoveryTest, FindDevices_GoesOnWithTheOthersWhenALocalPortIsTaken) {
    network_.script = {Answers({{"10.0.0.1"}}),
                       {.openFails = true, .steps = {{"10.0.0.2"}}},
                       Answers({{"10.0.0.3"}})};
    EXPECT_EQ(network_.Find(),
              (TFound{{"10.0.0.1", TDeviceKind::UdpModule}, {"10.0.0.3", TDeviceKind::TcpModule}}));
}

TEST_F(DeviceDiscoveryTest, FindDevices_GoesOnWithTheOthersWhenSendingFails) {
    network_.script = {{.sendFails = true}, {.sendFails = true}, Answers({{"10.0.0.3"}})};
    EXPECT_EQ(network_.Find(), (TFound{{"10.0.0.3", TDeviceKind::TcpModule}}));
}

TEST_F(DeviceDiscoveryTest, FindDevices_KeepsWhatAProbeFoundBeforeItFailed) {
    network_.script = {Answers({{"10.0.0.1"}, {"", 0, true}, {"10.0.0.2"}}),
                       Answers({{"10.0.0.3"}})};
    EXPECT_EQ(network_.Find(),
              (TFound{{"10.0.0.1", TDeviceKind::UdpModule}, {"10.0.0.3", TDeviceKind::UdpModule}}));
}

TEST_F(DeviceDiscoveryTest, FindDevices_TellsWhatEachProbeCouldNotDo) {
    network_.script = {
        {.sendFails = true}, {.openFails = true}, Answers({{"10.0.0.1"}, {"", 0, true}})};
    const std::vector<TProbeFailure> failures = network_.Failures();
    ASSERT_EQ(failures.size(), 3U);
    EXPECT_EQ(failures[0].step, TProbeStep::Send);
    EXPECT_EQ(failures[0].localPort, 0);
    EXPECT_EQ(failures[0].text, "there is no network");
    EXPECT_EQ(failures[1].step, TProbeStep::Open);
    EXPECT_EQ(failures[1].localPort, 5001);
    EXPECT_EQ(failures[1].text, "the port is taken");
    EXPECT_EQ(failures[2].step, TProbeStep::Receive);
    EXPECT_EQ(failures[2].text, "the network went down");
}

TEST_F(DeviceDiscoveryTest, FindDevices_ASearchThatNobodyAnswersHasNotFailed) {
    EXPECT_TRUE(network_.Failures().empty());
}

TEST_F(DeviceDiscoveryTest, FindDevices_AsksSingleNetworksWhereThereIsNoWayToAll) {
    network_.target.otherwise = {"10.0.0.255", "10.0.1.255"};
    network_.script = {{.sendFailsToAll = true, .steps = {{"10.0.1.7"}}}};
    EXPECT_EQ(network_.Find(), (TFound{{"10.0.1.7", TDeviceKind::UdpModule}}));
    EXPECT_EQ(network_.asked,
              (std::vector<std::string>{"255.255.255.255", "10.0.0.255", "10.0.1.255",
                                        "255.255.255.255", "255.255.255.255"}));
}

TEST_F(DeviceDiscoveryTest, FindDevices_FailsWhereNoSingleNetworkCanBeAskedEither) {
    network_.target.otherwise = {"10.0.0.255"};
    network_.script = {{.sendFails = true, .sendFailsToAll = true}};
    const std::vector<TProbeFailure> failures = network_.Failures();
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_EQ(failures[0].text, "there is no way to all");
}

TEST_F(DeviceDiscoveryTest, FindDevices_FreesEachProbesSocketBeforeTheNext) {
    network_.onWait = [this] { EXPECT_EQ(network_.open, 1); };
    network_.Find();
    EXPECT_EQ(network_.open, 0);
}

TEST_F(DeviceDiscoveryTest, FindDevices_EndsAfterTheCurrentWaitWhenStopped) {
    network_.script = {Answers({{"10.0.0.1"}})};
    int waits = 0;
    network_.onWait = [&] { network_.stop = ++waits == 3; };
    EXPECT_EQ(network_.Find(), (TFound{{"10.0.0.1", TDeviceKind::UdpModule}}));
    EXPECT_EQ(network_.probes.size(), 1U);
    EXPECT_EQ(network_.probes[0].waits.size(), 3U);
}

TEST_F(DeviceDiscoveryTest, FindDevices_ListsOneAddressOfAFlood) {
    network_.script = {Answers(std::deque<TScriptedProbe::TStep>(10000, {"10.0.0.1"}))};
    EXPECT_EQ(network_.Find(), (TFound{{"10.0.0.1", TDeviceKind::UdpModule}}));
}

}  // namespace tolvane::test
