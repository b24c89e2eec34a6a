#include <gtest/gtest.h>

#include "config/IniDocument.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

std::string Written(std::string_view bytes, std::string_view key, std::string_view value) {
    TIniDocument document(bytes);
    document.WriteText("A", key, value);
    return document.Bytes();
}

TEST(IniDocument, ReplacesAnExistingValueInItsLine) {
    EXPECT_EQ(Written("[A]\r\nk=1\r\nz=2\r\n", "k", "9"), "[A]\r\nk=9\r\nz=2\r\n");
    EXPECT_EQ(Written("[a]\n  K = 1  \nz=2\n", "k", "9"), "[a]\n  K = 9  \nz=2\n");
    EXPECT_EQ(Written("[A]\nk='1'", "k", "9"), "[A]\nk=9");
    EXPECT_EQ(Written("[A]\nk=\r\n", "k", "9"), "[A]\nk=9\r\n");
}

TEST(IniDocument, ReplacesTheFirstOfRepeatedKeysAndSections) {
    EXPECT_EQ(Written("[A]\nk=1\nk=2\n[A]\nk=3\n", "k", "9"), "[A]\nk=9\nk=2\n[A]\nk=3\n");
}

TEST(IniDocument, GivesAValueToANameAlone) {
    EXPECT_EQ(Written("[A]\nk\nz=2\n", "k", "9"), "[A]\nk=9\nz=2\n");
    EXPECT_EQ(Written("[A]\nk", "k", "9"), "[A]\nk=9");
}

TEST(IniDocument, PutsANewKeyAfterTheSectionsLastKey) {
    EXPECT_EQ(Written("[A]\r\nx=1\r\n\r\n; end of A\r\n[B]\r\n", "k", "9"),
              "[A]\r\nx=1\r\nk=9\r\n\r\n; end of A\r\n[B]\r\n");
}

TEST(IniDocument, PutsANewKeyAfterTheHeaderOfASectionWithoutKeys) {
    EXPECT_EQ(Written("[A]\n; note\n[B]\n", "k", "9"), "[A]\nk=9\n; note\n[B]\n");
}

TEST(IniDocument, GivesANewKeyTheLineEndOfTheLineBefore) {
    EXPECT_EQ(Written("[A]\nx=1\n[B]\r\ny=2\r\nz=3\r\n", "k", "9"),
              "[A]\nx=1\nk=9\n[B]\r\ny=2\r\nz=3\r\n");
}

TEST(IniDocument, EndsALastLineWithoutALineEndBeforeANewOne) {
    EXPECT_EQ(Written("[A]\nx=1", "k", "9"), "[A]\nx=1\nk=9\n");
    EXPECT_EQ(Written("[A]", "k", "9"), "[A]\r\nk=9\r\n");
    EXPECT_EQ(Written("[B]\nx=1", "k", "9"), "[B]\nx=1\n[A]\nk=9\n");
}

TEST(IniDocument, PutsANewSectionAtTheEndInTheFilesLineEnds) {
    EXPECT_EQ(Written("[B]\nx=1\n\n", "k", "9"), "[B]\nx=1\n\n[A]\nk=9\n");
    EXPECT_EQ(Written("[B]\r\nx=1\r\ny=2\n", "k", "9"), "[B]\r\nx=1\r\ny=2\n[A]\r\nk=9\r\n");
}

TEST(IniDocument, StartsANewFileWithCrLf) {
    EXPECT_EQ(Written("", "k", "9"), "[A]\r\nk=9\r\n");
}

TEST(IniDocument, LeavesTheBytesWhenTheValueStandsThereAlready) {
    for (const std::string_view bytes :
         {"[A]\nk=9", "[a]\n K =\t9 \r\n", "[A]\nk=\"9\"\n", "[A]\nk='9'\n[A]\nk=8\n"})
        EXPECT_EQ(Written(bytes, "k", "9"), bytes);
    TIniDocument document("[A]\nk=09\nb=+1\n");
    document.WriteInteger("A", "k", 9);
    document.WriteBoolean("A", "b", true);
    EXPECT_EQ(document.Bytes(), "[A]\nk=09\nb=+1\n");
}

