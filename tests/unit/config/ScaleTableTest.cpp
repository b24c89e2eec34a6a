#include "config/ScaleTable.h"

#include <gtest/gtest.h>

#include "config/IniDocument.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

TScaleTable Loaded(std::string_view bytes) {
    TScaleTable table;
    table.Load(TIniDocument(bytes));
    return table;
}

std::string Saved(const TScaleTable& table, std::string_view bytes = {}) {
    TIniDocument document(bytes);
    table.Save(document);
    return document.Bytes();
}

TScaleRec SomeScale() {
    TScaleRec rec;
    rec.ScaleNumb = 12;
    rec.ScaleName = "Колбаси"_cp1251;
    rec.TCPAddress = "192.168.1.10";
    rec.TCPPort = 20304;
    rec.Checked = true;
    rec.BaudRate = 4;
    rec.ScaleType = kScaleTypeEts;
    rec.CommType = kCommTcp;
    rec.Encoding = 1;
    rec.ScaleAddr = 200;
    return rec;
}

constexpr std::string_view kSomeScaleSection =
    "[SCALE1]\r\n"
    "ScaleNumb=12\r\n"
    "ScaleName=Колбаси\r\n"
    "TCPAddress=192.168.1.10\r\n"
    "TCPPort=20304\r\n"
    "Checked=1\r\n"
    "BaudRate=4\r\n"
    "ScaleType=5000\r\n"
    "Encoding=1\r\n"
    "ScaleAddr=200\r\n"
    "CommType=1\r\n"_cp1251;

TEST(ScaleTable, LoadsEveryField) {
    const TScaleRec rec = Loaded(kSomeScaleSection)[1];
    EXPECT_EQ(rec.ScaleNumb, 12);
    EXPECT_EQ(rec.ScaleName.View(), "Колбаси"_cp1251);
    EXPECT_EQ(rec.TCPAddress.View(), "192.168.1.10");
    EXPECT_EQ(rec.TCPPort, 20304);
    EXPECT_TRUE(rec.Checked);
    EXPECT_EQ(rec.BaudRate, 4);
    EXPECT_EQ(rec.ScaleType, 5000);
    EXPECT_EQ(rec.Encoding, 1);
    EXPECT_EQ(rec.ScaleAddr, 200);
    EXPECT_EQ(rec.CommType, 1);
}

TEST(ScaleTable, AUdpScaleComesBackAsItWasSaved) {
    TScaleTable table;
    table[2] = SomeScale();
    table[2].CommType = kCommUdp;
    EXPECT_EQ(Loaded(Saved(table))[2].CommType, 2);
}

TEST(ScaleTable, SavesEveryKeyInOrder) {
    TScaleTable table;
    table[1] = SomeScale();
    EXPECT_EQ(Saved(table), kSomeScaleSection);
}

TEST(ScaleTable, SavesASerialScaleLikeANetworkOne) {
    TScaleTable table;
    table[20] = SomeScale();
    table[20].TCPAddress = "COM12";
    table[20].CommType = kCommSerial;
    table[20].Checked = false;
    const TScaleRec rec = Loaded(Saved(table))[20];
    EXPECT_EQ(rec.TCPAddress.View(), "COM12");
    EXPECT_EQ(rec.TCPPort, 20304);
    EXPECT_EQ(rec.CommType, kCommSerial);
    EXPECT_FALSE(rec.Checked);
}

TEST(ScaleTable, Load_SectionsOneAndThreeGiveSlotsOneAndThreeInUseAndTwoEmpty) {
    const TScaleTable table =
        Loaded("[SCALE3]\r\nTCPAddress=10.0.0.3\r\n[SCALE1]\r\nTCPAddress=10.0.0.1\r\n");
    EXPECT_TRUE(IsInUse(table[1]));
    EXPECT_FALSE(IsInUse(table[2]));
    EXPECT_TRUE(IsInUse(table[3]));
    EXPECT_EQ(table[1].TCPAddress.View(), "10.0.0.1");
    EXPECT_EQ(table[3].TCPAddress.View(), "10.0.0.3");
    for (int slot = 4; slot <= kScaleSlots; ++slot)
        EXPECT_FALSE(IsInUse(table[slot]));
    const TScaleTable again = Loaded(Saved(table));
    EXPECT_EQ(again[1].TCPAddress.View(), "10.0.0.1");
    EXPECT_FALSE(IsInUse(again[2]));
    EXPECT_EQ(again[3].TCPAddress.View(), "10.0.0.3");
}

TEST(ScaleTable, Load_ASectionWithAnAddressOnlyTakesTheDefaults) {
    const TScaleRec rec = Loaded("[SCALE4]\r\nTCPAddress=10.0.0.5\r\n")[4];
    EXPECT_EQ(rec.ScaleNumb, 4);
    EXPECT_EQ(rec.ScaleName.View(), "SCALE 4");
    EXPECT_EQ(rec.TCPAddress.View(), "10.0.0.5");
    EXPECT_EQ(rec.TCPPort, 1001);
    EXPECT_TRUE(rec.Checked);
    EXPECT_EQ(rec.BaudRate, 0);
    EXPECT_EQ(rec.ScaleType, 0);
    EXPECT_EQ(rec.Encoding, 2);
    EXPECT_EQ(rec.ScaleAddr, 0);
    EXPECT_EQ(rec.CommType, 0);
}

