#include <gtest/gtest.h>

#include "config/IniDocument.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

std::string Read(std::string_view bytes) {
    return TIniDocument(bytes).ReadText("A", "k", "missing");
}

TEST(IniDocument, ReadsAValue) {
    EXPECT_EQ(Read("[A]\r\nk=v\r\n"), "v");
}

TEST(IniDocument, FindsSectionsAndKeysWithoutRegardToCase) {
    EXPECT_EQ(Read("[a]\r\nK=v\r\n"), "v");
    const TIniDocument cyrillic("[кантар]\r\nиме=v\r\n"_cp1251);
    EXPECT_EQ(cyrillic.ReadText("КАНТАР"_cp1251, "Име"_cp1251, ""), "v");
}

TEST(IniDocument, DropsBlanksAroundNamesAndValues) {
    EXPECT_EQ(Read(" \t[A]\r\n\t k \t= \tv w\t \r\n"), "v w");
    EXPECT_EQ(Read("[ A ]\r\nk=v\r\n"), "v");
}

TEST(IniDocument, DropsOnePairOfQuotesAroundAValue) {
    EXPECT_EQ(Read("[A]\nk=\" v \"\n"), " v ");
    EXPECT_EQ(Read("[A]\nk=' v '\n"), " v ");
    EXPECT_EQ(Read("[A]\nk=\"\"v\"\"\n"), "\"v\"");
    EXPECT_EQ(Read("[A]\nk=\"\"\n"), "");
}

TEST(IniDocument, KeepsQuotesThatAreNoPair) {
    EXPECT_EQ(Read("[A]\nk=\"v'\n"), "\"v'");
    EXPECT_EQ(Read("[A]\nk=\"\n"), "\"");
    EXPECT_EQ(Read("[A]\nk=\"a\" b\n"), "\"a\" b");
}

TEST(IniDocument, TakesLinesThatStartWithASemicolonForComments) {
    EXPECT_EQ(Read("[A]\n;k=1\n  ; k=2\nk=3\n"), "3");
    EXPECT_EQ(Read("; [A]\nk=1\n"), "missing");
}

TEST(IniDocument, KeepsACommentAfterAValueAsItsPart) {
    EXPECT_EQ(Read("[A]\nk=1 ; note\n"), "1 ; note");
}

TEST(IniDocument, AllowsTextAfterASectionsHeader) {
    EXPECT_EQ(Read("[A] ; note\nk=v\n"), "v");
    EXPECT_EQ(Read("[A] ; note [x]\nk=v\n"), "v");
}

TEST(IniDocument, TakesAnUnclosedHeaderForNoHeader) {
    EXPECT_EQ(Read("[A\nk=v\n"), "missing");
    EXPECT_EQ(Read("[A]\n[B\nk=v\n"), "v");
}

TEST(IniDocument, EndsLinesAtCrLfAtLfAndAtCr) {
    for (const std::string_view bytes :
         {"[A]\r\nk=v\r\nz=1", "[A]\nk=v\nz=1", "[A]\rk=v\rz=1", "[A]\r\r\nk=v\r\r\nz=1"})
        EXPECT_EQ(Read(bytes), "v");
}

TEST(IniDocument, ReadsALastLineWithoutALineEnd) {
    EXPECT_EQ(Read("[A]\r\nk=v"), "v");
    EXPECT_EQ(Read("[A]\r\nk=v\x1A"), "v");  // the old end-of-file mark
}

TEST(IniDocument, LetsTheFirstSectionOfANameWin) {
    EXPECT_EQ(Read("[A]\nk=1\n[B]\nk=2\n[a]\nk=3\n"), "1");
    EXPECT_EQ(Read("[A]\nx=1\n[B]\n[A]\nk=3\n"), "missing");
}

TEST(IniDocument, LetsTheFirstKeyOfANameWin) {
    EXPECT_EQ(Read("[A]\nk=1\nK=2\n"), "1");
    EXPECT_EQ(Read("[A]\nk\nk=2\n"), "missing");  // a name alone has no value
}

TEST(IniDocument, ReadsNothingInFrontOfTheFirstSection) {
    const TIniDocument document("k=1\n[A]\n");
    EXPECT_EQ(document.Value("", "k"), std::nullopt);
    EXPECT_EQ(document.Value("A", "k"), std::nullopt);
}

TEST(IniDocument, TellsAnEmptyValueFromAMissingOne) {
    const TIniDocument document("[A]\nempty=\n");
    EXPECT_EQ(document.Value("A", "empty"), "");
    EXPECT_EQ(document.ReadText("A", "empty", "x"), "");
    EXPECT_EQ(document.Value("A", "k"), std::nullopt);
    EXPECT_EQ(document.Value("B", "k"), std::nullopt);
}

TEST(IniDocument, SplitsAtTheFirstEqualsSign) {
    EXPECT_EQ(Read("[A]\nk=a=b\n"), "a=b");
}

TEST(IniDocument, TellsWhichSectionsThereAre) {
    const TIniDocument document("[SCALE1]\n[Empty]\n");
    EXPECT_TRUE(document.HasSection("scale1"));
    EXPECT_TRUE(document.HasSection("EMPTY"));
    EXPECT_FALSE(document.HasSection("SCALE10"));
    EXPECT_FALSE(document.HasSection("SCALE"));
    EXPECT_FALSE(TIniDocument().HasSection(""));
}

TEST(IniDocument, ReadsIntegersAndTakesTheDefaultForAnythingElse) {
    const TIniDocument document("[A]\na=12\nb=-3\nc=x\nd=\ne=99999999999\nf=1.5\ng=\"7\"\n");
    EXPECT_EQ(document.ReadInteger("A", "a", 5), 12);
    EXPECT_EQ(document.ReadInteger("A", "b", 5), -3);
    EXPECT_EQ(document.ReadInteger("A", "c", 5), 5);
    EXPECT_EQ(document.ReadInteger("A", "d", 5), 5);
    EXPECT_EQ(document.ReadInteger("A", "e", 5), 5);
    EXPECT_EQ(document.ReadInteger("A", "f", 5), 5);
    EXPECT_EQ(document.ReadInteger("A", "g", 5), 7);
    EXPECT_EQ(document.ReadInteger("A", "h", 5), 5);
}

TEST(IniDocument, ReadsBooleansAsIntegersOtherThanZero) {
    const TIniDocument document("[A]\na=1\nb=0\nc=yes\nd=-1\n");
    EXPECT_TRUE(document.ReadBoolean("A", "a", false));
    EXPECT_FALSE(document.ReadBoolean("A", "b", true));
    EXPECT_TRUE(document.ReadBoolean("A", "c", true));
    EXPECT_FALSE(document.ReadBoolean("A", "c", false));
    EXPECT_TRUE(document.ReadBoolean("A", "d", false));
    EXPECT_TRUE(document.ReadBoolean("A", "e", true));
}

}  // namespace
}  // namespace tolvane
