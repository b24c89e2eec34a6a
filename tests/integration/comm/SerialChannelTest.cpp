#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <filesystem>

#include "comm/TDevCommRS232.h"
#include "tests/integration/comm/Descriptors.h"
#include "tests/integration/comm/Frames.h"
#include "tests/integration/comm/SerialPeer.h"

namespace tolvane::test {
namespace {

class SerialChannelTest : public testing::Test {
public:
    SerialChannelTest() { channel.SetPort(peer.PortName()); }
    void SetUp() override { ASSERT_TRUE(channel.Open()) << channel.LastError; }
    std::int32_t Read(std::int32_t timeoutMs = 1000) {
        return channel.ReadAnswer(reply, 0x02, 0x03, timeoutMs);
    }
    std::string ReadFailure(const std::string& message) const {
        return "[RS232] Fail receive data (" + peer.PortName() + "): " + message;
    }
    termios LineSettings() const {
        termios settings{};
        EXPECT_EQ(tcgetattr(peer.PortDescriptor(), &settings), 0);
        return settings;
    }

    TSerialPeer peer;
    TRecordingClock clock;
    TDevCommRS232 channel{clock};
    TCmdBuffer reply;
};

TEST_F(SerialChannelTest, Open_APortThatDoesNotExistFails) {
    channel.SetPort("COM199");
    EXPECT_FALSE(channel.Open());
    EXPECT_FALSE(channel.IsConnected());
    EXPECT_EQ(channel.LastError, "[RS232] Fail open \"COM199\" - No such file or directory (2)");
    channel.SetPort("");
    EXPECT_FALSE(channel.Open());
    EXPECT_TRUE(channel.LastError.starts_with("[RS232] Fail open \"\" - ")) << channel.LastError;
}

TEST_F(SerialChannelTest, Open_SetsTheSpeed) {
    const std::vector<std::pair<TBaudRate, speed_t>> speeds = {{br9600, B9600},
                                                               {br19200, B19200},
                                                               {br38400, B38400},
                                                               {br57600, B57600},
                                                               {br115200, B115200}};
    for (const auto& [rate, speed] : speeds) {
        channel.SetBaudRate(rate);
        ASSERT_TRUE(channel.Open()) << channel.LastError;
        EXPECT_EQ(cfgetospeed(std::array{LineSettings()}.data()), speed) << rate;
        EXPECT_EQ(cfgetispeed(std::array{LineSettings()}.data()), speed) << rate;
    }
}

TEST_F(SerialChannelTest, Open_SetsEightDataBitsOneStopBitNoParityAndNoFlowControl) {
    const termios settings = LineSettings();
    EXPECT_EQ(settings.c_cflag & CSIZE, static_cast<tcflag_t>(CS8));
    EXPECT_EQ(settings.c_cflag & (CSTOPB | PARENB | CRTSCTS), 0U);
    EXPECT_EQ(settings.c_iflag & (IXON | IXOFF), 0U);
    EXPECT_EQ(settings.c_lflag & (ICANON | ECHO), 0U);
}

// A pseudo-terminal takes no other number of data bits and no parity.
TEST_F(SerialChannelTest, Open_SetsOtherLineSettingsToo) {
    channel.SetStopBits(sbTwoStopBits);
    channel.SetFlowControl(fcSoftware);
    ASSERT_TRUE(channel.Open()) << channel.LastError;
    const termios settings = LineSettings();
    EXPECT_NE(settings.c_cflag & CSTOPB, 0U);
    EXPECT_NE(settings.c_iflag & (IXON | IXOFF), 0U);
}

TEST_F(SerialChannelTest, Open_SetsHardwareFlowControl) {
    channel.SetFlowControl(fcHardware);
    ASSERT_TRUE(channel.Open()) << channel.LastError;
    EXPECT_NE(LineSettings().c_cflag & CRTSCTS, 0U);
}

TEST_F(SerialChannelTest, Open_AsksForParityWithoutFailing) {
    for (const TParityBits parity : {prOdd, prEven}) {
        channel.SetParity(parity);
        EXPECT_TRUE(channel.Open()) << channel.LastError;
    }
}

TEST_F(SerialChannelTest, Open_OneAndAHalfStopBitsAreRefusedByTheSystem) {
    channel.SetStopBits(sbOne5StopBits);
    EXPECT_FALSE(channel.Open());
    EXPECT_EQ(channel.LastError,
              "[RS232] Fail open \"" + peer.PortName() + "\" - Operation not supported (95)");
}

TEST_F(SerialChannelTest, Open_ASettingThatCannotBeHadFailsClearly) {
    const std::string prefix = "[RS232] Fail open \"" + peer.PortName() + "\" - ";
    channel.SetBaudRate(brCustom);
    EXPECT_FALSE(channel.Open());
    EXPECT_EQ(channel.LastError, prefix + "This speed is not supported.");
    EXPECT_FALSE(channel.IsConnected());
    channel.SetBaudRate(br9600);
    channel.SetParity(prMark);
    EXPECT_FALSE(channel.Open());
    EXPECT_EQ(channel.LastError, prefix + "This parity is not supported.");
    channel.SetParity(prNone);
    channel.SetFlowControl(fcCustom);
    EXPECT_FALSE(channel.Open());
    EXPECT_EQ(channel.LastError, prefix + "This flow control is not supported.");
}

TEST_F(SerialChannelTest, Open_PurgesWhatWaitsInThePort) {
    peer.Send(kFrame);
    ASSERT_TRUE(channel.Open());
    EXPECT_EQ(peer.BytesWaitingInPort(), 0);
}

TEST_F(SerialChannelTest, OpenAndSendData_PurgeBothBuffers) {
    peer.NoticePurges();
    ASSERT_TRUE(channel.Open());
    EXPECT_EQ(peer.PurgesNoticed(), TIOCPKT_FLUSHREAD | TIOCPKT_FLUSHWRITE);
    EXPECT_TRUE(channel.SendData({0x04, 0x03}));
    EXPECT_EQ(peer.PurgesNoticed(), TIOCPKT_FLUSHREAD | TIOCPKT_FLUSHWRITE);
}

TEST_F(SerialChannelTest, SendData_DiscardsBytesLeftOverFromAnEarlierExchange) {
    peer.Send({0x02, 0x41});
    EXPECT_EQ(Read(), kReadTimeout);
    peer.Send({0x42, 0x03, 0x02, 0x43, 0x03});  // too late
    EXPECT_TRUE(channel.SendData({0x04, 0x03}));
    EXPECT_EQ(peer.BytesWaitingInPort(), 0);
    peer.Send(kFrame);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
    EXPECT_EQ(reply, kFrame);
}

TEST_F(SerialChannelTest, ReadAnswer_LeavesBytesAfterTheEndInThePort) {
    peer.Send({0x02, 0x41, 0x03, 0x42, 0x43});
    EXPECT_EQ(Read(), kReadOk);
    EXPECT_EQ(peer.BytesWaitingInPort(), 2);
}

TEST_F(SerialChannelTest, ReadAnswer_WithNothingReceivedLastsTheWholeTimeInStepsOf10Ms) {
    EXPECT_EQ(Read(1000), kReadTimeout);
    EXPECT_EQ(clock.Passed(), TMilliseconds(1000));
    EXPECT_EQ(clock.pauses, std::vector<TMilliseconds>(100, TMilliseconds(10)));
    EXPECT_EQ(channel.LastError, ReadFailure("Read timeour occured"));
}

TEST_F(SerialChannelTest, ReadAnswer_WaitsNoLongerThanWhatIsLeft) {
    EXPECT_EQ(Read(25), kReadTimeout);
    EXPECT_EQ(clock.Passed(), TMilliseconds(25));
}

TEST_F(SerialChannelTest, ReadAnswer_DoesNotWaitForBytesThatAreThere) {
    peer.Send(kFrame);
    EXPECT_EQ(Read(), kReadOk);
    EXPECT_TRUE(clock.pauses.empty());
}

TEST_F(SerialChannelTest, APortWhoseOtherEndIsGoneFailsWithTheSystemsWords) {
    peer.Close();
    EXPECT_EQ(Read(), kReadOtherFailure);
    EXPECT_EQ(channel.LastError, ReadFailure("Input/output error (5)"));
    EXPECT_FALSE(channel.SendData({0x41}));
    EXPECT_EQ(channel.LastError,
              "[RS232] Fail send data (" + peer.PortName() + "): Input/output error (5)");
}

TEST_F(SerialChannelTest, APortWhoseOtherEndGoesInMidFrameFailsAtOnce) {
    peer.Send({0x02, 0x41});
    clock.onLook = [this, looks = 0]() mutable {
        if (++looks == 6) peer.Close();
    };
    EXPECT_EQ(Read(), kReadOtherFailure);
    EXPECT_EQ(channel.LastError, ReadFailure("Input/output error (5)"));
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41}));
    EXPECT_LE(clock.Passed(), TMilliseconds(100));
}

