#include "text/Cp1251.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

std::string EveryByte() {
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(static_cast<unsigned char>(byte));
    return all;
}

TEST(Cp1251Literal, HoldsTheBytesOfTheCodePage) {
    // Б = C1, а = E0, р = F0, к = EA, о = EE, д = E4; № = B9; € = 88
    EXPECT_EQ("Баркод № 1 €"_cp1251, std::string_view("\xC1\xE0\xF0\xEA\xEE\xE4 \xB9 1 \x88"));
}

TEST(Cp1251Literal, IsZeroTerminated) {
    const std::string_view text = "Везни"_cp1251;
    EXPECT_EQ(text.size(), 5U);
    EXPECT_EQ(text.data()[5], '\0');
}

TEST(Cp1251Literal, MayBeEmpty) {
    EXPECT_TRUE(""_cp1251.empty());
}

TEST(ToUtf16, GivesOneUnitPerByte) {
    EXPECT_EQ(ToUtf16("\xC1\xE0\xF0 A\x80\xB9\x88"), u"Бар AЂ№€");
}

TEST(FromUtf16, TakesEveryByteBack) {
    EXPECT_EQ(FromUtf16(ToUtf16(EveryByte())), EveryByte());
}

TEST(FromUtf16, ShowsAQuestionMarkForWhatTheCodePageLacks) {
    EXPECT_EQ(FromUtf16(u"aαӘ中b"), "a???b");
}

TEST(FromUtf16, ShowsOneQuestionMarkForASurrogatePair) {
    EXPECT_EQ(FromUtf16(u"a\U0001F600b"), "a?b");
}

TEST(FromUtf16, ShowsAQuestionMarkForEachLoneSurrogate) {
    const std::u16string lone = {u'a', 0xD83D, u'b', 0xDE00, 0xD83D};
    EXPECT_EQ(FromUtf16(lone), "a?b??");
}

TEST(ToUtf8, WritesOneTwoAndThreeBytes) {
    EXPECT_EQ(ToUtf8("A\xE6\x88"), "A\xD0\xB6\xE2\x82\xAC");  // A, ж, €
}

TEST(FromUtf8, TakesEveryByteBack) {
    EXPECT_EQ(FromUtf8(ToUtf8(EveryByte())), EveryByte());
}

TEST(FromUtf8, ShowsAQuestionMarkForWhatTheCodePageLacks) {
    EXPECT_EQ(FromUtf8("a\xCE\xB1"         // α
                       "\xF0\x9F\x98\x80"  // an emoticon
                       "b"),
              "a??b");
}

TEST(FromUtf8, ShowsAQuestionMarkForInvalidSequences) {
    EXPECT_EQ(FromUtf8("\xFF"), "?");
    EXPECT_EQ(FromUtf8("\x80z"), "?z");
    EXPECT_EQ(FromUtf8("\xC0\xAF"), "??");            // an overlong form
    EXPECT_EQ(FromUtf8("\xD0"), "?");                 // cut short
    EXPECT_EQ(FromUtf8("\xE2\x82z"), "?z");           // cut short by another character
    EXPECT_EQ(FromUtf8("\xED\xA0\x80"), "???");       // a surrogate
    EXPECT_EQ(FromUtf8("\xF4\x90\x80\x80"), "????");  // above the last code point
}

TEST(IsUtf8, TellsWellFormedBytesFromOthers) {
    EXPECT_TRUE(IsUtf8(""));
    EXPECT_TRUE(IsUtf8("abc"));
    EXPECT_TRUE(IsUtf8("\xD0\x92\xD0\xB5"));
    EXPECT_FALSE(IsUtf8("\xC2\xE5\xE7\xED\xE8"));  // Везни in code page 1251
    EXPECT_FALSE(IsUtf8("abc\xD0"));
}

struct TLetters {
    std::string_view lower;
    std::string_view upper;
};

constexpr TLetters kAlphabets[] = {
    {"abcdefghijklmnopqrstuvwxyz"_cp1251, "ABCDEFGHIJKLMNOPQRSTUVWXYZ"_cp1251},
    {"абвгдежзийклмнопрстуфхцчшщъыьэюя"_cp1251, "АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ"_cp1251},
    {"ёђѓєѕіїјљњћќўџґ"_cp1251, "ЁЂЃЄЅІЇЈЉЊЋЌЎЏҐ"_cp1251}};

TEST(UpperCase, FoldsEveryLetterPair) {
    for (const TLetters& alphabet : kAlphabets)
        EXPECT_EQ(UpperCase(alphabet.lower), alphabet.upper);
}

TEST(UpperCase, LeavesUpperCaseLettersAlone) {
    for (const TLetters& alphabet : kAlphabets)
        EXPECT_EQ(UpperCase(alphabet.upper), alphabet.upper);
}

TEST(UpperCase, LeavesEverythingElseAlone) {
    std::string letters;
    for (const TLetters& alphabet : kAlphabets)
        letters += alphabet.lower;
    for (const char c : EveryByte()) {
        if (letters.find(c) != std::string::npos) continue;
        EXPECT_EQ(UpperCase(c), c);
    }
}

TEST(CompareIgnoringCase, FollowsTheBulgarianAlphabet) {
    EXPECT_LT(CompareIgnoringCase("ананас"_cp1251, "ЯБЪЛКА"_cp1251), 0);
    EXPECT_LT(CompareIgnoringCase("Банани"_cp1251, "ЯБЪЛКИ"_cp1251), 0);
    EXPECT_GT(CompareIgnoringCase("щука"_cp1251, "ШУНКА"_cp1251), 0);
    EXPECT_EQ(CompareIgnoringCase("Сирене"_cp1251, "сИРЕНЕ"_cp1251), 0);
}

