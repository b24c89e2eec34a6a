#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "SessionFixture.h"
#include "config/TypesUnit.h"
#include "tests/support/scales/TestScales.h"

namespace tolvane {
namespace {

using test::TEvents;

class InitCommTest : public test::TSessionTest {
protected:
    static TScaleRec Serial(std::string_view port, std::uint8_t baudRate) {
        TScaleRec rec = SerialScale(7, "A", port);
        rec.BaudRate = baudRate;
        rec.ScaleAddr = 5;
        return rec;
    }
    static TScaleRec Network(std::uint8_t commType, std::uint16_t port) {
        TScaleRec rec = NetworkScale(7, "A", "10.0.0.7", port);
        rec.CommType = commType;
        rec.ScaleAddr = 5;
        rec.ScaleType = kScaleTypeEts;
        return rec;
    }
    // Connects. Returns the only event of opening the scale.
    std::string Opened(const TScaleRec& rec) {
        events_.clear();
        EXPECT_TRUE(session_.InitComm(rec));
        const TEvents opened = test::Filtered(events_, {"open"});
        return opened.size() == 1 ? opened.front() : "not one opening";
    }
    // Answers wrongly until the driver gives up. Returns the number of requests: one more than the
    // driver repeats.
    std::size_t RequestsUntilGivenUp() {
        scale_->wrongAnswers = true;
        EXPECT_FALSE(session_.ProcessUpload({}, {}));
        std::size_t count = 0;
        for (const test::TRequest& request : scale_->requests)
            count += request.command == 0x36 ? 1U : 0U;
        return count;
    }
};

TEST_F(InitCommTest, ASerialScaleIsOpenedOnTheNumberAfterCom) {
    EXPECT_EQ(Opened(Serial("COM12", 0)), "open COM12 9600");
    EXPECT_EQ(Opened(Serial("COM1", 0)), "open COM1 9600");
    EXPECT_EQ(Opened(Serial("COM123", 0)), "open COM123 9600");
}

TEST_F(InitCommTest, APortNumberHasAtMostThreeDigits) {
    EXPECT_EQ(Opened(Serial("COM1234", 0)), "open COM123 9600");
}

TEST_F(InitCommTest, ASerialScaleWithoutANumberIsOpenedOnPort1) {
    EXPECT_EQ(Opened(Serial("COMx", 0)), "open COM1 9600");
    EXPECT_EQ(Opened(Serial("COM", 0)), "open COM1 9600");
    EXPECT_EQ(Opened(Serial("C", 0)), "open COM1 9600");
}

TEST_F(InitCommTest, TheBaudRateIndexGivesTheSpeed) {
    EXPECT_EQ(Opened(Serial("COM2", 0)), "open COM2 9600");
    EXPECT_EQ(Opened(Serial("COM2", 1)), "open COM2 19200");
    EXPECT_EQ(Opened(Serial("COM2", 2)), "open COM2 38400");
    EXPECT_EQ(Opened(Serial("COM2", 3)), "open COM2 57600");
    EXPECT_EQ(Opened(Serial("COM2", 4)), "open COM2 115200");
}

TEST_F(InitCommTest, ASerialScaleWithBaudRate7IsOpenedAt38400) {
    EXPECT_EQ(Opened(Serial("COM2", 7)), "open COM2 38400");
    EXPECT_EQ(Opened(Serial("COM2", 255)), "open COM2 38400");
}

TEST_F(InitCommTest, ATcpScaleIsOpenedOnItsConfiguredPort) {
    EXPECT_EQ(Opened(Network(kCommTcp, 2000)), "open TCP 10.0.0.7:2000");
}

TEST_F(InitCommTest, AUdpScaleConfiguredWithPort2000IsOpenedByItsAddressAlone) {
    EXPECT_EQ(Opened(Network(kCommUdp, 2000)), "open UDP 10.0.0.7");
}

TEST_F(InitCommTest, ASerialScaleIsAddressedByItsNumber) {
    ASSERT_TRUE(session_.InitComm(Serial("COM1", 0)));
    ASSERT_TRUE(session_.ProcessUpload({}, {}));
    ASSERT_FALSE(scale_->requests.empty());
    for (const test::TRequest& request : scale_->requests)
        EXPECT_EQ(request.address, 5);
}

TEST_F(InitCommTest, ANetworkScaleConfiguredWithScaleAddr5IsAddressedAs0InEveryFrame) {
    for (const std::uint8_t commType : {kCommTcp, kCommUdp}) {
        scale_->requests.clear();
        ASSERT_TRUE(session_.InitComm(Network(commType, 1001)));
        ASSERT_TRUE(session_.ProcessUpload({}, {}));
        ASSERT_FALSE(scale_->requests.empty());
        for (const test::TRequest& request : scale_->requests)
            EXPECT_EQ(request.address, 0);
    }
}

TEST_F(InitCommTest, ASerialScaleIsAskedAgainTenTimes) {
    ASSERT_TRUE(session_.InitComm(Serial("COM1", 0)));
    EXPECT_EQ(RequestsUntilGivenUp(), 11U);
}

TEST_F(InitCommTest, ANetworkScaleIsAskedAgainThreeTimes) {
    ASSERT_TRUE(session_.InitComm(Network(kCommTcp, 1001)));
    EXPECT_EQ(RequestsUntilGivenUp(), 4U);
}

TEST_F(InitCommTest, TheDriverLearnsTheScaleType) {
    scale_->mode = 2;
    TScaleRec s300 = Network(kCommTcp, 1001);
    s300.ScaleType = kScaleTypeS300;
    // Text 20 is 31 characters long for a driver of type EVL and 63 for any other.
    const auto lengthOfText20 = [&](std::int32_t driverType) {
        TScaleRec rec = s300;
        rec.ScaleType = driverType;
        scale_->requests.clear();
        EXPECT_TRUE(session_.InitComm(rec));
        EXPECT_TRUE(session_.ProcessUpload({"1|22001|1|0|0|1.00|0|0|A|B|c||||0|0|1|"}, s300));
        for (const test::TRequest& request : scale_->requests) {
            if (request.command == 0x4C && request.data.at(3) == 20) return int{request.data.at(4)};
        }
        return -1;
    };
    EXPECT_EQ(lengthOfText20(kScaleTypeS300), 63);
    EXPECT_EQ(lengthOfText20(kScaleTypeEts), 63);
    EXPECT_EQ(lengthOfText20(kScaleTypeEvl), 31);
}

TEST_F(InitCommTest, AnUnknownCommunicationTypeFailsWithoutADriver) {
    EXPECT_FALSE(session_.InitComm(Network(3, 1001)));
    EXPECT_EQ(session_.LastError, "InitComm >> Invalid communication type.");
    EXPECT_EQ(events_, TEvents{});
    EXPECT_FALSE(session_.ProcessUpload({}, {}));
}

TEST_F(InitCommTest, AFailedOpeningLeavesTheDriversTextAndKeepsTheDriver) {
    scale_->openError = "[TCP] Fail open (10.0.0.7:1001) - refused";
    EXPECT_FALSE(session_.InitComm(Network(kCommTcp, 1001)));
    EXPECT_EQ(session_.LastError,
              "InitComm >> Fail init communication interface: "
              "[TCP] Fail open (10.0.0.7:1001) - refused");
    EXPECT_EQ(events_, (TEvents{"open TCP 10.0.0.7:1001"}));
    session_.Close();
    EXPECT_EQ(events_.back(), "freed");
}

TEST_F(InitCommTest, ANewDriverReplacesTheOneHeldAndClearsTheLastError) {
    ASSERT_TRUE(session_.InitComm(Network(kCommTcp, 1001)));
    session_.LastError = "old";
    ASSERT_TRUE(session_.InitComm(Network(kCommUdp, 1001)));
    EXPECT_EQ(session_.LastError, "");
    EXPECT_EQ(events_, (TEvents{"open TCP 10.0.0.7:1001", "freed", "open UDP 10.0.0.7"}));
}

TEST(TRealScaleFactory, DriversHaveTheChannelsOfTheirLinks) {
    TEvents events;
    test::TFakeClock clock(events);
    TRealScaleFactory factory(clock);
    EXPECT_EQ(factory.CreateRS232(12, 38400)->Channel->GetDescription(), "RS232 (COM12)");
    EXPECT_EQ(factory.CreateTCP("10.0.0.7", 2000)->Channel->GetDescription(),
              "TCP (10.0.0.7:2000)");
}

TEST(TRealScaleFactory, AUdpScaleIsReachedOnPort1001) {
    TEvents events;
    test::TFakeClock clock(events);
    TRealScaleFactory factory(clock);
    EXPECT_EQ(factory.CreateUDP("10.0.0.7")->Channel->GetDescription(), "UDP (10.0.0.7:1001)");
}

}  // namespace
}  // namespace tolvane
