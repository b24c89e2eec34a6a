#include "comm/DevCommBaseUnit.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

// Codes `first` to `last` become `mapped` and the codes after it.
struct TRange {
    int first;
    int last;
    int mapped;
};

std::optional<int> Lookup(const std::vector<TRange>& ranges, int code) {
    for (const TRange& range : ranges) {
        if (code >= range.first && code <= range.last) return range.mapped + (code - range.first);
    }
    return std::nullopt;
}

std::vector<int> Encoded(int code, std::uint8_t table) {
    TCmdBuffer bytes;
    TDevCommBase::TextToBytes(std::string(1, static_cast<char>(code)), 1, table, bytes);
    return {bytes.begin(), bytes.end()};
}

std::vector<int> Decoded(int byte, std::uint8_t table) {
    std::vector<int> codes;
    for (const char c : TDevCommBase::BytesToText({static_cast<std::uint8_t>(byte)}, 0, 1, table))
        codes.push_back(static_cast<unsigned char>(c));
    return codes;
}

void ExpectEncoding(std::uint8_t table, const std::vector<TRange>& ranges) {
    for (int code = 0; code < 256; ++code)
        EXPECT_EQ(Encoded(code, table), std::vector<int>{Lookup(ranges, code).value()})
            << "code " << code;
}

void ExpectDecoding(std::uint8_t table, const std::vector<TRange>& ranges) {
    for (int byte = 0; byte < 256; ++byte) {
        const auto code = Lookup(ranges, byte);
        EXPECT_EQ(Decoded(byte, table), code ? std::vector<int>{*code} : std::vector<int>{})
            << "byte " << byte;
    }
}

TEST(TextToBytesTest, Table0_KeepsEveryCode) {
    ExpectEncoding(0, {{0, 255, 0}});
}

TEST(TextToBytesTest, Table1_MovesCyrillicLettersAndBlanksNul) {
    ExpectEncoding(1, {{0, 0, 32}, {1, 191, 1}, {192, 255, 128}});
}

TEST(TextToBytesTest, Table2_MovesAllCodesAbove129InTwoBlocksAndBlanksNul) {
    ExpectEncoding(2, {{0, 0, 32}, {1, 129, 1}, {130, 191, 66}, {192, 239, 128}, {240, 255, 224}});
}

TEST(TextToBytesTest, AnUnknownTableKeepsEveryCode) {
    ExpectEncoding(7, {{0, 255, 0}});
}

TEST(BytesToTextTest, Table0_DropsZeroAndKeepsTheRest) {
    ExpectDecoding(0, {{1, 255, 1}});
}

TEST(BytesToTextTest, Table1_MovesBytesFrom128On) {
    ExpectDecoding(1, {{1, 127, 1}, {128, 191, 192}, {192, 255, 0}});
}

TEST(BytesToTextTest, Table2_MovesTheTwoRussianBlocks) {
    ExpectDecoding(
        2, {{1, 127, 1}, {128, 175, 192}, {176, 223, 176}, {224, 239, 240}, {240, 255, 240}});
}

TEST(BytesToTextTest, AnUnknownTableDropsZeroAndKeepsTheRest) {
    ExpectDecoding(9, {{1, 255, 1}});
}

TEST(TextToBytesTest, BulgarianTextInEachTable) {
    constexpr std::string_view kText = "Сиренe я1"_cp1251;  // the last e is Latin
    const TCmdBuffer raw = {0xD1, 0xE8, 0xF0, 0xE5, 0xED, 0x65, 0x20, 0xFF, 0x31};
    const TCmdBuffer pc855 = {0x91, 0xA8, 0xB0, 0xA5, 0xAD, 0x65, 0x20, 0xBF, 0x31};
    const TCmdBuffer pc866 = {0x91, 0xA8, 0xE0, 0xA5, 0xAD, 0x65, 0x20, 0xEF, 0x31};
    const std::vector<TCmdBuffer> expected = {raw, pc855, pc866};
    for (std::uint8_t table = 0; table < 3; ++table) {
        TCmdBuffer bytes;
        TDevCommBase::TextToBytes(kText, 9, table, bytes);
        EXPECT_EQ(bytes, expected[table]) << "table " << int{table};
        EXPECT_EQ(TDevCommBase::BytesToText(bytes, 0, 9, table), kText) << "table " << int{table};
    }
}

