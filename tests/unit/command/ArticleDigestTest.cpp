#include "command/ArticleDigest.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/support/scales/TestScales.h"
#include "text/Cp1251.h"
#include "text/Failure.h"

namespace tolvane::test {
namespace {

using TChange = std::function<void(TPLUD&)>;

TPLUD Article() {
    TPLUD plu;
    plu.ScaleNumber = 7;
    plu.ArticleNumber = 107;
    plu.Barcode = "22012";
    plu.PriceHundredths = 1234;
    plu.BestBeforeDays = 30;
    plu.LabelName1 = std::string("Сирене"_cp1251);
    plu.LabelName2 = "B";
    plu.Comment1 = "C";
    plu.Comment2 = "D";
    plu.Comment3 = "E";
    plu.ShipmentNumber = "F";
    return plu;
}

struct TWhere {
    TScaleRec rec = NetworkScale(7, "A");
    TScaleVersion version = {.maxPlu = 3000, .mode = 2, .text = "1.23"};
    std::int32_t uncut = 12007;

    std::uint64_t Digest(const TPLUD& plu = Article()) const {
        return TArticleDigest(rec, version).Of(plu, uncut);
    }
    bool IsChangedBy(const TChange& change) const {
        TPLUD plu = Article();
        change(plu);
        return Digest(plu) != Digest();
    }
};

// In mode 2 an ETS scale gets every text that the tables of models name, but 19 to 21.
TWhere Ets() {
    TWhere where;
    where.rec.ScaleType = kScaleTypeEts;
    return where;
}
// In mode 1 an EVL scale gets price, name 1, best-before and barcode.
TWhere PlainEvl() {
    TWhere where;
    where.rec.ScaleType = kScaleTypeEvl;
    where.version.mode = 1;
    return where;
}

const TChange kOtherTexts[] = {
    [](TPLUD& plu) { plu.LabelName2 = "X"; },     [](TPLUD& plu) { plu.Comment1 = "X"; },
    [](TPLUD& plu) { plu.Comment2 = "X"; },       [](TPLUD& plu) { plu.Comment3 = "X"; },
    [](TPLUD& plu) { plu.ShipmentNumber = "X"; }, [](TPLUD& plu) { plu.ArticleNumber = 108; }};
const TChange kAlwaysSent[] = {
    [](TPLUD& plu) { plu.PriceHundredths = 1235; }, [](TPLUD& plu) { plu.LabelName1 = "X"; },
    [](TPLUD& plu) { plu.BestBeforeDays = 31; }, [](TPLUD& plu) { plu.Barcode = "22013"; },
    [](TPLUD& plu) { plu.ScaleNumber = 8; }};

TEST(ArticleDigest, IsTheSameForTheSameCommands) {
    EXPECT_EQ(Ets().Digest(), Ets().Digest());
    TArticleDigest digests(Ets().rec, Ets().version);
    const std::uint64_t first = digests.Of(Article(), 7);
    TPLUD other = Article();
    other.LabelName1 = "X";
    EXPECT_NE(digests.Of(other, 7), first);
    EXPECT_EQ(digests.Of(Article(), 7), first);
}

TEST(ArticleDigest, ChangesWithEverythingThatIsSent) {
    for (const TChange& change : kAlwaysSent) {
        EXPECT_TRUE(Ets().IsChangedBy(change));
        EXPECT_TRUE(PlainEvl().IsChangedBy(change));
    }
    for (const TChange& change : kOtherTexts)
        EXPECT_TRUE(Ets().IsChangedBy(change));
}

TEST(ArticleDigest, DoesNotChangeWithWhatTheScaleDoesNotGet) {
    for (const TChange& change : kOtherTexts)
        EXPECT_FALSE(PlainEvl().IsChangedBy(change));
    for (const TWhere& where : {Ets(), PlainEvl()}) {
        EXPECT_FALSE(where.IsChangedBy([](TPLUD& plu) { plu.UnitCode = 2; }));
        EXPECT_FALSE(where.IsChangedBy([](TPLUD& plu) { plu.Reserved16 = 1; }));
        EXPECT_FALSE(where.IsChangedBy([](TPLUD& plu) { plu.WholeUnits = true; }));
        // Trimmed, padded with blanks, and cut to 31 letters.
        EXPECT_FALSE(where.IsChangedBy([](TPLUD& plu) { plu.LabelName1 += "  "; }));
        EXPECT_FALSE(where.IsChangedBy([](TPLUD& plu) { plu.Comment1 = " C"; }));
    }
    TPLUD longName = Article();
    longName.LabelName1 = std::string(31, 'a');
    TPLUD longerName = Article();
    longerName.LabelName1 = std::string(31, 'a') + "b";
    EXPECT_EQ(Ets().Digest(longName), Ets().Digest(longerName));
}

TEST(ArticleDigest, KnowsPiecesOnlyInScalesThatSellByThePiece) {
    TWhere where;
    where.rec.ScaleType = kScaleTypeS300;
    EXPECT_TRUE(where.IsChangedBy([](TPLUD& plu) { plu.WholeUnits = true; }));
}

TEST(ArticleDigest, ChangesWithTheNumberAsItIsInTheDatabaseWhereThatIsSent) {
    TWhere other = Ets();
    other.uncut = 7;
    EXPECT_NE(other.Digest(), Ets().Digest());
    other = PlainEvl();
    other.uncut = 7;
    EXPECT_EQ(other.Digest(), PlainEvl().Digest());
}

TEST(ArticleDigest, ChangesWithTheCodeTableAndTheLabelMode) {
    TWhere other = Ets();
    other.rec.Encoding = 1;  // С is 91 in tables 1 and 2; р is B0 and E0
    EXPECT_NE(other.Digest(), Ets().Digest());
    other = PlainEvl();
    other.version.mode = 2;
    EXPECT_NE(other.Digest(), PlainEvl().Digest());
    other.version.mode = 3;  // the same texts as mode 1
    EXPECT_EQ(other.Digest(), PlainEvl().Digest());
}

TEST(ArticleDigest, ChangesWithTheModel) {
    TWhere s300 = Ets();
    s300.rec.ScaleType = kScaleTypeS300;
    EXPECT_NE(s300.Digest(), Ets().Digest());
}

TEST(ArticleDigest, ChangesWithTheAddressOnASerialLineOnly) {
    TWhere serial = PlainEvl();
    serial.rec.CommType = kCommSerial;
    TWhere other = serial;
    other.rec.ScaleAddr = 9;
    EXPECT_NE(other.Digest(), serial.Digest());
    TWhere network = PlainEvl();
    network.rec.ScaleAddr = 9;
    EXPECT_EQ(network.Digest(), PlainEvl().Digest());
}

TEST(ArticleDigest, ChangesNeitherWithNameNorVersionNorAddressOfTheScale) {
    TWhere other = Ets();
    other.rec.ScaleName = "Z";
    other.rec.TCPAddress = "10.0.0.99";
    other.version.text = "9.99";
    other.version.maxPlu = 9999;
    EXPECT_EQ(other.Digest(), Ets().Digest());
}

TEST(ArticleDigest, ThereIsNoneForAPriceThatDoesNotFit) {
    TPLUD plu = Article();
    plu.PriceHundredths = 999999;
    EXPECT_NO_THROW(Ets().Digest(plu));
    plu.PriceHundredths = 1000000;
    EXPECT_THROW(Ets().Digest(plu), TFailure);
}

}  // namespace
}  // namespace tolvane::test
