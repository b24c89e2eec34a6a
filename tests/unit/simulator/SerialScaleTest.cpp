#include <gtest/gtest.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <asio/posix/stream_descriptor.hpp>
#include <asio/serial_port.hpp>
#include <filesystem>

#include "StreamClient.h"
#include "simulator/VirtualScale.h"
#include "tests/support/ScratchFolder.h"

namespace tolvane::simulator {
namespace {

TScaleOptions SerialOptions() {
    TScaleOptions options;
    options.tcpPort.reset();
    return options;
}

class TSerialClient : public TStreamClient<asio::serial_port> {
public:
    explicit TSerialClient(const std::string& device) { Stream().open(device); }
};

// The cable's end at the computer, when the scale opens a port of its own.
class TPtyEnd : public TStreamClient<asio::posix::stream_descriptor> {
public:
    TPtyEnd() {
        int computer = -1;
        int scale = -1;
        std::array<char, 256> name{};
        termios raw{};
        ::cfmakeraw(&raw);
        if (::openpty(&computer, &scale, name.data(), &raw, nullptr) != 0)
            throw std::system_error(errno, std::generic_category(), "openpty");
        ::close(scale);
        Stream().assign(computer);
        device_ = name.data();
    }
    const std::string& Device() const { return device_; }

private:
    std::string device_;
};

TEST(SerialScaleTest, APort_IsServed) {
    TPtyEnd computer;
    TScaleOptions options = SerialOptions();
    options.serialDevice = computer.Device();
    options.baudRate = 115200;
    TVirtualScale scale(options);
    scale.Start();
    EXPECT_EQ(scale.Endpoints(), std::vector{"serial " + computer.Device()});
    EXPECT_EQ(scale.SerialDevice(), computer.Device());
    EXPECT_EQ(computer.Ask("FF " + kAskPrgMode, 7), Bytes(kPrgMode));
    EXPECT_EQ(computer.Ask(kAskVersion, 23), Bytes(kVersion));
}

TEST(SerialScaleTest, APortThatDoesNotExist_CannotBeOpened) {
    TScaleOptions options = SerialOptions();
    options.serialDevice = "/dev/no-such-port";
    TVirtualScale scale(options);
    EXPECT_THROW(scale.Start(), std::system_error);
}

TEST(SerialScaleTest, APortThatVanishes_DoesNotKeepStopWaiting) {
    TScaleOptions options = SerialOptions();
    auto computer = std::make_unique<TPtyEnd>();
    options.serialDevice = computer->Device();
    TVirtualScale scale(options);
    scale.Start();
    EXPECT_EQ(computer->Ask(kAskPrgMode, 7), Bytes(kPrgMode));
    computer.reset();
    const auto before = std::chrono::steady_clock::now();
    scale.Stop();
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(1));
}

class PtyScaleTest : public testing::Test {
protected:
    TVirtualScale Scale() const {
        TScaleOptions options = SerialOptions();
        options.pty = true;
        options.ptyLink = Link();
        return TVirtualScale(options);
    }
    std::string Link() const { return (folder_ / "line").string(); }

private:
    TScratchFolder folder_;
};

TEST_F(PtyScaleTest, ClientsComeAndGo) {
    TVirtualScale scale = Scale();
    scale.Start();
    EXPECT_EQ(scale.SerialDevice(), Link());
    EXPECT_EQ(scale.Endpoints(), std::vector{"serial " + Link()});
    for (int i = 0; i < 3; ++i) {
        TSerialClient client(Link());
        EXPECT_EQ(client.Ask(kAskPrgMode, 7), Bytes(kPrgMode));
    }
}

TEST_F(PtyScaleTest, TheLink_GoesWhenTheScaleStopsAndReplacesAnOldOne) {
    std::filesystem::create_symlink("/nowhere", Link());
    TVirtualScale scale = Scale();
    scale.Start();
    TSerialClient client(Link());
    EXPECT_EQ(client.Ask(kAskPrgMode, 7), Bytes(kPrgMode));
    scale.Stop();
    EXPECT_FALSE(std::filesystem::is_symlink(Link()));
}

TEST_F(PtyScaleTest, Disconnect_TakesThePortAway) {
    TVirtualScale scale = Scale();
    scale.SetFaults({.faults = {{.kind = TFaultKind::Drop}}});
    scale.Start();
    TSerialClient client(Link());
    EXPECT_EQ(client.Ask(kAskPrgMode, 1), TBytes());
    EXPECT_TRUE(client.Error());
    EXPECT_NE(client.Error(), asio::error::operation_aborted);
}

TEST_F(PtyScaleTest, Start_BringsThePortBack) {
    TVirtualScale scale = Scale();
    scale.SetFaults({.faults = {{.kind = TFaultKind::Drop, .request = 1}}});
    scale.Start();
    {
        TSerialClient client(Link());
        EXPECT_EQ(client.Ask(kAskPrgMode, 1), TBytes());
    }
    scale.Start();
    TSerialClient client(Link());
    EXPECT_EQ(client.Ask(kAskPrgMode, 7), Bytes(kPrgMode));
}

}  // namespace
}  // namespace tolvane::simulator
