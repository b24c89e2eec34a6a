#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "comm/DeviceDiscovery.h"
#include "comm/TDevCommTCP.h"
#include "comm/TDevCommUDP.h"
#include "scale/DevElicomScaleUnit.h"
#include "scale/ScaleFrame.h"
#include "simulator/VirtualScale.h"
#include "system/SystemError.h"
#include "tests/support/Clocks.h"
#include "tests/support/FreeUdpPort.h"
#include "tests/unit/faults/FailingCalls.h"

namespace tolvane::test {
namespace {

// Whatever the system refuses, an exchange ends in time, with a reason, and leaves nothing open.
class FailingSockets : public ::testing::Test {
protected:
    FailingSockets() {
        simulator::TScaleOptions options;
        options.udpPort = 0;
        options.keepsRequests = false;
        scale_ = std::make_unique<simulator::TVirtualScale>(options);
        scale_->Start();
    }

    using TMakeChannel = std::function<std::unique_ptr<TDevComm>(TClock&)>;

    std::unique_ptr<TDevComm> Tcp(TClock& clock) {
        auto channel = std::make_unique<TDevCommTCP>(clock);
        channel->SetHost("127.0.0.1");
        channel->SetPort(scale_->Port());
        return channel;
    }
    std::unique_ptr<TDevComm> Udp(TClock& clock) {
        auto channel = std::make_unique<TDevCommUDP>(clock, std::uint16_t{0});
        channel->SetHost("127.0.0.1");
        channel->SetPort(scale_->UdpPort());
        return channel;
    }

    // Opens a scale and asks it twice. Why that failed; empty when it did not.
    std::string Exchange(const TMakeChannel& make, TClock& clock) {
        try {
            TElicomScale scale(make(clock), false, clock);
            std::int32_t errCode = 0;
            std::int32_t maxPlu = 0;
            std::int32_t mode = 0;
            std::string version;
            if (scale.OpenChannel() && scale.SetPrgMode(errCode) &&
                scale.GetVersion(errCode, maxPlu, mode, version)) {
                return {};
            }
            EXPECT_NE(scale.LastError, "");
            return scale.LastError;
        } catch (const std::system_error& error) {
            return FailureText(error);
        }
    }
    // All that may be told about a call that the system refuses.
    static std::vector<std::string> Texts(const std::string& link, std::uint16_t port) {
        const std::string at = " (127.0.0.1:" + std::to_string(port) + ") - ";
        const std::string refused = "Input/output error (5)";
        const std::string lost = "Socket is not connected.";
        std::vector<std::string> texts = {refused};  // the channel cannot be made
        for (const std::string& reason : {refused, lost, std::string("Connect timed out.")})
            texts.push_back("Fail init communication interface: " + link + " Fail open" + at +
                            reason);
        for (const std::string& command :
             {std::string("Fail set Weight mode: "), std::string("Fail get version: ")}) {
            for (const std::string& reason : {refused, lost})
                texts.push_back(command + "[SendData]" + link + " Fail send data" + at + reason);
            for (const std::string& reason : {refused, lost, std::string("Read timeout occured")})
                texts.push_back(command + "[ReadResponce]" + link + " Fail read data" + at +
                                reason);
        }
        return texts;
    }

    void FailEachCall(const TMakeChannel& make, const std::vector<std::string>& texts) {
        using std::chrono::steady_clock;
        std::size_t all = 0;
        {
            const TFailingCalls calls(0, TFailingCalls::Once);
            ASSERT_EQ(Exchange(make, patient_), "");
            all = TFailingCalls::Calls().size();
        }
        ASSERT_GT(all, 10U);
        int failures = 0;
        for (std::size_t n = 1; n <= all; ++n) {
            for (const auto howLong : {TFailingCalls::Once, TFailingCalls::ForGood}) {
                const int before = OpenDescriptors();
                const auto start = steady_clock::now();
                std::string told;
                std::string name;
                {
                    const TFailingCalls calls(static_cast<int>(n), howLong);
                    told = Exchange(make, hurried_);
                    const std::vector<std::string> names = TFailingCalls::Calls();
                    name = n <= names.size() ? names[n - 1] : "none";
                }
                SCOPED_TRACE(std::to_string(n) + " " + name +
                             (howLong == TFailingCalls::Once ? " once" : " for good"));
                EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(5));
                EXPECT_TRUE(told.empty() ||
                            std::find(texts.begin(), texts.end(), told) != texts.end())
                    << told;
                EXPECT_EQ(OpenDescriptors(), before);
                failures += told.empty() ? 0 : 1;
                ASSERT_EQ(Exchange(make, patient_), "");
            }
        }
        RecordProperty("calls", static_cast<int>(all));
        RecordProperty("told", failures);
    }

