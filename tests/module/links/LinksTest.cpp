// Virtual scales on a COM port and at addresses of their own. The steps that start this program
// start them too, and name them in the environment: TOLVANE_LINKS_SERIAL is the port of an EVL with
// address 5 (on COM6 is one that goes away at its second request), TOLVANE_LINKS_UDP1 and _UDP2 are
// the addresses of an ETS and an EVL, TOLVANE_LINKS_TCP is that of an SI/S300 on port 1001.
#include "tests/module/links/LinksFixture.h"

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>

#include "system/SystemError.h"
#include "tests/support/scales/FoundDevices.h"
#include "tests/support/scales/TestScales.h"

namespace tolvane::test {
namespace {

constexpr int kRounds = 50;

struct TConfigured {
    const char* name;
    const char* setting;
    std::uint8_t commType;
    std::int32_t scaleType;
    std::uint8_t address;
};

constexpr TConfigured kSerial{"serial", "SERIAL", kCommSerial, kScaleTypeEvl, 5};
// A network scale is addressed as 0 whatever its record says.
constexpr TConfigured kUdp1{"udp1", "UDP1", kCommUdp, kScaleTypeEts, 7};
constexpr TConfigured kUdp2{"udp2", "UDP2", kCommUdp, kScaleTypeEvl, 7};
constexpr TConfigured kTcp{"tcp", "TCP", kCommTcp, kScaleTypeS300, 7};

TScaleRec RecordOf(const TConfigured& configured) {
    TScaleRec rec = NetworkScale(1, "Scale", Setting(configured.setting), 1001);
    rec.BaudRate = 4;
    rec.ScaleType = configured.scaleType;
    rec.CommType = configured.commType;
    rec.Encoding = 0;
    rec.ScaleAddr = configured.address;
    return rec;
}

class LinksTest : public LinksFixture {
public:
    void ExpectUpload(const TConfigured& configured, int number, const std::string& price,
                      int hundredths) {
        LinksFixture::ExpectUpload(RecordOf(configured), configured.name, number, price,
                                   hundredths);
    }
};

using LinksSerialTest = LinksTest;
using LinksNetworkTest = LinksTest;

void ExpectVersions(TElicomScale& scale, const std::string& expected) {
    std::int32_t errCode = 0;
    std::int32_t maxPlu = 0;
    std::int32_t mode = 0;
    std::string version;
    ASSERT_TRUE(scale.GetVersion(errCode, maxPlu, mode, version)) << scale.LastError;
    ASSERT_EQ(version, expected);
}

TEST_F(LinksSerialTest, AScaleOnAComPortTakesAnArticleUnderItsAddress) {
    ExpectUpload(kSerial, 12, "7.45", 745);
    ExpectUpload(kSerial, 12, "8.01", 801);
}

TEST_F(LinksSerialTest, AComPortThatIsNotThereFailsWithTheSystemsWords) {
    const auto scale = factory.CreateRS232(77, 9600);
    EXPECT_FALSE(scale->OpenChannel());
    EXPECT_EQ(scale->LastError,
              "Fail init communication interface: [RS232] Fail open \"COM77\" - " +
                  SystemErrorText(std::error_code(2, std::system_category())));
}

// The system answers "not ready" to every call on a port whose other end has gone.
TEST_F(LinksSerialTest, AScaleThatGoesAwayFailsWithTheSystemsWordsAndLeavesOtherPortsAlone) {
    const std::string notReady = SystemErrorText(std::error_code(21, std::system_category()));
    const auto scale = factory.CreateRS232(6, 9600);
    ASSERT_TRUE(scale->OpenChannel()) << scale->LastError;
    ExpectVersions(*scale, "1.04");
    TCmdBuffer data;
    EXPECT_FALSE(scale->SendCommand(0x48, data));
    EXPECT_EQ(scale->LastError, "[ReadResponce][RS232] Fail receive data (COM6): " + notReady);
    EXPECT_FALSE(scale->SendCommand(0x48, data));
    EXPECT_EQ(scale->LastError, "[SendData][RS232] Fail send data (COM6): " + notReady);
    const auto other = factory.CreateRS232(5, 115200);
    other->Address = 5;
    ASSERT_TRUE(other->OpenChannel()) << other->LastError;
    ExpectVersions(*other, "1.04");
}

TEST_F(LinksSerialTest, ManyExchangesFollowEachOtherOnAComPort) {
    const auto scale = factory.CreateRS232(5, 115200);
    scale->Address = 5;
    ASSERT_TRUE(scale->OpenChannel()) << scale->LastError;
    for (int i = 0; i < kRounds; ++i)
        ExpectVersions(*scale, "1.04");
}

TEST_F(LinksNetworkTest, ThreeScalesOnThreeAddressesTakeTheirArticlesInOneRun) {
    ExpectUpload(kUdp1, 13, "1.11", 111);
    ExpectUpload(kUdp2, 13, "2.22", 222);
    ExpectUpload(kTcp, 13, "3.33", 333);
    EXPECT_EQ(PriceIn("udp1", 13), 111);
    EXPECT_EQ(PriceIn("udp2", 13), 222);
}

TEST_F(LinksNetworkTest, UdpTcpAndSerialAreOpenAtOnceAndEachReplyFindsItsRequest) {
    const auto udp = factory.CreateUDP(Setting("UDP1"));
    const auto tcp = factory.CreateTCP(Setting("TCP"), 1001);
    const auto serial = factory.CreateRS232(5, 115200);
    serial->Address = 5;
    for (TElicomScale* scale : {udp.get(), tcp.get(), serial.get()})
        ASSERT_TRUE(scale->OpenChannel()) << scale->LastError;
    for (int i = 0; i < kRounds; ++i) {
        ExpectVersions(*udp, "2.10");
        ExpectVersions(*tcp, "3.02");
        ExpectVersions(*serial, "1.04");
    }
}

TEST_F(LinksNetworkTest, ASecondUdpScaleFindsTheLocalPortTakenUntilTheFirstIsClosed) {
    const auto first = factory.CreateUDP(Setting("UDP1"));
    const auto second = factory.CreateUDP(Setting("UDP2"));
    ASSERT_TRUE(first->OpenChannel()) << first->LastError;
    EXPECT_FALSE(second->OpenChannel());
    EXPECT_EQ(second->LastError,
              "Fail init communication interface: [UDP] Fail open (" + Setting("UDP2") +
                  ":1001) - " + SystemErrorText(std::error_code(10048, std::system_category())));
    ExpectVersions(*first, "2.10");
    first->Channel->Close();
    ASSERT_TRUE(second->OpenChannel()) << second->LastError;
    ExpectVersions(*second, "1.04");
}

TEST_F(LinksNetworkTest, ASearchByBroadcastFindsTheScalesByTheirKinds) {
    const std::string udp1 = Setting("UDP1");
    const std::string udp2 = Setting("UDP2");
    // Each UDP module answers both of its probes.
    EXPECT_EQ(Sorted(FoundDevices(SystemClock(), false)),
              Sorted({Udp(udp1), Udp(udp1), Udp(udp2), Udp(udp2), Tcp(Setting("TCP"))}));
}

TEST_F(LinksNetworkTest, ASearchWhoseLocalPort5001IsTakenFindsWhatTheOtherProbesFind) {
    asio::io_context io;
    const asio::ip::udp::socket holder(io, {asio::ip::udp::v4(), 5001});
    EXPECT_EQ(Sorted(FoundDevices(SystemClock(), false)),
              Sorted({Udp(Setting("UDP1")), Udp(Setting("UDP2")), Tcp(Setting("TCP"))}));
}

TEST_F(LinksNetworkTest, AScaleThatDoesNotListenOnTcpRefusesTheConnection) {
    const auto scale = factory.CreateTCP(Setting("UDP1"), 1001);
    EXPECT_FALSE(scale->OpenChannel());
    EXPECT_EQ(scale->LastError,
              "Fail init communication interface: [TCP] Fail open (" + Setting("UDP1") +
                  ":1001) - " + SystemErrorText(std::error_code(10061, std::system_category())));
}

}  // namespace
}  // namespace tolvane::test
