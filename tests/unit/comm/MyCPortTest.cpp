#include "comm/MyCPort.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(MyCPortTest, EveryNameIsItsPosition) {
    EXPECT_EQ(
        (std::vector<int>{brCustom, br110, br300, br600, br1200, br2400, br4800, br9600, br14400,
                          br19200, br38400, br56000, br57600, br115200, br128000, br256000}),
        (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
    EXPECT_EQ((std::vector<int>{sbOneStopBit, sbOne5StopBits, sbTwoStopBits}),
              (std::vector<int>{0, 1, 2}));
    EXPECT_EQ((std::vector<int>{dbFive, dbSix, dbSeven, dbEight}), (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ((std::vector<int>{prNone, prOdd, prEven, prMark, prSpace}),
              (std::vector<int>{0, 1, 2, 3, 4}));
    EXPECT_EQ((std::vector<int>{fcHardware, fcSoftware, fcNone, fcCustom}),
              (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ((std::vector<int>{evRxChar, evTxEmpty, evRxFlag, evRing, evBreak, evCTS, evDSR,
                                evError, evRLSD, evRx80Full}),
              (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST(MyCPortTest, SpeedsAndTheirNamesMatch) {
    EXPECT_EQ(BaudRateOf(9600), br9600);
    EXPECT_EQ(BaudRateOf(19200), br19200);
    EXPECT_EQ(BaudRateOf(38400), br38400);
    EXPECT_EQ(BaudRateOf(57600), br57600);
    EXPECT_EQ(BaudRateOf(115200), br115200);
    EXPECT_EQ(BaudRateOf(110), br110);
    EXPECT_EQ(BaudRateOf(256000), br256000);
    EXPECT_EQ(BaudRateOf(0), brCustom);
    EXPECT_EQ(BaudRateOf(-1), brCustom);
    EXPECT_EQ(BaudRateOf(12345), brCustom);
}

TEST(MyCPortTest, ANewPortIsClosedAndClosingItAgainDoesNothing) {
    TComPort port;
    EXPECT_FALSE(port.Connected());
    port.Close();
    EXPECT_FALSE(port.Connected());
}

}  // namespace
}  // namespace tolvane