TEST(IniDocument, WritesIntegersAndBooleans) {
    TIniDocument document;
    document.WriteInteger("A", "i", -12);
    document.WriteBoolean("A", "yes", true);
    document.WriteBoolean("A", "no", false);
    EXPECT_EQ(document.Bytes(), "[A]\r\ni=-12\r\nyes=1\r\nno=0\r\n");
}

TEST(IniDocument, QuotesAValueWithBlanksOrQuotesAtItsEnds) {
    EXPECT_EQ(Written("", "k", " v"), "[A]\r\nk=\" v\"\r\n");
    EXPECT_EQ(Written("", "k", "v\t"), "[A]\r\nk=\"v\t\"\r\n");
    EXPECT_EQ(Written("", "k", "\"v\""), "[A]\r\nk=\"\"v\"\"\r\n");
    EXPECT_EQ(Written("", "k", "'v"), "[A]\r\nk=\"'v\"\r\n");
    EXPECT_EQ(Written("", "k", "a \"b\""), "[A]\r\nk=a \"b\"\r\n");
}

TEST(IniDocument, ReadsBackEveryValueThatItWrote) {
    for (const std::string_view value :
         {"", " ", "  v  ", "\"", "\"\"", "'", "''", "\"v\"", "'v'", "\"v", "v\"", "a=b", ";v",
          "[v]", "=", "\xA0v\xA0", "\x1Av\x1A", "a;b", "\"a' "}) {
        TIniDocument document("[A]\nk=old\n");
        document.WriteText("A", "k", value);
        document.WriteText("A", "new", value);
        const TIniDocument again(document.Bytes());
        EXPECT_EQ(again.Value("A", "k"), value);
        EXPECT_EQ(again.Value("A", "new"), value);
    }
}

TEST(IniDocument, WritesBlanksForWhatWouldEndTheLine) {
    const std::string_view value("a\r\nb\0c", 6);
    EXPECT_EQ(Written("", "k", value), "[A]\r\nk=a  b c\r\n");
}

TEST(IniDocument, ReadsWhatItWroteWithoutBeingSavedFirst) {
    TIniDocument document;
    document.WriteText("A", "k", "1");
    EXPECT_TRUE(document.HasSection("a"));
    document.WriteText("a", "K", "2");
    EXPECT_EQ(document.ReadText("A", "k", ""), "2");
    EXPECT_EQ(document.Bytes(), "[A]\r\nk=2\r\n");
}

TEST(IniDocument, ErasesAKeyWithItsRepeats) {
    TIniDocument document("[A]\nk=1\nx=1\nK=2\n[B]\nk=3\n");
    document.EraseKey("a", "k");
    EXPECT_EQ(document.Bytes(), "[A]\nx=1\n[B]\nk=3\n");
    EXPECT_EQ(document.Value("A", "k"), std::nullopt);
    document.EraseKey("A", "missing");
    document.EraseKey("C", "k");
    EXPECT_EQ(document.Bytes(), "[A]\nx=1\n[B]\nk=3\n");
}

TEST(IniDocument, WritesAKeyAgainThatItErased) {
    TIniDocument document("[A]\nx=1\nk=1");
    document.EraseKey("A", "k");
    document.WriteText("A", "k", "2");
    EXPECT_EQ(document.Bytes(), "[A]\nx=1\nk=2\n");
}

TEST(IniDocument, ANewSectionFollowsTheLastLineThatIsLeft) {
    TIniDocument document("[B]\nx=1");
    document.EraseKey("B", "x");
    document.WriteText("A", "k", "2");
    EXPECT_EQ(document.Bytes(), "[B]\n[A]\nk=2\n");
}

TEST(IniDocument, ErasesASectionUpToTheNextHeader) {
    TIniDocument document("; top\r\n[A]\r\nk=1\r\n; note\r\n\r\n[B]\r\nx=1\r\n");
    document.EraseSection("a");
    EXPECT_EQ(document.Bytes(), "; top\r\n[B]\r\nx=1\r\n");
    EXPECT_FALSE(document.HasSection("A"));
    EXPECT_EQ(document.Value("A", "k"), std::nullopt);
}

std::string WithoutA(std::string_view bytes) {
    TIniDocument document(bytes);
    document.EraseSection("A");
    return document.Bytes();
}