    TQuickClock hurried_{{.faster = 30}};  // where a time-out may be waited for
    TQuickClock patient_{{.shorterPauses = 30}};
    std::unique_ptr<simulator::TVirtualScale> scale_;
};

TEST_F(FailingSockets, OverTcpEveryCallMayFail) {
    FailEachCall([this](TClock& clock) { return Tcp(clock); }, Texts("[TCP]", scale_->Port()));
}

TEST_F(FailingSockets, OverUdpEveryCallMayFail) {
    FailEachCall([this](TClock& clock) { return Udp(clock); }, Texts("[UDP]", scale_->UdpPort()));
}

// A channel that went on to its receive would wait there for as long as the scale is silent.
TEST_F(FailingSockets, AnAnswerThatCannotBeWaitedForIsAFailure) {
    const auto errorOf = [](TDevComm& channel, int failingCall) {
        EXPECT_TRUE(channel.Open());
        TCmdBuffer reply;
        const TFailingCalls calls(failingCall, TFailingCalls::Once);
        EXPECT_EQ(channel.ReadAnswer(reply, kReplyStart, kFrameEnd, 1000), kReadOtherFailure);
        EXPECT_EQ(TFailingCalls::Calls().back(), "poll");
        return channel.LastError;
    };
    const std::string port = std::to_string(scale_->Port());
    EXPECT_EQ(errorOf(*Tcp(patient_), 1),
              "[TCP] Fail read data (127.0.0.1:" + port + ") - Input/output error (5)");
    const std::string udpPort = std::to_string(scale_->UdpPort());
    EXPECT_EQ(errorOf(*Udp(patient_), 1),
              "[UDP] Fail read data (127.0.0.1:" + udpPort + ") - Input/output error (5)");
}

// Three looks at it take longer than a probe.
class TLookedAtClock : public TClock {
public:
    TTimePoint Now() const override { return now_ += TMilliseconds(400); }
    void Sleep(TMilliseconds) override {}

private:
    mutable TTimePoint now_{};
};

TEST_F(FailingSockets, ASearchGoesOnWithItsOtherProbes) {
    simulator::TScaleOptions options;
    for (const auto probe :
         {simulator::TProbe::Character, simulator::TProbe::Find, simulator::TProbe::Converter})
        options.probes.push_back(
            {.probe = probe, .port = std::uint16_t{0}, .replies = 3, .reply = {'A'}});
    simulator::TVirtualScale module(options);
    module.Start();
    TDiscoveryTarget target{.address = "127.0.0.1"};
    target.ports = {module.ProbePort(simulator::TProbe::Character),
                    module.ProbePort(simulator::TProbe::Find),
                    module.ProbePort(simulator::TProbe::Converter)};
    target.findLocalPort = FreeUdpPort();
    const std::atomic<bool> stop{false};
    std::size_t found = 0;
    std::vector<std::string> failures;
    const auto search = [&](int failing, TFailingCalls::THowLong howLong) {
        found = 0;
        failures.clear();
        TLookedAtClock clock;
        const TFailingCalls calls(failing, howLong);
        FindDevices(
            clock, stop, [&](const std::vector<TFoundDevice>& devices) { found += devices.size(); },
            target, &MakeProbeSocket,
            [&](const TProbeFailure& failure) { failures.push_back(failure.text); });
        return TFailingCalls::Calls();
    };
    const std::vector<std::string> all = search(0, TFailingCalls::Once);
    ASSERT_EQ(found, 3U);
    ASSERT_GT(all.size(), 15U);
    int told = 0;
    for (std::size_t n = 1; n <= all.size(); ++n) {
        for (const auto howLong : {TFailingCalls::Once, TFailingCalls::ForGood}) {
            SCOPED_TRACE(std::to_string(n) + " " + all[n - 1] +
                         (howLong == TFailingCalls::Once ? " once" : " for good"));
            const int before = OpenDescriptors();
            search(static_cast<int>(n), howLong);
            EXPECT_EQ(OpenDescriptors(), before);
            for (const std::string& failure : failures)
                EXPECT_EQ(failure, "Input/output error (5)");
            if (howLong == TFailingCalls::Once) {
                EXPECT_LE(failures.size(), 1U);
                EXPECT_GE(found, 2U);
            }
            told += static_cast<int>(failures.size());
        }
    }
    RecordProperty("calls", static_cast<int>(all.size()));
    RecordProperty("told", told);
    search(0, TFailingCalls::Once);
    EXPECT_EQ(found, 3U);
}

}  // namespace
}  // namespace tolvane::test
