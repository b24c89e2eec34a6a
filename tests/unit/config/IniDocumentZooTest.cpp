#include <gtest/gtest.h>

#include <random>

#include "config/IniDocument.h"
#include "config/ScaleTable.h"
#include "tests/support/scales/TestScales.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using namespace std::string_literals;

constexpr std::size_t kMebibyte = 1U << 20U;

std::string Numbered(std::string_view start, std::size_t number) {
    std::string text(start);
    return text += std::to_string(number);
}

void WriteEverySlot(TIniDocument& document) {
    TScaleTable table;
    for (int slot = 1; slot <= kScaleSlots; ++slot)
        table[slot] = NetworkScale(slot, "Везна"_cp1251);
    table.Save(document);
}

TEST(IniDocumentZoo, KeepsAForeignFileByteForByteButForItsOwnValues) {
    TIniDocument document(
        "; Файл на магазина\r\n"
        "Company = \"Пример\" \r\n"
        "\r\n"
        "[Printer]\n"
        "Name = ' Zebra ' ; до касата\n"
        "garbage line\n"
        "[ scale2 ]\r\n"
        "; кантар на щанда\r\n"
        "  scalename =  'Щанд 2'\t\r\n"
        "TCPADDRESS=10.0.0.2\r\n"
        "tcpport = 20304\r\n"
        "Note=не е наша\r\n"
        "\r\n"
        "; край на кантара\r\n"
        "[SCALE0]\r\n"
        "ScaleName=нула\r\n"
        "[SCALE3]\r\n"
        "; кантар три\r\n"
        "TCPAddress=10.0.0.3\r\n"
        "\r\n"
        "; остава за следващата секция\r\n"
        "# също\r\n"
        "[SCALE21]\r\n"
        "ScaleName=двадесет и едно\r\n"
        "[PLUGRID]\r\n"
        "HiddenRows=0000000000000000000000000000001"_cp1251);
    TScaleTable table;
    table.Load(document);
    table[2].ScaleName = "Щанд две"_cp1251;
    table[3] = {};
    table[4].ScaleNumb = 4;
    table[4].ScaleName = " Нова "_cp1251;
    table[4].TCPAddress = "COM3";
    table[4].TCPPort = 1001;
    table[4].ScaleType = kScaleTypeEvl;
    table.Save(document);
    EXPECT_EQ(document.Bytes(),
              "; Файл на магазина\r\n"
              "Company = \"Пример\" \r\n"
              "\r\n"
              "[Printer]\n"
              "Name = ' Zebra ' ; до касата\n"
              "garbage line\n"
              "[ scale2 ]\r\n"
              "; кантар на щанда\r\n"
              "  scalename =  Щанд две\t\r\n"
              "TCPADDRESS=10.0.0.2\r\n"
              "tcpport = 20304\r\n"
              "Note=не е наша\r\n"
              "ScaleNumb=2\r\n"
              "Checked=1\r\n"
              "BaudRate=0\r\n"
              "ScaleType=0\r\n"
              "Encoding=2\r\n"
              "ScaleAddr=0\r\n"
              "CommType=0\r\n"
              "\r\n"
              "; край на кантара\r\n"
              "[SCALE0]\r\n"
              "ScaleName=нула\r\n"
              "; остава за следващата секция\r\n"
              "# също\r\n"
              "[SCALE21]\r\n"
              "ScaleName=двадесет и едно\r\n"
              "[PLUGRID]\r\n"
              "HiddenRows=0000000000000000000000000000001\r\n"
              "[SCALE4]\r\n"
              "ScaleNumb=4\r\n"
              "ScaleName=\" Нова \"\r\n"
              "TCPAddress=COM3\r\n"
              "TCPPort=1001\r\n"
              "Checked=0\r\n"
              "BaudRate=0\r\n"
              "ScaleType=16\r\n"
              "Encoding=0\r\n"
              "ScaleAddr=0\r\n"
              "CommType=0\r\n"_cp1251);
}

TEST(IniDocumentZoo, ReadsAndWritesUtf8AfterItsByteOrderMark) {
    TIniDocument document("\xEF\xBB\xBF[A]\r\nk=\xD0\x92\xD0\xB5\xD0\xB7\xD0\xBD\xD0\xB0\r\n");
    EXPECT_EQ(document.Value("A", "k"), "Везна"_cp1251);
    document.WriteText("A", "k", "Кг"_cp1251);
    EXPECT_EQ(document.Bytes(), "\xEF\xBB\xBF[A]\r\nk=\xD0\x9A\xD0\xB3\r\n");
}

TEST(IniDocumentZoo, FindsNamesOfUtf8InAnyCase) {
    // [Щанд] and Ж=1, in upper and in lower case
    TIniDocument document(
        "\xEF\xBB\xBF[\xD0\xA9\xD0\x90\xD0\x9D\xD0\x94]\n\xD0\x96=1\n"
        "[\xD1\x89\xD0\xB0\xD0\xBD\xD0\xB4]\n\xD0\xB6=2\n");
    EXPECT_EQ(document.Value("щанд"_cp1251, "ж"_cp1251), "1");
    EXPECT_EQ(document.Keys("Щанд"_cp1251), std::vector<std::string>{std::string("Ж"_cp1251)});
    document.EraseSection("щАНД"_cp1251);
    EXPECT_EQ(document.Bytes(), "\xEF\xBB\xBF");
}

