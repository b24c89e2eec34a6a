#include "command/LinkFactory.h"

#include <gtest/gtest.h>

#include "tests/support/RecordingClock.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/command/Shop.h"

namespace tolvane::test {
namespace {

std::string Names(const TLinkFactory& links, const TScaleRec& rec) {
    std::string names;
    for (const TComputerLock& lock : links.LocksOf(rec))
        names += lock.name + " of " + lock.what + "; ";
    return names;
}

TEST(LinkFactory, OpensTheDevicesThatPortsAreNamedAfter) {
    TRecordingClock clock;
    TLinkFactory links(clock, {{"COM1", "/dev/ttyUSB7"}}, 0);
    const auto description = [&](std::int32_t port) {
        return links.CreateRS232(port, 9600)->Channel->GetDescription();
    };
    EXPECT_NE(description(1).find("/dev/ttyUSB7"), std::string::npos) << description(1);
    EXPECT_EQ(description(2).find("/dev/ttyUSB7"), std::string::npos) << description(2);
    EXPECT_NE(links.CreateUDP("10.0.0.5")->Channel->GetDescription().find("10.0.0.5"),
              std::string::npos);
}

TEST(LinkLocks, AreTheScaleWhateverItsNumber) {
    TRecordingClock clock;
    const TLinkFactory links(clock, {}, 1001);
    TScaleRec rec = TcpScale();
    EXPECT_EQ(Names(links, rec), "tcp-10.0.0.5-1001.lock of this scale; ");
    rec.ScaleNumb = 17;
    EXPECT_EQ(Names(links, rec), "tcp-10.0.0.5-1001.lock of this scale; ");
}

// All UDP scales answer to one local port, which a second run could not open.
TEST(LinkLocks, OfUdpAreTheLocalPortToo) {
    TRecordingClock clock;
    EXPECT_EQ(Names(TLinkFactory(clock, {}, 1001), UdpScale()),
              "udp-10.0.0.5.lock of this scale; udp-port-1001 of the UDP port 1001; ");
    EXPECT_EQ(Names(TLinkFactory(clock, {}, 0), UdpScale()), "udp-10.0.0.5.lock of this scale; ");
}

#ifndef _WIN32
// COM1 of one configuration may be COM2 of another one.
TEST(LinkLocks, OfASerialScaleAreThePortItself) {
    TRecordingClock clock;
    const TScratchFolder folder;
    PutFile(folder / "port", "");
    std::filesystem::create_symlink(folder / "port", folder / "by-name");
    const std::string port = std::filesystem::canonical(folder / "port").string();
    const TLinkFactory links(
        clock, {{"COM1", port}, {"COM2", (folder / "by-name").string()}, {"COM4", "/dev/none"}},
        1001);
    TScaleRec rec = SerialScale();
    EXPECT_EQ(Names(links, rec), "com-" + port + " of this serial port; ");
    rec.TCPAddress = "COM2";
    EXPECT_EQ(Names(links, rec), "com-" + port + " of this serial port; ");
    rec.TCPAddress = "COM4";
    EXPECT_EQ(Names(links, rec), "com-/dev/none of this serial port; ");
}
#endif

}  // namespace
}  // namespace tolvane::test