// An adapter that was pulled out and put back has the same name, but is another device.
TEST_F(SerialChannelTest, APortThatVanishedCanBeOpenedAgainWhenItIsBack) {
    const std::filesystem::path name =
        std::filesystem::temp_directory_path() / ("tolvane-port-" + std::to_string(::getpid()));
    auto plugged = std::make_unique<TSerialPeer>();
    std::filesystem::create_symlink(plugged->PortName(), name);
    channel.SetPort(name.string());
    ASSERT_TRUE(channel.Open()) << channel.LastError;
    plugged->Send({0x02, 0x41});
    clock.onLook = [&, looks = 0]() mutable {
        if (++looks != 6) return;
        plugged.reset();
        std::filesystem::remove(name);
    };
    EXPECT_EQ(Read(), kReadOtherFailure);
    EXPECT_EQ(channel.LastError,
              "[RS232] Fail receive data (" + name.string() + "): Input/output error (5)");
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41}));
    clock.onLook = nullptr;
    EXPECT_FALSE(channel.Open());
    EXPECT_FALSE(channel.IsConnected());
    EXPECT_EQ(channel.LastError,
              "[RS232] Fail open \"" + name.string() + "\" - No such file or directory (2)");
    plugged = std::make_unique<TSerialPeer>();
    std::filesystem::create_symlink(plugged->PortName(), name);
    EXPECT_TRUE(channel.Open()) << channel.LastError;
    EXPECT_TRUE(channel.SendData({0x04, 0x42, 0x03})) << channel.LastError;
    EXPECT_EQ(plugged->Receive(3), (TCmdBuffer{0x04, 0x42, 0x03}));
    plugged->Send(kFrame);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
    EXPECT_EQ(reply, kFrame);
    std::filesystem::remove(name);
}

TEST_F(SerialChannelTest, ADestroyedChannelClosesItsPort) {
    const std::ptrdiff_t before = OpenDescriptors();
    auto shortLived = std::make_unique<TDevCommRS232>(clock);
    shortLived->SetPort(peer.PortName());
    ASSERT_TRUE(shortLived->Open());
    EXPECT_GT(OpenDescriptors(), before);
    shortLived.reset();
    EXPECT_EQ(OpenDescriptors(), before);
    EXPECT_TRUE(channel.IsConnected());
    peer.Send(kFrame);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
}

TEST_F(SerialChannelTest, Open_FailingAfterThePortIsOpenClosesIt) {
    TDevCommRS232 other(clock);
    other.SetPort(peer.PortName());
    ASSERT_TRUE(other.Open());
    other.Close();
    const std::ptrdiff_t before = OpenDescriptors();
    other.SetBaudRate(brCustom);
    EXPECT_FALSE(other.Open());
    EXPECT_EQ(other.LastError,
              "[RS232] Fail open \"" + peer.PortName() + "\" - This speed is not supported.");
    EXPECT_EQ(OpenDescriptors(), before);
}

}  // namespace
}  // namespace tolvane::test
