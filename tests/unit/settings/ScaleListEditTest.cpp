#include "settings/ScaleListEdit.h"

#include <gtest/gtest.h>

#include "config/IniDocument.h"
#include "tests/support/scales/TestScales.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

TScaleRec Scale(std::string_view name, std::string_view address = "10.0.0.5") {
    return NetworkScale(1, name, address, 1001);
}

std::vector<std::string> NamesOf(const std::vector<TScaleObj>& scales) {
    std::vector<std::string> names;
    for (const TScaleObj& scale : scales)
        names.push_back(scale.Rec.ScaleName.Str());
    return names;
}

using TNames = std::vector<std::string>;

}  // namespace

TEST(ScaleListEditTest, ListedScales_AreTheSlotsInUseInTheirOrder) {
    TScaleTable table;
    table[20] = Scale("last");
    table[3] = Scale("third");
    table[4] = Scale("no address", "");
    table[5] = Scale("");
    table[6] = Scale("no port");
    table[6].TCPPort = 0;
    table[1] = Scale("first");
    EXPECT_EQ(NamesOf(ListedScales(table)), (TNames{"first", "third", "last"}));
}

TEST(ScaleListEditTest, StoreListedScales_FillsTheFirstSlotsAndEmptiesTheOthers) {
    TScaleTable table;
    for (int slot = 1; slot <= kScaleSlots; ++slot)
        table[slot] = Scale("old");
    const std::vector<TScaleObj> scales = {{Scale("b")}, {Scale("a")}};
    StoreListedScales(scales, table);
    EXPECT_EQ(table[1].ScaleName.View(), "b");
    EXPECT_EQ(table[2].ScaleName.View(), "a");
    for (int slot = 3; slot <= kScaleSlots; ++slot)
        EXPECT_EQ(table[slot].TCPPort, 0) << slot;
    EXPECT_EQ(NamesOf(ListedScales(table)), (TNames{"b", "a"}));
}

TEST(ScaleListEditTest, StoreListedScales_LeavesOutWhatHasNoSlot) {
    TScaleTable table;
    const std::vector<TScaleObj> scales(21, TScaleObj{Scale("x")});
    StoreListedScales(scales, table);
    EXPECT_EQ(ListedScales(table).size(), 20U);
}

TEST(ScaleListEditTest, StoreListedScales_OfAnEmptyListErasesAllScaleSections) {
    TIniDocument document(
        "[SCALE1]\r\nTCPAddress=1.2.3.4\r\n[PLUGRID]\r\nW=5\r\n"
        "[SCALE20]\r\nTCPAddress=1.2.3.5\r\n");
    TScaleTable table;
    table.Load(document);
    ASSERT_EQ(ListedScales(table).size(), 2U);
    StoreListedScales({}, table);
    table.Save(document);
    EXPECT_FALSE(document.HasSection("SCALE1"));
    EXPECT_FALSE(document.HasSection("SCALE20"));
    EXPECT_TRUE(document.HasSection("PLUGRID"));
}

TEST(ScaleListEditTest, DetailsOf_ANetworkScaleShowsItsPort) {
    TScaleRec rec = Scale("Риба"_cp1251, "192.168.1.10");
    rec.ScaleNumb = 12;
    for (const std::uint8_t commType : {kCommTcp, kCommUdp}) {
        rec.CommType = commType;
        const TScaleDetails details = DetailsOf(rec);
        EXPECT_EQ(details.number, "12");
        EXPECT_EQ(details.name, "Риба"_cp1251);
        EXPECT_EQ(details.address, "192.168.1.10");
        EXPECT_EQ(details.portOrSpeedLabel, "Порт на устройството за комуникация."_cp1251);
        EXPECT_EQ(details.portOrSpeed, "1001");
    }
}

TEST(ScaleListEditTest, DetailsOf_ASerialScaleShowsItsSpeed) {
    TScaleRec rec = SerialScale(1, "a", "COM3");
    const TNames speeds = {"9600 bps",  "19200 bps",  "38400 bps",
                           "57600 bps", "115200 bps", "unknown bps"};
    for (std::uint8_t index = 0; index < speeds.size(); ++index) {
        rec.BaudRate = index;
        EXPECT_EQ(DetailsOf(rec).portOrSpeed, speeds[index]);
    }
    rec.BaudRate = 255;
    EXPECT_EQ(DetailsOf(rec).portOrSpeed, "unknown bps");
    EXPECT_EQ(DetailsOf(rec).portOrSpeedLabel, "Скорост на устройството за комуникация."_cp1251);
}

TEST(ScaleListEditTest, WebPageOf_IsTheAddressAfterHttp) {
    EXPECT_EQ(WebPageOf("192.168.1.10"), "http://192.168.1.10");
    EXPECT_EQ(WebPageOf("COM3"), "http://COM3");
    EXPECT_EQ(WebPageOf("10.0.0.5:80/a"), "http://10.0.0.5:80/a");
}

TEST(ScaleListEditTest, WebPageOf_BlanksAndQuotesCannotStartASecondWord) {
    EXPECT_EQ(WebPageOf("a b"), "http://a%20b");
    EXPECT_EQ(WebPageOf("\" --new \""), "http://%22%20--new%20%22");
    EXPECT_EQ(WebPageOf("'a'\t\r\n"), "http://%27a%27%09%0D%0A");
}

TEST(ScaleListEditTest, WebPageOf_AnAddressWithASchemeOfItsOwnStaysAfterHttp) {
    EXPECT_EQ(WebPageOf("file:///c:/x"), "http://file:///c:/x");
    EXPECT_EQ(WebPageOf("\\\\srv\\a.exe"), "http://%5C%5Csrv%5Ca.exe");
    EXPECT_EQ(WebPageOf("u@h?a&b|c%41"), "http://u%40h%3Fa%26b%7Cc%2541");
}

TEST(ScaleListEditTest, WebPageOf_CyrillicIsWrittenInUtf8) {
    EXPECT_EQ(WebPageOf("я"_cp1251), "http://%D1%8F");
}

}  // namespace tolvane::test
