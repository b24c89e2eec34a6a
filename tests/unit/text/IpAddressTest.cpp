#include "text/IpAddress.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(ParseIpV4Test, DottedAddressesHaveTheFirstGroupMostSignificant) {
    EXPECT_EQ(ParseIpV4("10.1.2.3"), 0x0A010203U);
    EXPECT_EQ(ParseIpV4("255.255.255.255"), 0xFFFFFFFFU);
    EXPECT_EQ(ParseIpV4("0.0.0.0"), 0U);
}

TEST(ParseIpV4Test, GroupsAreDecimalWhateverTheirLeadingZeros) {
    EXPECT_EQ(ParseIpV4("192.168.001.010"), 0xC0A8010AU);
    EXPECT_EQ(ParseIpV4("192.168.  1. 10"), 0xC0A8010AU);
    EXPECT_EQ(ParseIpV4(" 127.0.0.1 "), 0x7F000001U);
}

TEST(ParseIpV4Test, AnythingElseIsNotAnAddress) {
    for (const char* text :
         {"",           ".",        "...",       "1.2.3",     "1.2.3.4.5",
          "1.2.3.4.",   ".1.2.3.4", "1..2.3",    "256.1.1.1", "1.1.1.256",
          "-1.1.1.1",   "+1.1.1.1", "1.1.1.0x1", "a.b.c.d",   "localhost",
          "scale.shop", "1,2,3,4",  "1.2.3. ",   "1 2.3.4.5", "99999999999.1.1.1",
          "COM1",       "::1"})
        EXPECT_EQ(ParseIpV4(text), std::nullopt) << text;
}

TEST(IpV4TextTest, TheFirstGroupIsTheMostSignificantByte) {
    EXPECT_EQ(IpV4Text(0x0A010203U), "10.1.2.3");
    EXPECT_EQ(IpV4Text(0xFFFFFFFFU), "255.255.255.255");
    EXPECT_EQ(IpV4Text(0U), "0.0.0.0");
}

TEST(SplitAtDotsTest, ThePiecesAreAsTheyStand) {
    using TPieces = std::vector<std::string_view>;
    EXPECT_EQ(SplitAtDots("192.168.  1. 10"), (TPieces{"192", "168", "  1", " 10"}));
    EXPECT_EQ(SplitAtDots("1."), (TPieces{"1", ""}));
    EXPECT_EQ(SplitAtDots("COM1"), TPieces{"COM1"});
    EXPECT_EQ(SplitAtDots(""), TPieces{""});
}

}  // namespace
}  // namespace tolvane