TEST(CompareIgnoringCase, PutsDigitsAndLatinBeforeCyrillic) {
    EXPECT_LT(CompareIgnoringCase("9", "a"), 0);
    EXPECT_LT(CompareIgnoringCase("z", "а"_cp1251), 0);
}

TEST(CompareIgnoringCase, PutsAShorterTextFirst) {
    EXPECT_LT(CompareIgnoringCase("мляко"_cp1251, "МЛЯКО 3%"_cp1251), 0);
    EXPECT_LT(CompareIgnoringCase("", "a"), 0);
    EXPECT_EQ(CompareIgnoringCase("", ""), 0);
}

TEST(EqualIgnoringCase, ComparesWholeTexts) {
    EXPECT_TRUE(EqualIgnoringCase("Scale1", "SCALE1"));
    EXPECT_FALSE(EqualIgnoringCase("SCALE1", "SCALE10"));
}

TEST(AppendUpperCase, LeavesWhatStandsThere) {
    std::string text = "a";
    AppendUpperCase(text, "бв"_cp1251);
    AppendUpperCase(text, "");
    EXPECT_EQ(text, "aБВ"_cp1251);
}

TEST(HashIgnoringCase, IsTheSameForTextsThatDifferInCase) {
    EXPECT_EQ(HashIgnoringCase("сИРене"_cp1251, 7), HashIgnoringCase("Сирене"_cp1251, 7));
    EXPECT_NE(HashIgnoringCase("сирене"_cp1251, 7), HashIgnoringCase("сирена"_cp1251, 7));
    EXPECT_NE(HashIgnoringCase("сирене"_cp1251, 7), HashIgnoringCase("сирене"_cp1251, 8));
}

TEST(ContainsUpperCased, FindsTheNeedleInAnyCase) {
    const std::string_view needle = "СИР"_cp1251;
    EXPECT_TRUE(ContainsUpperCased("Краве сирене"_cp1251, needle));
    EXPECT_TRUE(ContainsUpperCased("СИРЕНЕ"_cp1251, needle));
    EXPECT_TRUE(ContainsUpperCased("кисир"_cp1251, needle));
    EXPECT_FALSE(ContainsUpperCased("Сидер"_cp1251, needle));
}

TEST(ContainsUpperCased, FindsANeedleAfterAFalseStart) {
    EXPECT_TRUE(ContainsUpperCased("aab", "AB"));
    EXPECT_FALSE(ContainsUpperCased("aaa", "AB"));
}

TEST(ContainsUpperCased, FindsTheEmptyNeedleEverywhere) {
    EXPECT_TRUE(ContainsUpperCased("", ""));
    EXPECT_TRUE(ContainsUpperCased("a", ""));
    EXPECT_FALSE(ContainsUpperCased("", "A"));
}

TEST(TextFinder, FindsTheTextInAnyCase) {
    for (const std::string_view text : {"СИР"_cp1251, "сирене"_cp1251, "Сирене"_cp1251}) {
        const TTextFinder finder(text);
        EXPECT_TRUE(finder.IsIn("Краве сирене"_cp1251));
        EXPECT_TRUE(finder.IsIn("СИРЕНЕ"_cp1251));
        EXPECT_TRUE(finder.IsIn("кисирене"_cp1251));
        EXPECT_FALSE(finder.IsIn("Сидерене"_cp1251));
        EXPECT_FALSE(finder.IsIn("си"_cp1251));
    }
}

TEST(TextFinder, FindsTheTextAfterAFalseStart) {
    EXPECT_TRUE(TTextFinder("AB").IsIn("aab"));
    EXPECT_FALSE(TTextFinder("AB").IsIn("aaa"));
    EXPECT_TRUE(TTextFinder("abac").IsIn("ababac"));
    EXPECT_TRUE(TTextFinder("abab").IsIn("abaabab"));
    EXPECT_TRUE(TTextFinder("aaab").IsIn("aaaaab"));
    EXPECT_FALSE(TTextFinder("baaa").IsIn("aaaaab"));
}

TEST(TextFinder, FindsTheTextAtEveryPlace) {
    const TTextFinder finder("wxyz");
    for (std::size_t before = 0; before < 10; ++before) {
        for (std::size_t after = 0; after < 10; ++after) {
            const std::string text = std::string(before, 'z') + "wXyZ" + std::string(after, 'x');
            EXPECT_TRUE(finder.IsIn(text)) << text;
        }
    }
}

TEST(TextFinder, FindsATextLongerThanAByteCanCount) {
    const std::string text = std::string(300, 'a') + 'b';
    EXPECT_TRUE(TTextFinder(text).IsIn("c" + std::string(301, 'A') + "Bc"));
    EXPECT_FALSE(TTextFinder(text).IsIn(std::string(299, 'A') + "B"));
    EXPECT_TRUE(TTextFinder(std::string(300, 'a')).IsIn("b" + std::string(300, 'a')));
}

TEST(TextFinder, FindsTheEmptyTextEverywhere) {
    EXPECT_TRUE(TTextFinder("").IsIn(""));
    EXPECT_TRUE(TTextFinder("").IsIn("a"));
    EXPECT_FALSE(TTextFinder("A").IsIn(""));
}

TEST(Trim, DropsBlanksAndControlCharactersAtBothEnds) {
    EXPECT_EQ(Trim(" \t\r\n a b \x01 "), "a b");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Trim("\xA0x"), "\xA0x");  // the no-break space stays
}

}  // namespace
}  // namespace tolvane