// The user's guide tells what a label shows for each of them.
TEST(TextToBytesTest, SignsThatTheDosTablesLackBecomeOtherCharacters) {
    constexpr std::string_view kSigns = "°№„“”«»’€–—…•\u00A0"_cp1251;
    const TCmdBuffer pc855 = {0xB0, 0xB9, 0x84, 0x93, 0x94, 0xAB, 0xBB,
                              0x92, 0x88, 0x96, 0x97, 0x85, 0x95, 0xA0};
    const std::string_view pc866 = "pyDSTk{RHVWEU`";
    TCmdBuffer bytes;
    TDevCommBase::TextToBytes(kSigns, 14, 1, bytes);
    EXPECT_EQ(bytes, pc855);
    EXPECT_EQ(TDevCommBase::BytesToText(bytes, 0, 14, 1), "рщДУФлыТИЦЧЕХа"_cp1251);
    bytes.clear();
    TDevCommBase::TextToBytes(kSigns, 14, 2, bytes);
    EXPECT_EQ(bytes, TCmdBuffer(pc866.begin(), pc866.end()));
}

TEST(TextToBytesTest, LenBelow1_AppendsNothing) {
    for (const std::int32_t length : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        TCmdBuffer bytes = {0x7E};
        TDevCommBase::TextToBytes("abc", length, 0, bytes);
        EXPECT_EQ(bytes, TCmdBuffer{0x7E}) << length;
    }
}

TEST(TextToBytesTest, ALongerTextIsCutAndAShorterPaddedWithSpacesNotZeros) {
    TCmdBuffer bytes;
    TDevCommBase::TextToBytes("abcd", 2, 0, bytes);
    EXPECT_EQ(bytes, (TCmdBuffer{'a', 'b'}));
    TDevCommBase::TextToBytes("x", 3, 2, bytes);
    EXPECT_EQ(bytes, (TCmdBuffer{'a', 'b', 'x', 0x20, 0x20}));
    TDevCommBase::TextToBytes("", 1, 1, bytes);
    EXPECT_EQ(bytes, (TCmdBuffer{'a', 'b', 'x', 0x20, 0x20, 0x20}));
}

TEST(BytesToTextTest, TakesOnlyIndexesInsideTheBuffer) {
    const TCmdBuffer bytes = {'a', 'b', 'c'};
    EXPECT_EQ(TDevCommBase::BytesToText(bytes, 1, 1, 0), "b");
    EXPECT_EQ(TDevCommBase::BytesToText(bytes, 1, 255, 0), "bc");
    EXPECT_EQ(TDevCommBase::BytesToText(bytes, 3, 4, 0), "");
    EXPECT_EQ(TDevCommBase::BytesToText(bytes, 255, 255, 0), "");
    EXPECT_EQ(TDevCommBase::BytesToText(bytes, 0, 0, 0), "");
    EXPECT_EQ(TDevCommBase::BytesToText({}, 0, 255, 0), "");
}

TEST(BytesToTextTest, ReachesIndexesAbove255) {
    TCmdBuffer bytes(600, 'x');
    bytes[255 + 254] = 'y';
    const std::string text = TDevCommBase::BytesToText(bytes, 255, 255, 0);
    EXPECT_EQ(text, std::string(254, 'x') + "y");
}

TEST(ByteUtilitiesTest, ClearBufferAndAppendByte) {
    TCmdBuffer bytes = {1, 2, 3};
    TDevCommBase::ClearBuffer(bytes);
    EXPECT_TRUE(bytes.empty());
    TDevCommBase::AppendByte(0xFE, bytes);
    TDevCommBase::AppendByte(0x00, bytes);
    EXPECT_EQ(bytes, (TCmdBuffer{0xFE, 0x00}));
}

TEST(ByteUtilitiesTest, MakeLongBE_TakesTheFirstByteAsTheMostSignificant) {
    EXPECT_EQ(TDevCommBase::MakeLongBE(0x12, 0x34, 0x56, 0x78), 0x12345678U);
    EXPECT_EQ(TDevCommBase::MakeLongBE(0xFF, 0xFF, 0xFF, 0xFF), 0xFFFFFFFFU);
    EXPECT_EQ(TDevCommBase::MakeLongBE(0x80, 0, 0, 1), 2147483649U);
}

}  // namespace
}  // namespace tolvane
