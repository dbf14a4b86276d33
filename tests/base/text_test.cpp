#include "base/text.h"

#include <gtest/gtest.h>

#include <string>

#include "base/fixed_text.h"

namespace kestrel {
namespace {

using namespace std::string_literals;

TEST(Trimming, RemovesBlanksOnlyAndOnlyAtTheEnds) {
    EXPECT_EQ(trimBlanks("  a b \t "), "a b \t");
    EXPECT_EQ(trimBlanksLeft("  a "), "a ");
    EXPECT_EQ(trimBlanks("   "), "");
    EXPECT_EQ(trimBlanks(""), "");
}

TEST(TableField, IsNoFormulaAndOneFieldOfOneLine) {
    for (const char* same : {"", "-", "Cs-137g", "-1.5E-3", "+3", "  -12.0", "1=2"})
        EXPECT_EQ(tableField(same), same);
    for (const char* formula : {"=1+1", "@SUM(A1)", "+1+A1", "-1+A1", " =1", "--1"})
        EXPECT_EQ(tableField(formula), "'" + std::string(formula));
    EXPECT_EQ(tableField("\t=a\r\nb\x7F"), "' =a  b ");
}

TEST(LetterCase, IsThatOfAToZAndLeavesOtherBytesAlone) {
    EXPECT_EQ(toUpper("az{`\xE4"), "AZ{`\xE4");
    EXPECT_EQ(toLower("AZ[@\xC4"), "az[@\xC4");
    EXPECT_TRUE(equalIgnoringCase("Nuc2K.mdb", "nuc2k.MDB"));
    EXPECT_FALSE(equalIgnoringCase("abc", "ab"));
    EXPECT_FALSE(equalIgnoringCase("@", "`"));
}

TEST(Searching, FindsThePartInAnyLetterCase) {
    EXPECT_EQ(findIgnoringCase("x.CHN.chn", ".chn"), 1U);
    EXPECT_EQ(findIgnoringCase("x.CHN.chn", ".chn", 2), 5U);
    EXPECT_EQ(findIgnoringCase("abc", "bd"), std::string::npos);
    EXPECT_EQ(findIgnoringCase("abc", "a", 4), std::string::npos);
    EXPECT_EQ(findIgnoringCase("abc", "", 3), 3U);
    EXPECT_TRUE(containsIgnoringCase("Elapsed LIVE time", "live"));
}

TEST(CharacterPositions, CountFrom1AndAre0WhenThereIsNone) {
    EXPECT_EQ(positionOfAny("Eu-152m", "0123456789"), 4U);
    EXPECT_EQ(positionOfAny("Eu", "0123456789"), 0U);
    EXPECT_EQ(positionOfOther("152m", "0123456789"), 4U);
    EXPECT_EQ(positionOfOther("152", "0123456789"), 0U);
}

TEST(CharactersFromAPosition, MayLieBeyondTheText) {
    EXPECT_EQ(fromCharacter("abc", 3), "c");
    EXPECT_EQ(fromCharacter("abc", 4), "");
    EXPECT_EQ(fromCharacter("abc", 50), "");
    EXPECT_EQ(charactersPadded("abcdef", 5, 3), "ef ");
    EXPECT_EQ(charactersPadded("abcdef", 2, 2), "bc");
    EXPECT_EQ(charactersPadded("a", 9, 2), "  ");
}

TEST(Alignment, KeepsTheLeftmostCharactersOfALongText) {
    EXPECT_EQ(rightAligned("12", 4), "  12");
    EXPECT_EQ(rightAligned("123456789", 8), "12345678");
    EXPECT_EQ(lastCharacters("123456789", 7), "3456789");
    EXPECT_EQ(lastCharacters("12", 7), "12");
}

TEST(FixedWidthText, IsPaddedAndCut) {
    FixedText<4> text("ab");
    EXPECT_EQ(text.view(), "ab  ");
    text.assign("abcdef");
    EXPECT_EQ(text.view(), "abcd");
    EXPECT_EQ(text.characters(2, 2), "bc");
    text.assign("x\0y"s);
    EXPECT_EQ(text.view(), "x\0y "s);
    EXPECT_EQ(FixedText<4>(), FixedText<4>("    "));
}

TEST(FixedWidthText, TakenFromAFileEndsAtTheFirstNul) {
    FixedText<6> text("old");
    text.assignFromFile("ab\0cd\0"s);
    EXPECT_EQ(text.view(), "ab    ");
    text.assignFromFile("\0abc"s);
    EXPECT_EQ(text.trimmed(), "");
    text.assignFromFile("abcdef\0gh"s);
    EXPECT_EQ(text.view(), "abcdef");
}

}  // namespace
}  // namespace kestrel
