// The serial channel on COM ports. On COM7 is an EVL that does not answer 3C and answers 48 late,
// by 300 ms; on COM8 is one that goes away at its second request. When the test asks for it by a
// file in TOLVANE_LINKS_FOLDER, that port is removed, and another one put there.
#include <fstream>

#include "comm/TDevCommRS232.h"
#include "system/SystemError.h"
#include "tests/module/links/ComPort.h"
#include "tests/module/links/LinksFixture.h"
#include "tests/support/RealTime.h"

namespace tolvane::test {
namespace {

const TCmdBuffer kSetPrgMode = {0x04, 0x0D, 0x14, 0x4A, 0x4A, 0x03};
const TCmdBuffer kPrgModeIsSet = {0x02, 0x0D, 0x14, 0x4A, 0x14, 0x4A, 0x03};
const TCmdBuffer kSetWeightMode = {0x04, 0x0D, 0x14, 0x50, 0x50, 0x03};
const TCmdBuffer kGetVersion = {0x04, 0x0D, 0x14, 0x5C, 0x5C, 0x03};
constexpr std::size_t kVersionLength = 23;

// Asks for something by a file. Returns when it has been done.
void Ask(const std::string& what, const std::string& done) {
    const std::string files = Setting("FOLDER") + "\\plugged.";
    std::ofstream(files + what) << what;
    const TTimePoint deadline = SystemClock().Now() + TMilliseconds(60000);
    while (!std::ifstream(files + done)) {
        ASSERT_LT(SystemClock().Now(), deadline) << "nobody does what was asked for: " << what;
        SwitchToThread();
    }
}

class LinksSerialPortTest : public LinksFixture {
public:
    void Open(const std::string& name) {
        channel.SetPort(name);
        ASSERT_TRUE(channel.Open()) << channel.LastError;
    }
    std::int32_t Read(std::int32_t timeoutMs) {
        return channel.ReadAnswer(reply, 0x02, 0x03, timeoutMs);
    }
    void ExpectExchange() {
        ASSERT_TRUE(channel.SendData(kSetPrgMode)) << channel.LastError;
        EXPECT_EQ(Read(5000), kReadOk) << channel.LastError;
        EXPECT_EQ(reply, kPrgModeIsSet);
    }

