#include <cmath>
#include <limits>

#include "scale/DevElicomScaleUnit.h"
#include "tests/unit/scale/ScaleFixture.h"

namespace tolvane::test {
namespace {

constexpr std::uint8_t kPrice = 0x49;
constexpr std::uint8_t kPriceWeight = 0x4A;
constexpr std::uint8_t kPriceC = 0x4B;

class SetPriceTest : public TScaleTest {
public:
    void Accept(std::uint8_t command) {
        channel->sent.clear();
        channel->script = {Answer(ReplyTo(command, {0}))};
    }
    // The three bytes that a price is sent as.
    TCmdBuffer PriceBytes(double price) {
        Accept(kPrice);
        EXPECT_TRUE(scale->SetPrice(errCode, 1, price)) << price << " " << scale->LastError;
        const TCmdBuffer data = OnlyData(kPrice);
        return data.size() == 6 ? TCmdBuffer(data.begin() + 3, data.end()) : TCmdBuffer();
    }
    TCmdBuffer WeightBytes(double weight) {
        Accept(kPriceWeight);
        EXPECT_TRUE(scale->SetPrice(errCode, 1, 1, weight)) << weight << " " << scale->LastError;
        const TCmdBuffer data = OnlyData(kPriceWeight);
        return data.size() == 9 ? TCmdBuffer(data.begin() + 6, data.end()) : TCmdBuffer();
    }
    void ExpectRefused(const std::string& text) {
        EXPECT_EQ(scale->LastError, "Fail set PLU price: " + text);
        EXPECT_EQ(errCode, 0);
        EXPECT_TRUE(channel->sent.empty());
    }
};

TEST_F(SetPriceTest, Plu300At1_5WithoutWeightSendsCommand49) {
    channel->script = {Answer(ReplyTo(kPrice, {0}))};
    EXPECT_TRUE(scale->SetPrice(errCode, 300, 1.5, -1));
    EXPECT_EQ(errCode, 0);
    EXPECT_EQ(channel->sent, (std::vector<TCmdBuffer>{{0x04, 0x0D, 0x14, 0x5D, 0x14, 0x40, 0x15,
                                                       0x64, 0x15, 0x14, 0xDB, 0x03}}));
    EXPECT_EQ(OnlyData(kPrice), (TCmdBuffer{0x00, 0x2C, 0x01, 0x50, 0x01, 0x00}));
}

TEST_F(SetPriceTest, WithAWeightSendsCommand4A) {
    channel->script = {Answer(ReplyTo(kPriceWeight, {0}))};
    EXPECT_TRUE(scale->SetPrice(errCode, 12, 12.34, 250));
    EXPECT_EQ(channel->sent,
              (std::vector<TCmdBuffer>{{0x04, 0x0D, 0x14, 0x5E, 0x14, 0x20, 0x14, 0x48, 0x26, 0x14,
                                        0x64, 0x16, 0x14, 0x0C, 0xEE, 0x03}}));
    EXPECT_EQ(OnlyData(kPriceWeight),
              (TCmdBuffer{0x00, 0x0C, 0x00, 0x34, 0x12, 0x00, 0x50, 0x02, 0x00}));
}

TEST_F(SetPriceTest, AWeightOfZeroIsAWeight) {
    Accept(kPriceWeight);
    EXPECT_TRUE(scale->SetPrice(errCode, 1, 0, 0));
    EXPECT_EQ(OnlyData(kPriceWeight), (TCmdBuffer{0, 1, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(SetPriceTest, TheShorterFormAlwaysSendsCommand49) {
    Accept(kPrice);
    EXPECT_TRUE(scale->SetPrice(errCode, 7, 0));
    EXPECT_EQ(OnlyData(kPrice), (TCmdBuffer{0, 7, 0, 0, 0, 0}));
}

TEST_F(SetPriceTest, ThePluNumberIsSentLowByteFirstAndCutTo16Bits) {
    const std::vector<std::pair<std::int32_t, TCmdBuffer>> numbers = {
        {0, {0, 0x00, 0x00}},     {255, {0, 0xFF, 0x00}},        {256, {0, 0x00, 0x01}},
        {3000, {0, 0xB8, 0x0B}},  {65535, {0, 0xFF, 0xFF}},      {65536, {0, 0x00, 0x00}},
        {70000, {0, 0x70, 0x11}}, {2147483647, {0, 0xFF, 0xFF}},
    };
    for (const auto& [plu, bytes] : numbers) {
        Accept(kPrice);
        EXPECT_TRUE(scale->SetPrice(errCode, plu, 1));
        const TCmdBuffer data = OnlyData(kPrice);
        ASSERT_EQ(data.size(), 6U) << plu;
        EXPECT_EQ(TCmdBuffer(data.begin(), data.begin() + 3), bytes) << plu;
    }
}

TEST_F(SetPriceTest, PricesArePackedLeastSignificantPairFirst) {
    EXPECT_EQ(PriceBytes(12.34), (TCmdBuffer{0x34, 0x12, 0x00}));
    EXPECT_EQ(PriceBytes(9999.99), (TCmdBuffer{0x99, 0x99, 0x99}));
    EXPECT_EQ(PriceBytes(0), (TCmdBuffer{0x00, 0x00, 0x00}));
    EXPECT_EQ(PriceBytes(0.01), (TCmdBuffer{0x01, 0x00, 0x00}));
    EXPECT_EQ(PriceBytes(1234.56), (TCmdBuffer{0x56, 0x34, 0x12}));
    EXPECT_EQ(PriceBytes(100), (TCmdBuffer{0x00, 0x00, 0x01}));
}

TEST_F(SetPriceTest, PricesAreRoundedToHundredths) {
    EXPECT_EQ(PriceBytes(0.004), (TCmdBuffer{0x00, 0x00, 0x00}));
    EXPECT_EQ(PriceBytes(0.005), (TCmdBuffer{0x01, 0x00, 0x00}));
    EXPECT_EQ(PriceBytes(1.994), (TCmdBuffer{0x99, 0x01, 0x00}));
    EXPECT_EQ(PriceBytes(1.996), (TCmdBuffer{0x00, 0x02, 0x00}));
    EXPECT_EQ(PriceBytes(9999.994), (TCmdBuffer{0x99, 0x99, 0x99}));
}

TEST_F(SetPriceTest, EveryPriceInHundredthsArrivesExactly) {
    for (int hundredths = 0; hundredths < 1000000; hundredths += 37) {
        const TCmdBuffer bytes = PriceBytes(hundredths / 100.0);
        ASSERT_EQ(bytes.size(), 3U);
        int read = 0;
        for (const std::size_t i : {2U, 1U, 0U})
            read = read * 100 + (bytes[i] >> 4) * 10 + (bytes[i] & 0x0F);
        ASSERT_EQ(read, hundredths);
    }
}

TEST_F(SetPriceTest, WeightsAreThousandthsInSixDigits) {
    EXPECT_EQ(WeightBytes(250), (TCmdBuffer{0x50, 0x02, 0x00}));
    EXPECT_EQ(WeightBytes(0), (TCmdBuffer{0x00, 0x00, 0x00}));
    EXPECT_EQ(WeightBytes(123456), (TCmdBuffer{0x56, 0x34, 0x12}));
    EXPECT_EQ(WeightBytes(999999), (TCmdBuffer{0x99, 0x99, 0x99}));
}

TEST_F(SetPriceTest, APriceOf10000OrMoreFailsAndSendsNothing) {
    EXPECT_FALSE(scale->SetPrice(errCode, 1, 10000));
    ExpectRefused("10000 does not fit in six digits.");
    EXPECT_FALSE(scale->SetPrice(errCode, 1, 9999.995));
    ExpectRefused("9999.995 does not fit in six digits.");
    EXPECT_FALSE(scale->SetPrice(errCode, 1, 123456789.5, 0));
    ExpectRefused("123456789.5 does not fit in six digits.");
    EXPECT_FALSE(scale->SetPrice(errCode, 1, 1e300));
    ExpectRefused("1E+300 does not fit in six digits.");
}

TEST_F(SetPriceTest, ANegativePriceFailsAndSendsNothing) {
    EXPECT_FALSE(scale->SetPrice(errCode, 1, -0.01));
    ExpectRefused("-0.01 does not fit in six digits.");
    EXPECT_FALSE(scale->SetPrice(errCode, 1, -12345));
    ExpectRefused("-12345 does not fit in six digits.");
}

TEST_F(SetPriceTest, APriceThatIsNoNumberFailsAndSendsNothing) {
    for (const double price : {std::nan(""), std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity()}) {
        EXPECT_FALSE(scale->SetPrice(errCode, 1, price));
        ExpectRefused("A value that is not a number does not fit in six digits.");
    }
}

TEST_F(SetPriceTest, AWeightThatDoesNotFitFailsAndSendsNothing) {
    EXPECT_FALSE(scale->SetPrice(errCode, 1, 1, 1000000));
    ExpectRefused("1000 does not fit in six digits.");
    EXPECT_FALSE(scale->SetPrice(errCode, 1, 1, std::nan("")));
    ExpectRefused("A value that is not a number does not fit in six digits.");
}

TEST_F(SetPriceTest, ANegativePluFailsBeforeAnythingIsSent) {
    EXPECT_FALSE(scale->SetPrice(errCode, -1, 1, 0));
    ExpectRefused("Invalid PLU number");
    EXPECT_FALSE(scale->SetPrice(errCode, -1, 123456));
    ExpectRefused("Invalid PLU number");
}

TEST_F(SetPriceTest, ARefusalGivesTheScalesErrorCode) {
    // 00 49 07 50 in the offset state
    channel->script = {Answer({0x02, 0x0D, 0x14, 0x5D, 0x1B, 0x64, 0x03})};
    EXPECT_FALSE(scale->SetPrice(errCode, 1, 1));
    EXPECT_EQ(errCode, 7);
    EXPECT_EQ(scale->LastError, "Fail set PLU price: Scale return Error code: 7");
}

TEST_F(SetPriceTest, AnExchangeWithoutAReplyLeavesErrCodeAt0) {
    EXPECT_FALSE(scale->SetPrice(errCode, 1, 1));
    EXPECT_EQ(errCode, 0);
    EXPECT_EQ(scale->LastError,
              "Fail set PLU price: [ReadResponce][SCRIPT] Fail read data (peer) - Read timeout "
              "occured");
}

TEST_F(SetPriceTest, AReplyWithoutAnErrorCodeFails) {
    channel->script = {Answer(ReplyTo(kPrice, {}))};
    EXPECT_FALSE(scale->SetPrice(errCode, 1, 1));
    EXPECT_EQ(scale->LastError, "Fail set PLU price: Unexpected answer from scale. No error code");
}

class SetPriceCTest : public TScaleTest {
public:
    bool Set(std::int32_t plu, double price, bool pieces, std::int32_t tare, std::int32_t label) {
        channel->sent.clear();
        channel->script = {Answer(ReplyTo(kPriceC, {0}))};
        return scale->SetPriceC(errCode, plu, price, pieces, tare, label);
    }
    void ExpectRefused(const std::string& text) {
        EXPECT_EQ(scale->LastError, "Fail set PLU price: " + text);
        EXPECT_EQ(errCode, 0);
        EXPECT_TRUE(channel->sent.empty());
    }
};

TEST_F(SetPriceCTest, SendsCommand4BWithPieceFlagTareAndLabel) {
    EXPECT_TRUE(Set(3, 0.99, true, 0, 1));
    EXPECT_EQ(channel->sent,
              (std::vector<TCmdBuffer>{{0x04, 0x0D, 0x14, 0x5F, 0x14, 0x17, 0x14, 0xAD, 0x14, 0x14,
                                        0x15, 0x14, 0x15, 0xFD, 0x03}}));
    EXPECT_EQ(errCode, 0);
    EXPECT_TRUE(Set(300, 12.34, false, 99, 20));
    EXPECT_EQ(OnlyData(kPriceC), (TCmdBuffer{0x00, 0x2C, 0x01, 0x34, 0x12, 0x00, 0, 99, 20}));
    EXPECT_TRUE(Set(0, 0, false, 0, 0));
    EXPECT_EQ(OnlyData(kPriceC), (TCmdBuffer{0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(SetPriceCTest, TareNo100FailsBeforeAnythingIsSent) {
    EXPECT_FALSE(Set(1, 1, true, 100, 1));
    ExpectRefused("Invalid PLU Tare ID");
    EXPECT_FALSE(Set(1, 1, true, -1, 1));
    ExpectRefused("Invalid PLU Tare ID");
}

TEST_F(SetPriceCTest, ALabelOutside0To20FailsBeforeAnythingIsSent) {
    EXPECT_FALSE(Set(1, 1, true, 0, 21));
    ExpectRefused("Invalid PLU Label ID");
    EXPECT_FALSE(Set(1, 1, true, 0, -1));
    ExpectRefused("Invalid PLU Label ID");
}

TEST_F(SetPriceCTest, TheChecksAreMadeInOrder) {
    EXPECT_FALSE(Set(-1, 10000, true, 100, 21));
    ExpectRefused("Invalid PLU number");
    EXPECT_FALSE(Set(0, 10000, true, 100, 21));
    ExpectRefused("Invalid PLU Tare ID");
    EXPECT_FALSE(Set(0, 10000, true, 99, 21));
    ExpectRefused("Invalid PLU Label ID");
    EXPECT_FALSE(Set(0, 10000, true, 99, 20));
    ExpectRefused("10000 does not fit in six digits.");
}

TEST_F(SetPriceCTest, ARefusalGivesTheScalesErrorCode) {
    channel->script = {Answer(ReplyTo(kPriceC, {9}))};
    EXPECT_FALSE(scale->SetPriceC(errCode, 1, 1, true, 0, 1));
    EXPECT_EQ(errCode, 9);
    EXPECT_EQ(scale->LastError, "Fail set PLU price: Scale return Error code: 9");
}

TEST_F(SetPriceCTest, SilenceAndAMissingErrorCodeFollowTheCommonRule) {
    EXPECT_FALSE(scale->SetPriceC(errCode, 1, 1, true, 0, 1));
    EXPECT_EQ(errCode, 0);
    EXPECT_EQ(scale->LastError,
              "Fail set PLU price: [ReadResponce][SCRIPT] Fail read data (peer) - Read timeout "
              "occured");
    channel->script = {Answer(ReplyTo(kPriceC, {}))};
    EXPECT_FALSE(scale->SetPriceC(errCode, 1, 1, true, 0, 1));
    EXPECT_EQ(scale->LastError, "Fail set PLU price: Unexpected answer from scale. No error code");
}

}  // namespace
}  // namespace tolvane::test