TEST(IniDocumentZoo, ReadsCodePageBytesAfterAUtf8MarkToo) {
    const TIniDocument document("\xEF\xBB\xBF[A]\r\nk=\xC2\xE5\xE7\xED\xE0\r\n");
    EXPECT_EQ(document.Value("A", "k"), "Везна"_cp1251);
}

TEST(IniDocumentZoo, ReadsAndWritesUtf16AfterItsByteOrderMark) {
    TIniDocument document("\xFF\xFE[\0A\0]\0\n\0 \0k\0=\0\x12\x04\r\0\n\0"s);
    EXPECT_EQ(document.Value("a", "K"), "В"_cp1251);
    document.WriteText("A", "k", "я"_cp1251);
    document.WriteText("A", "n", "1");
    EXPECT_EQ(document.Bytes(),
              "\xFF\xFE[\0A\0]\0\n\0 \0k\0=\0\x4F\x04\r\0\n\0n\0=\0"
              "1\0\r\0\n\0"s);
}

TEST(IniDocumentZoo, ReadsAndWritesUtf16OfTheOtherByteOrderAfterItsMark) {
    TIniDocument document("\xFE\xFF\0[\0A\0]\0\n\0 \0k\0=\x04\x12\0\r\0\n"s);
    EXPECT_EQ(document.Value("a", "K"), "В"_cp1251);
    document.WriteText("A", "k", "я"_cp1251);
    document.WriteText("A", "n", "1");
    EXPECT_EQ(document.Bytes(),
              "\xFE\xFF\0[\0A\0]\0\n\0 \0k\0=\x04\x4F\0\r\0\n\0n\0=\0"
              "1\0\r\0\n"s);
}

TEST(IniDocumentZoo, ErasesASectionOfUtf16ButNotTheCommentAboveTheNext) {
    TIniDocument document("\xFE\xFF\0[\0A\0]\0\n\0k\0\n\0;\0x\0\n\0[\0B\0]"s);
    document.EraseSection("A");
    EXPECT_EQ(document.Bytes(), "\xFE\xFF\0;\0x\0\n\0[\0B\0]"s);
}

TEST(IniDocumentZoo, EndsALastLineOfUtf16BeforeANewOne) {
    TIniDocument document("\xFF\xFE[\0B\0]\0"s);
    document.WriteText("A", "k", "1");
    EXPECT_EQ(document.Bytes(),
              "\xFF\xFE[\0B\0]\0\r\0\n\0[\0A\0]\0\r\0\n\0k\0=\0"
              "1\0\r\0\n\0"s);
}

TEST(IniDocumentZoo, KeepsALeftOverByteOfUtf16ReadableWhenLinesFollow) {
    TIniDocument document("\xFF\xFE[\0B\0]\0x"s);
    document.WriteText("A", "k", "1");
    EXPECT_EQ(document.Bytes(),
              "\xFF\xFE[\0B\0]\0x\0\r\0\n\0[\0A\0]\0\r\0\n\0k\0=\0"
              "1\0\r\0\n\0"s);
    EXPECT_EQ(TIniDocument(document.Bytes()).Value("A", "k"), "1");
}

TEST(IniDocumentZoo, ReadsTheLeftOverByteAsWhatItBecomes) {
    // The byte becomes the end of a header, and the key goes into its section.
    TIniDocument document("\xFF\xFE[\0A\0]"s);
    EXPECT_FALSE(document.HasSection("A"));
    document.WriteText("A", "k", "1");
    EXPECT_EQ(document.Bytes(),
              "\xFF\xFE[\0A\0]\0\r\0\n\0k\0=\0"
              "1\0\r\0\n\0"s);
    EXPECT_TRUE(document.HasSection("A"));
}

TEST(IniDocumentZoo, GivesABareKeyItsValueBeforeALeftOverByte) {
    TIniDocument document("\xFF\xFE[\0A\0]\0\n\0k\0x"s);
    document.WriteText("A", "k", "v");
    const std::string written = "\xFF\xFE[\0A\0]\0\n\0k\0=\0v\0x"s;
    EXPECT_EQ(document.Bytes(), written);
    EXPECT_EQ(document.Value("A", "k"), "v");
    document.WriteText("A", "k", "v");
    EXPECT_EQ(document.Bytes(), written);
}

TEST(IniDocumentZoo, AddsNoByteWhenTheLeftOverOneHasGone) {
    TIniDocument document("\xFF\xFE[\0A\0]\0\n\0[\0B\0]\0\n\0x"s);
    document.EraseSection("B");
    document.WriteText("A", "k", "1");
    EXPECT_EQ(document.Bytes(),
              "\xFF\xFE[\0A\0]\0\n\0k\0=\0"
              "1\0\n\0"s);
}

