#include "simulator/CodePages.h"

#include <gtest/gtest.h>

#include "Bytes.h"

namespace tolvane::simulator {
namespace {

TEST(CodePagesTest, DecodeText_ReadsPc866) {
    // Х л я б, Ё ё №, a full block
    EXPECT_EQ(DecodeText(Bytes("95 AB EF A1 20 F0 F1 FC DB"), TCodeTable::Pc866), "Хляб Ёё№█");
    EXPECT_EQ(DecodeText(Bytes("80 9F A0 AF E0 EF"), TCodeTable::Pc866), "АЯапря");
}

TEST(CodePagesTest, DecodeText_ReadsTheScalesPc855) {
    EXPECT_EQ(DecodeText(Bytes("80 9F A0 BF"), TCodeTable::Pc855), "АЯая");
    EXPECT_EQ(DecodeText(Bytes("C0"), TCodeTable::Pc855), "\xEF\xBF\xBD");
}

TEST(CodePagesTest, DecodeText_ReadsWindows1251) {
    EXPECT_EQ(DecodeText(Bytes("D5 EB FF E1 20 B9 88"), TCodeTable::Windows), "Хляб №€");
    EXPECT_EQ(DecodeText(Bytes("98"), TCodeTable::Windows), "\xEF\xBF\xBD");
}

TEST(CodePagesTest, DecodeText_DropsZeroBytesAndTrailingBlanks) {
    EXPECT_EQ(DecodeText(Bytes("00 41 00 20 42 20 20"), TCodeTable::Pc866), "A B");
    EXPECT_EQ(DecodeText(Bytes("20 20"), TCodeTable::Pc866), "");
}

TEST(CodePagesTest, CodeTableByName_KnowsEachNameAndNoOther) {
    EXPECT_EQ(CodeTableByName("win"), TCodeTable::Windows);
    EXPECT_EQ(CodeTableByName("pc855"), TCodeTable::Pc855);
    EXPECT_EQ(CodeTableByName("pc866"), TCodeTable::Pc866);
    EXPECT_FALSE(CodeTableByName("utf8"));
    EXPECT_EQ(CodeTableName(TCodeTable::Pc855), "pc855");
}

}  // namespace
}  // namespace tolvane::simulator