TEST(ScaleTable, Load_ACommTypeOfSevenLeavesTheSlotsAsItWas) {
    const TIniDocument document("[SCALE1]\nTCPAddress=10.0.0.1\nCommType=7\n");
    TScaleTable table;
    table.Load(document);
    EXPECT_EQ(table[1].CommType, 0);
    table[1].CommType = kCommUdp;
    table.Load(document);
    EXPECT_EQ(table[1].CommType, kCommUdp);
}

TEST(ScaleTable, Load_ACommTypeThatIsNoNumberIsSerial) {
    TScaleTable table;
    table[1].CommType = kCommTcp;
    table.Load(TIniDocument("[SCALE1]\nTCPAddress=10.0.0.1\nCommType=tcp\n"));
    EXPECT_EQ(table[1].CommType, kCommSerial);
}

TEST(ScaleTable, Save_ACommTypeOfSevenWritesNoKeyAndKeepsAnOlderOne) {
    TScaleTable table;
    table[1] = SomeScale();
    table[1].CommType = 7;
    EXPECT_EQ(Saved(table).find("CommType"), std::string::npos);
    EXPECT_NE(Saved(table, "[SCALE1]\r\nCommType=2\r\n").find("CommType=2\r\n"), std::string::npos);
}

TEST(ScaleTable, Save_ASlotWithoutAnAddressIsErasedEvenWithNameAndPort) {
    TScaleTable table;
    table[1] = SomeScale();
    table[1].TCPAddress = "";
    EXPECT_EQ(Saved(table, "[SCALE1]\r\nTCPAddress=10.0.0.1\r\n[Other]\r\n"), "[Other]\r\n");
}

TEST(ScaleTable, Save_ASlotWithoutANameOrAPortIsErasedToo) {
    TScaleTable table;
    table[1] = SomeScale();
    table[1].ScaleName = "";
    table[2] = SomeScale();
    table[2].TCPPort = 0;
    EXPECT_EQ(Saved(table, "[SCALE1]\r\nx=1\r\n[Other]\r\n[SCALE2]\r\n"), "[Other]\r\n");
}

TEST(ScaleTable, SectionsOutsideOneToTwentyAreNeitherReadNorErased) {
    constexpr std::string_view kForeign =
        "[SCALE0]\r\nTCPAddress=10.0.0.1\r\n[SCALE21]\r\nTCPAddress=10.0.0.2\r\n"
        "[SCALE]\r\nx=1\r\n[SCALE01]\r\nTCPAddress=10.0.0.3\r\n";
    const TScaleTable table = Loaded(kForeign);
    for (int slot = 1; slot <= kScaleSlots; ++slot)
        EXPECT_FALSE(IsInUse(table[slot]));
    EXPECT_EQ(Saved(table, kForeign), kForeign);
}

TEST(ScaleTable, ANameOfSixtyCharactersIsLoadedAndWrittenBackAsItsFirstFifty) {
    const std::string fifty(50, 'N');
    const std::string file = "[SCALE1]\r\nScaleName=" + fifty + "ABCDEFGHIJ\r\nTCPAddress=a\r\n";
    const TScaleTable table = Loaded(file);
    EXPECT_EQ(table[1].ScaleName.View(), fifty);
    EXPECT_TRUE(Saved(table, file).starts_with("[SCALE1]\r\nScaleName=" + fifty + "\r\n"));
}

TEST(ScaleTable, KeepsTheFirstFifteenCharactersOfAnAddress) {
    EXPECT_EQ(Loaded("[SCALE1]\nTCPAddress=255.255.255.2551\n")[1].TCPAddress.View(),
              "255.255.255.255");
}

TEST(ScaleTable, KeepsTheLowBitsOfValuesOutOfRange) {
    const TScaleRec rec = Loaded("[SCALE1]\nTCPPort=66537\nBaudRate=257\nScaleAddr=-1\n")[1];
    EXPECT_EQ(rec.TCPPort, 1001);  // 66537 = 65536 + 1001
    EXPECT_EQ(rec.BaudRate, 1);
    EXPECT_EQ(rec.ScaleAddr, 255);
    EXPECT_EQ(Loaded("[SCALE1]\nTCPPort=-1\n")[1].TCPPort, 65535);
}