TEST(IniDocumentZoo, KeepsAMarkInAnOtherwiseEmptyFile) {
    TIniDocument document("\xEF\xBB\xBF");
    EXPECT_EQ(document.Bytes(), "\xEF\xBB\xBF");
    document.WriteText("A", "k", "1");
    EXPECT_EQ(document.Bytes(), "\xEF\xBB\xBF[A]\r\nk=1\r\n");
}

TEST(IniDocumentZoo, EndsAValueAtAZeroByte) {
    EXPECT_EQ(TIniDocument("[A]\nk=a\0b\n"s).Value("A", "k"), "a");
}

TEST(IniDocumentZoo, KeepsGarbageBytesAndReadsTheSectionsBetween) {
    std::mt19937 random(20240501);
    for (int round = 0; round < 200; ++round) {
        std::string garbage;
        for (int i = 0; i < 500; ++i)
            garbage += static_cast<char>(random() & 0xFFU);
        garbage += "\n[SCALE7]\nTCPAddress=10.0.0.7\n";
        // After a UTF-16 byte order mark the text after the garbage would be read as UTF-16.
        if (garbage.starts_with("\xFF\xFE") || garbage.starts_with("\xFE\xFF")) garbage[0] = 'x';
        TIniDocument document(garbage);
        EXPECT_EQ(document.Bytes(), garbage);
        EXPECT_EQ(document.ReadText("SCALE7", "TCPAddress", ""), "10.0.0.7");
        WriteEverySlot(document);
        const std::string saved = document.Bytes();
        EXPECT_TRUE(saved.starts_with(garbage.substr(0, 500)));
        EXPECT_EQ(TIniDocument(saved).ReadText("SCALE20", "ScaleName", ""), "Везна"_cp1251);
    }
}

TEST(IniDocumentZoo, KeepsGarbageOfUtf16) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        std::string garbage = round % 2 == 0 ? "\xFF\xFE" : "\xFE\xFF";
        for (int i = 0; i < 301; ++i)
            garbage += static_cast<char>(random() & 0xFFU);
        TIniDocument document(garbage);
        EXPECT_EQ(document.Bytes(), garbage);
        WriteEverySlot(document);
        const std::string saved = document.Bytes();
        EXPECT_TRUE(saved.starts_with(garbage));
        EXPECT_EQ(TIniDocument(saved).ReadText("SCALE20", "ScaleName", ""), "Везна"_cp1251);
    }
}

// A step that is quadratic in the number of lines would take minutes here and run into the test's
// time limit.
TEST(IniDocumentZoo, TakesAMebibyteOfManySections) {
    std::string bytes;
    while (bytes.size() < kMebibyte)
        bytes += Numbered("[S", bytes.size()) + "]\r\n";
    TIniDocument document(bytes);
    EXPECT_TRUE(document.HasSection("S0"));
    WriteEverySlot(document);
    EXPECT_TRUE(document.Bytes().starts_with(bytes));
}

TEST(IniDocumentZoo, TakesAMebibyteOfKeysInOneSection) {
    std::string bytes = "[A]\r\n";
    std::size_t count = 0;
    for (; bytes.size() < kMebibyte; ++count)
        bytes += Numbered("k", count) + "=1\r\n";
    TIniDocument document(bytes);
    for (std::size_t i = 0; i < count; ++i)
        document.WriteInteger("A", Numbered("k", i), 2);
    for (std::size_t i = 0; i < count; ++i)
        document.WriteInteger("A", Numbered("n", i), 3);
    for (std::size_t i = 0; i < count; ++i)
        document.EraseKey("A", Numbered("k", i));
    EXPECT_EQ(document.Value("A", "k0"), std::nullopt);
    EXPECT_EQ(document.Value("A", Numbered("n", count - 1)), "3");
    EXPECT_TRUE(document.Bytes().starts_with("[A]\r\nn0=3\r\nn1=3\r\n"));
}

TEST(IniDocumentZoo, TakesAMebibyteOfRepeats) {
    std::string bytes;
    while (bytes.size() < kMebibyte)
        bytes += "[SCALE1]\nk=1\nk=2\n";
    TIniDocument document(bytes);
    EXPECT_EQ(document.Value("SCALE1", "k"), "1");
    document.EraseSection("SCALE1");
    EXPECT_EQ(document.Bytes(), "");
}

TEST(IniDocumentZoo, TakesAMebibyteInOneLine) {
    const std::string value(kMebibyte, 'x');
    const TIniDocument document("[A]\nk=" + value);
    EXPECT_EQ(document.Value("A", "k"), value);
    const TIniDocument blank(std::string(kMebibyte, '\r') + std::string(kMebibyte, ' '));
    EXPECT_EQ(blank.Bytes().size(), 2 * kMebibyte);
}

}  // namespace
}  // namespace tolvane
