#include <map>
#include <string>
#include <vector>

#include "CoreFixture.h"

namespace tolvane {
namespace {

// An S300 scale in label mode 2 gets every text.
class PassTextTest : public test::TCorePassTest {
protected:
    PassTextTest() {
        options.scale.model = simulator::TModel::S300;
        options.scale.labelMode = 2;
        rec_.ScaleType = kScaleTypeS300;
    }
    // What the scale holds of article 12 by parameter number, each name and text of the line being
    // `text`.
    std::map<int, std::string> Texts(const std::string& barcode, const std::string& text) {
        core.reset();
        std::string line = "12|" + barcode + "|1|0|0|1.00|0|5|";
        for (int field = 9; field <= 14; ++field)
            line += text + "|";
        EXPECT_TRUE(Upload({line + "0|0|101|"}, rec_)) << session->LastError;
        const simulator::TScaleState state = core->State();
        std::map<int, std::string> texts;
        for (const auto& [parameter, held] : state.articles.at(12).texts)
            texts[parameter] = std::string(held.bytes.begin(), held.bytes.end());
        return texts;
    }
    // The same text in each parameter that holds one, cut and padded to its length.
    static std::map<int, std::string> Expected(const std::string& barcode,
                                               const std::string& cutTo31,
                                               const std::string& cutTo63) {
        const std::string number = "12" + std::string(29, ' ');
        const std::string article = "101" + std::string(28, ' ');
        return {{0, cutTo31},  {4, "\x01\x05"}, {5, barcode}, {1, cutTo31}, {2, cutTo31},
                {3, cutTo31},  {6, cutTo31},    {7, cutTo31}, {14, number}, {15, article},
                {19, cutTo63}, {20, cutTo63},   {21, cutTo63}};
    }

    TScaleRec rec_ = Rec();
};

TEST_F(PassTextTest, AnEmptyTextIsSentAsBlanksAndAnEmptyBarcodeWithLength0) {
    EXPECT_EQ(Texts("", ""), Expected("", std::string(31, ' '), std::string(63, ' ')));
}

TEST_F(PassTextTest, ATextOfBlanksAndControlCharactersIsEmpty) {
    EXPECT_EQ(Texts(" ", "\t \r\n\x1F"), Expected("", std::string(31, ' '), std::string(63, ' ')));
}

TEST_F(PassTextTest, ATextOfExactlyItsLengthIsSentWhole) {
    const std::string exact = "a" + std::string(29, 'b') + "c";
    EXPECT_EQ(Texts("12345678", exact), Expected("12345678", exact, exact + std::string(32, ' ')));
    const std::string exact63 = "a" + std::string(61, 'b') + "c";
    EXPECT_EQ(Texts("1", exact63).at(19), exact63);
}

TEST_F(PassTextTest, ATextThatIsOneCharacterTooLongLosesTheLast) {
    const std::string kept = std::string(30, 'b') + "c";
    EXPECT_EQ(Texts("123456789", kept + "d"),
              Expected("12345678", kept, kept + "d" + std::string(31, ' ')));
    const std::string kept63 = std::string(62, 'b') + "c";
    EXPECT_EQ(Texts("1", kept63 + "d").at(21), kept63);
}

TEST_F(PassTextTest, BlanksAreTrimmedBeforeATextIsCut) {
    const std::string kept(31, 'b');
    EXPECT_EQ(Texts("  1234567890  ", "   " + kept + "  "),
              Expected("12345678", kept, kept + std::string(32, ' ')));
}

// Consecutive bytes.
std::string Run(int first, int last) {
    std::string text;
    for (int byte = first; byte <= last; ++byte)
        text += static_cast<char>(byte);
    return text;
}

// What each byte from 0 to 255 is sent as, by code table.
const std::vector<std::string> kSentAs = {
    Run(0x00, 0xFF),
    " " + Run(0x01, 0xBF) + Run(0x80, 0xBF),
    " " + Run(0x01, 0x81) + Run(0x42, 0x7F) + Run(0x80, 0xAF) + Run(0xE0, 0xEF),
};

TEST_F(PassTextTest, EveryByteGoesThroughTheScalesCodeTable) {
    for (std::size_t table = 0; table < kSentAs.size(); ++table) {
        ASSERT_EQ(kSentAs[table].size(), 256U);
        rec_.Encoding = static_cast<std::int32_t>(table);
        for (std::size_t byte = 0; byte < 256; ++byte) {
            if (byte == '|') continue;  // ends a field of the line
            const std::string text = "A" + std::string(1, static_cast<char>(byte)) + "Z";
            const std::string sent = "A" + kSentAs[table].substr(byte, 1) + "Z";
            ASSERT_EQ(Texts(text, text),
                      Expected(sent, sent + std::string(28, ' '), sent + std::string(60, ' ')))
                << "byte " << byte << " in table " << table;
        }
    }
}

TEST_F(PassTextTest, OnlyTheLowByteOfTheCodeTableCounts) {
    rec_.Encoding = 256 + 1;
    EXPECT_EQ(Texts("1", "\xFF").at(0), "\xBF" + std::string(30, ' '));
}

TEST_F(PassTextTest, AnUnknownCodeTableKeepsEveryByte) {
    rec_.Encoding = 3;
    EXPECT_EQ(Texts("1", "\xFF").at(0), "\xFF" + std::string(30, ' '));
}

}  // namespace
}  // namespace tolvane