// 65536 has nothing in its low 16 bits, and port 0 marks an empty slot.
TEST(ScaleTable, APortOf65536LeavesTheSlotEmptyAndItsSectionIsErasedOnSave) {
    constexpr std::string_view kFile =
        "[SCALE1]\r\nTCPAddress=10.0.0.1\r\nTCPPort=65536\r\n[Other]\r\n";
    const TScaleTable table = Loaded(kFile);
    EXPECT_EQ(table[1].TCPPort, 0);
    EXPECT_EQ(table[1].TCPAddress.View(), "10.0.0.1");
    EXPECT_FALSE(IsInUse(table[1]));
    EXPECT_FALSE(IsUsableForRuns(table[1]));
    EXPECT_EQ(Saved(table, kFile), "[Other]\r\n");
}

constexpr std::string_view kTwoOfOneName =
    "[SCALE1]\r\nTCPAddress=10.0.0.1\r\n[Other]\r\nx=1\r\n"
    "[scale1]\r\nTCPAddress=10.0.0.9\r\nTCPPort=9\r\n";

TEST(ScaleTable, OfTwoSectionsOfASlotTheFirstIsReadAndWritten) {
    TScaleTable table = Loaded(kTwoOfOneName);
    EXPECT_EQ(table[1].TCPAddress.View(), "10.0.0.1");
    EXPECT_EQ(table[1].TCPPort, 1001);
    table[1].TCPAddress = "10.0.0.2";
    EXPECT_EQ(Saved(table, kTwoOfOneName),
              "[SCALE1]\r\nTCPAddress=10.0.0.2\r\nScaleNumb=1\r\nScaleName=SCALE 1\r\n"
              "TCPPort=1001\r\nChecked=1\r\nBaudRate=0\r\nScaleType=0\r\nEncoding=2\r\n"
              "ScaleAddr=0\r\nCommType=0\r\n[Other]\r\nx=1\r\n"
              "[scale1]\r\nTCPAddress=10.0.0.9\r\nTCPPort=9\r\n");
}

TEST(ScaleTable, BothSectionsOfAnEmptySlotAreErasedSoThatItLoadsEmpty) {
    TScaleTable table = Loaded(kTwoOfOneName);
    table[1].TCPPort = 0;
    EXPECT_EQ(Saved(table, kTwoOfOneName), "[Other]\r\nx=1\r\n");
    EXPECT_FALSE(IsInUse(Loaded(Saved(table, kTwoOfOneName))[1]));
}

TEST(ScaleTable, TakesTheDefaultsForValuesThatAreNoIntegers) {
    const TScaleRec rec =
        Loaded("[SCALE9]\nScaleNumb=nine\nTCPPort=\nChecked=yes\nEncoding=99999999999\n")[9];
    EXPECT_EQ(rec.ScaleNumb, 9);
    EXPECT_EQ(rec.TCPPort, 1001);
    EXPECT_TRUE(rec.Checked);
    EXPECT_EQ(rec.Encoding, 2);
}

TEST(ScaleTable, AnEmptyNameInTheFileStaysEmptyAndTheSlotIsErasedOnSave) {
    constexpr std::string_view kFile = "[SCALE1]\r\nScaleName=\r\nTCPAddress=10.0.0.1\r\n";
    const TScaleTable table = Loaded(kFile);
    EXPECT_TRUE(table[1].ScaleName.Empty());
    EXPECT_FALSE(IsInUse(table[1]));
    EXPECT_TRUE(IsUsableForRuns(table[1]));
    EXPECT_EQ(Saved(table, kFile), "");
}

TEST(ScaleTable, LoadingAnEmptyFileEmptiesEverySlot) {
    TScaleTable table;
    for (int slot = 1; slot <= kScaleSlots; ++slot)
        table[slot] = SomeScale();
    table.Load(TIniDocument());
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        EXPECT_TRUE(table[slot].ScaleName.Empty());
        EXPECT_TRUE(table[slot].TCPAddress.Empty());
        EXPECT_EQ(table[slot].TCPPort, 0);
    }
}

TEST(ScaleTable, SavingWhatWasLoadedLeavesTheFileAsItIs) {
    const std::string file = "; mine\r\n" + std::string(kSomeScaleSection) + "[SCALESETTINGS]\r\n";
    EXPECT_EQ(Saved(Loaded(file), file), file);
}

TEST(ScaleTable, NamesWithBlanksAndQuotesComeBackAsTheyWere) {
    for (const std::string_view name : {" a ", "\"a\"", "'a'", "\"", " "}) {
        TScaleTable table;
        table[1] = SomeScale();
        table[1].ScaleName = name;
        EXPECT_EQ(Loaded(Saved(table))[1].ScaleName.View(), name);
    }
}

TEST(ScaleTable, ASlotIsUsableForRunsWithAddressAndPort) {
    TScaleRec rec = SomeScale();
    rec.ScaleName = "";
    EXPECT_TRUE(IsUsableForRuns(rec));
    EXPECT_FALSE(IsInUse(rec));
    rec.TCPPort = 0;
    EXPECT_FALSE(IsUsableForRuns(rec));
    rec = SomeScale();
    rec.TCPAddress = "";
    EXPECT_FALSE(IsUsableForRuns(rec));
}

}  // namespace
}  // namespace tolvane