    TDevCommRS232 channel{SystemClock()};
    TCmdBuffer reply;
};

TEST_F(LinksSerialPortTest, ASilentScaleEndsTheReadAfter1000MsWithTheTimeOutsWords) {
    Open("COM7");
    ExpectLasts(TMilliseconds(1000), [&] {
        EXPECT_TRUE(channel.SendData(kSetWeightMode)) << channel.LastError;
        EXPECT_EQ(Read(1000), kReadTimeout);
    });
    EXPECT_EQ(channel.LastError, "[RS232] Fail receive data (COM7): Read timeour occured");
    EXPECT_EQ(reply, TCmdBuffer{});
    ExpectExchange();
}

TEST_F(LinksSerialPortTest, AnAnswerThatComesTooLateIsNotTakenForTheNextOne) {
    Open("COM7");
    ASSERT_TRUE(channel.SendData(kGetVersion)) << channel.LastError;
    EXPECT_EQ(Read(50), kReadTimeout);
    EXPECT_EQ(channel.LastError, "[RS232] Fail receive data (COM7): Read timeour occured");
    ASSERT_TRUE(WaitForBytes(OpenComPort(), kVersionLength));
    ExpectExchange();
    EXPECT_EQ(BytesWaiting(OpenComPort()), 0U);
}

TEST_F(LinksSerialPortTest, WhatWaitsInThePortIsThrownAwayWhenItIsOpenedAgain) {
    Open("COM7");
    ASSERT_TRUE(channel.SendData(kGetVersion)) << channel.LastError;
    ASSERT_TRUE(WaitForBytes(OpenComPort(), kVersionLength));
    Open("COM7");
    EXPECT_EQ(BytesWaiting(OpenComPort()), 0U);
    ExpectExchange();
}

TEST_F(LinksSerialPortTest, APortThatVanishedIsOpenedAgainByTheSameChannelWhenItIsBack) {
    const std::string notReady = SystemErrorText(std::error_code(21, std::system_category()));
    Open("COM8");
    ExpectExchange();
    ASSERT_TRUE(channel.SendData(kSetPrgMode)) << channel.LastError;
    EXPECT_EQ(Read(5000), kReadOtherFailure);
    EXPECT_EQ(channel.LastError, "[RS232] Fail receive data (COM8): " + notReady);
    Ask("unplug", "gone");
    EXPECT_FALSE(channel.Open());
    EXPECT_FALSE(channel.IsConnected());
    // Wine keeps the name of such a port and fails the first call on it.
    EXPECT_EQ(channel.LastError, "[RS232] Fail open \"COM8\" - " +
                                     SystemErrorText(std::error_code(1, std::system_category())));
    Ask("plug", "back");
    Open("COM8");
    ExpectExchange();
    ExpectExchange();
}

class LinksSerialSettingsTest : public LinksFixture, public testing::WithParamInterface<DWORD> {};

TEST_P(LinksSerialSettingsTest, AScalesPortIsOpenedWithItsSpeedAndPlainLineSettings) {
    const auto scale = factory.CreateRS232(7, static_cast<std::int32_t>(GetParam()));
    ASSERT_TRUE(scale->OpenChannel()) << scale->LastError;
    DCB line{};
    line.DCBlength = sizeof line;
    ASSERT_TRUE(GetCommState(OpenComPort(), &line));
    EXPECT_EQ(line.BaudRate, GetParam());
    EXPECT_EQ(line.ByteSize, 8);
    EXPECT_EQ(line.Parity, NOPARITY);
    EXPECT_EQ(line.StopBits, ONESTOPBIT);
    EXPECT_FALSE(line.fOutX);
    EXPECT_FALSE(line.fInX);
    EXPECT_FALSE(line.fOutxCtsFlow);
    EXPECT_FALSE(line.fOutxDsrFlow);
}

INSTANTIATE_TEST_SUITE_P(Speeds, LinksSerialSettingsTest,
                         testing::Values(9600, 19200, 38400, 57600, 115200));

// No scale has these settings. They show that those above are not merely what the system gives
// every port.
TEST_F(LinksSerialPortTest, OtherLineSettingsReachThePortToo) {
    channel.SetStopBits(sbTwoStopBits);
    channel.SetFlowControl(fcSoftware);
    Open("COM7");
    DCB line{};
    line.DCBlength = sizeof line;
    ASSERT_TRUE(GetCommState(OpenComPort(), &line));
    EXPECT_EQ(line.StopBits, TWOSTOPBITS);
    EXPECT_TRUE(line.fOutX);
    EXPECT_TRUE(line.fInX);
    channel.SetFlowControl(fcHardware);
    Open("COM7");
    ASSERT_TRUE(GetCommState(OpenComPort(), &line));
    EXPECT_TRUE(line.fOutxCtsFlow);
}

TEST_F(LinksSerialPortTest, ReadsNeverWaitInTheDriverAndWritesHaveNoTimeOut) {
    Open("COM7");
    COMMTIMEOUTS timeouts{1, 1, 1, 1, 1};
    ASSERT_TRUE(GetCommTimeouts(OpenComPort(), &timeouts));
    EXPECT_EQ(timeouts.ReadIntervalTimeout, MAXDWORD);
    EXPECT_EQ(timeouts.ReadTotalTimeoutMultiplier, 0U);
    EXPECT_EQ(timeouts.ReadTotalTimeoutConstant, 0U);
    EXPECT_EQ(timeouts.WriteTotalTimeoutMultiplier, 0U);
    EXPECT_EQ(timeouts.WriteTotalTimeoutConstant, 0U);
}

TEST_F(LinksSerialPortTest, TheWatchedEventsAreAllButAnEmptyOutputAnEventCharacterAndAFullBuffer) {
    Open("COM7");
    DWORD events = 0;
    ASSERT_TRUE(GetCommMask(OpenComPort(), &events));
    EXPECT_EQ(events, static_cast<DWORD>(EV_RXCHAR | EV_RING | EV_BREAK | EV_CTS | EV_DSR | EV_ERR |
                                         EV_RLSD));
}

}  // namespace
}  // namespace tolvane::test