TEST(IniDocument, ErasesASectionButNotTheCommentsDirectlyAboveTheNextHeader) {
    EXPECT_EQ(WithoutA("[A]\r\n; of A\r\nk=1\r\n\r\n; of B\r\n  # too\r\n[B]\r\nx=1\r\n"),
              "; of B\r\n  # too\r\n[B]\r\nx=1\r\n");
    EXPECT_EQ(WithoutA("[A]\n;only\n[B]\n"), ";only\n[B]\n");
    EXPECT_EQ(WithoutA("[A]\n; of A\nk=1\n[B]\n"), "[B]\n");
    // A blank line separates a comment from the header.
    EXPECT_EQ(WithoutA("[A]\nk=1\n; of A\n \n; of B\n[B]\n"), "; of B\n[B]\n");
}

TEST(IniDocument, ErasesTheCommentsOfALastSectionWithIt) {
    EXPECT_EQ(WithoutA("[B]\n[A]\nk=1\n; end"), "[B]\n");
    TIniDocument document("[A]\nk=1\n; note\n[B]\nx=1\n");
    document.EraseSection("B");
    document.EraseSection("A");
    EXPECT_EQ(document.Bytes(), "");
}

TEST(IniDocument, ErasesASectionWhoseLastKeyWasErasedAsItWouldStandInTheFile) {
    TIniDocument document("[A]\n; one\nk=1\n; two\n[B]\n");
    document.EraseKey("A", "k");
    document.EraseSection("A");
    EXPECT_EQ(document.Bytes(), "; one\n; two\n[B]\n");
}

TEST(IniDocument, ReadsNothingOfAnErasedSectionWhoseCommentStays) {
    TIniDocument document("[A]\nk=1\n#k=2\n[B]\n");
    document.EraseSection("A");
    EXPECT_EQ(document.Bytes(), "#k=2\n[B]\n");
    EXPECT_FALSE(document.HasSection("A"));
    EXPECT_EQ(document.Value("A", "#k"), std::nullopt);
    document.WriteText("A", "k", "3");
    EXPECT_EQ(document.Bytes(), "#k=2\n[B]\n[A]\nk=3\n");
}

TEST(IniDocument, ErasesEverySectionOfTheName) {
    TIniDocument document("[A]\nk=1\n[B]\nx=1\n[a]\nk=2\n");
    document.EraseSection("A");
    EXPECT_EQ(document.Bytes(), "[B]\nx=1\n");
}

TEST(IniDocument, WritesASectionAgainThatItErased) {
    TIniDocument document("[A]\nk=1\nx=2\n[B]\n");
    document.EraseSection("A");
    document.WriteText("A", "x", "3");
    EXPECT_EQ(document.Bytes(), "[B]\n[A]\nx=3\n");
    EXPECT_EQ(document.Value("A", "k"), std::nullopt);
}

TEST(IniDocument, OfRepeatedSectionsAtTheEndKeepsTheCommentsThatStoodAboveAHeader) {
    EXPECT_EQ(WithoutA("[A]\nk=1\n; of A\n[A]\nk=2\n; end\n"), "; of A\n");
}

TEST(IniDocument, PutsANewKeyWhereTheErasedLastOneStood) {
    TIniDocument document("[A]\nx=1\ny=2\n\n; note\n[B]\n");
    document.EraseKey("A", "x");
    document.EraseKey("A", "y");
    document.WriteText("A", "k", "9");
    document.WriteText("A", "m", "8");
    EXPECT_EQ(document.Bytes(), "[A]\nk=9\nm=8\n\n; note\n[B]\n");
}

TEST(IniDocument, ChangesALineAgainThatItChanged) {
    TIniDocument document("[A]\nk=1\n[B]\n");
    document.WriteText("A", "k", "22");
    document.WriteText("A", "k", "3");
    document.EraseKey("A", "k");
    document.WriteText("A", "k", "4");
    document.WriteText("A", "k", "55");
    EXPECT_EQ(document.Bytes(), "[A]\nk=55\n[B]\n");
}

TEST(IniDocument, ACopyIsIndependent) {
    TIniDocument document("[A]\nk=1\n");
    const TIniDocument copy = document;
    document.WriteText("A", "k", "2");
    document.WriteText("B", "x", "3");
    EXPECT_EQ(copy.Bytes(), "[A]\nk=1\n");
    EXPECT_FALSE(copy.HasSection("B"));
    EXPECT_EQ(document.Bytes(), "[A]\nk=2\n[B]\nx=3\n");
}

}  // namespace
}  // namespace tolvane
