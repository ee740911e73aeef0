// UTF-8 as the code page: what becomes of bytes that are none, and comparisons.

#include "platform/code_page.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::string Converted(const std::string& bytes) {
    const AnsiString text(bytes.data(), bytes.size());
    return std::string(platform::CDomArgument(text).View());
}

std::string Replacements(int count) {
    std::string text;
    while (count-- > 0) {
        text += "\xEF\xBF\xBD";
    }
    return text;
}

} // namespace

TEST(ValidUtf8, PassesAsItIs) {
    for (const char* const text :
         {"", "plain", "long enough to be looked at in blocks of eight bytes", "\xC3\xA4", "\xE2\x82\xAC",
          "\xF0\x9F\x96\xA8", "a\xC3\xA4z", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
          "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_EQ(Converted(text), text);
    }
}

TEST(ValidUtf8, IsNotCopied) {
    for (const char* const bytes : {"plain", "longer than eight bytes", "plain \xC3\xA4"}) {
        const AnsiString text(bytes);
        EXPECT_EQ(platform::CDomArgument(text).View().data(), text.c_str()) << bytes;
    }
}

TEST(InvalidUtf8, BecomesOneReplacementPerByteThatStartsNothing) {
    EXPECT_EQ(Converted("\x80"), Replacements(1));
    EXPECT_EQ(Converted("\xBF\x80"), Replacements(2));
    EXPECT_EQ(Converted("\xC0\x80"), Replacements(2));
    EXPECT_EQ(Converted("\xC1\xBF"), Replacements(2));
    EXPECT_EQ(Converted("\xF5\x80\x80\x80"), Replacements(4));
    EXPECT_EQ(Converted("\xFE\xFF"), Replacements(2));
}

TEST(InvalidUtf8, BecomesOneReplacementPerSequenceThatIsCutShort) {
    EXPECT_EQ(Converted("\xC3"), Replacements(1));
    EXPECT_EQ(Converted("\xE2\x82"), Replacements(1));
    EXPECT_EQ(Converted("\xF0\x9F\x96"), Replacements(1));
    EXPECT_EQ(Converted("\xF0\x9F"), Replacements(1));
}

TEST(InvalidUtf8, LosesNothingOfWhatFollowsACutSequence) {
    EXPECT_EQ(Converted("\xC3z"), Replacements(1) + "z");
    EXPECT_EQ(Converted("\xE2\x82z"), Replacements(1) + "z");
    EXPECT_EQ(Converted("\xE2\xC3\xA4"), Replacements(1) + "\xC3\xA4");
    EXPECT_EQ(Converted("\xF0\x9F\x96\xE2\x82\xAC"), Replacements(1) + "\xE2\x82\xAC");
}

TEST(InvalidUtf8, BreaksBeforeASecondByteThatTheLeadDoesNotAllow) {
    EXPECT_EQ(Converted("\xE0\x9F\x80"), Replacements(3)) << "overlong";
    EXPECT_EQ(Converted("\xED\xA0\x80"), Replacements(3)) << "surrogate";
    EXPECT_EQ(Converted("\xF0\x8F\x80\x80"), Replacements(4)) << "overlong";
    EXPECT_EQ(Converted("\xF4\x90\x80\x80"), Replacements(4)) << "beyond the last code point";
}

TEST(InvalidUtf8, IsReplacedAmongValidText) {
    EXPECT_EQ(Converted("a\xFF\xC3\xA4\x80z"), "a" + Replacements(1) + "\xC3\xA4" + Replacements(1) + "z");
    EXPECT_EQ(Converted("eight bytes and then \xE2"), "eight bytes and then " + Replacements(1));
}

TEST(InvalidUtf8, IsFoundAtEveryPlaceInABlock) {
    for (std::size_t position = 0; position < 24; ++position) {
        std::string text(24, 'a');
        text[position] = '\xFF';
        std::string expected(24, 'a');
        expected.replace(position, 1, Replacements(1));
        EXPECT_EQ(Converted(text), expected) << position;
    }
}

TEST(CodePoints, AreDecodedOneByOne) {
    const std::string text = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x96\xA8\xFF";
    std::vector<char32_t> codePoints;
    for (std::size_t position = 0; position < text.size();) {
        codePoints.push_back(platform::NextCodePoint(text, position));
    }
    EXPECT_EQ(codePoints, (std::vector<char32_t>{U'a', 0xE4, 0x20AC, 0x1F5A8, 0xFFFD}));
}

TEST(CaseFolding, EqualsLettersOfEitherCase) {
    EXPECT_TRUE(platform::EqualIgnoringCase("C:\\Fonts\\A.ttf", "c:\\fonts\\a.TTF"));
    EXPECT_TRUE(platform::EqualIgnoringCase("\xC3\x84\xC3\x96\xC3\x9C", "\xC3\xA4\xC3\xB6\xC3\xBC"));
    EXPECT_TRUE(platform::EqualIgnoringCase("\xD0\x94", "\xD0\xB4"));
    EXPECT_TRUE(platform::EqualIgnoringCase("", ""));
}

TEST(CaseFolding, GoesByOneCodePointAtATime) {
    EXPECT_FALSE(platform::EqualIgnoringCase("\xC3\x9F", "ss")) << "no expansion";
    EXPECT_FALSE(platform::EqualIgnoringCase("\xC3\xA4", "a\xCC\x88")) << "no composition";
}

TEST(CaseFolding, EqualsLettersOfDifferentLengthInBytes) {
    EXPECT_TRUE(platform::EqualIgnoringCase("\xE2\x84\xAA", "k")) << "the Kelvin sign";
    EXPECT_TRUE(platform::EqualIgnoringCase("\xE2\x84\xAA"
                                            "elvin",
                                            "KELVIN"));
}

TEST(CaseFolding, DoesNotEqualAPrefix) {
    EXPECT_FALSE(platform::EqualIgnoringCase("abc", "ab"));
    EXPECT_FALSE(platform::EqualIgnoringCase("ab", "abc"));
    EXPECT_FALSE(platform::EqualIgnoringCase("", "a"));
}

TEST(CaseFolding, LeavesSeparatorsAndSignsAlone) {
    EXPECT_FALSE(platform::EqualIgnoringCase("a/b", "a\\b"));
    EXPECT_FALSE(platform::EqualIgnoringCase("@", "`"));
    EXPECT_FALSE(platform::EqualIgnoringCase("[", "{"));
}

TEST(CaseFolding, TakesIllFormedBytesForWhatTheyWouldBeStoredAs) {
    EXPECT_TRUE(platform::EqualIgnoringCase("a\xFF", "A\xEF\xBF\xBD"));
    EXPECT_TRUE(platform::EqualIgnoringCase("a\xFF", "a\xFE"));
    EXPECT_TRUE(platform::EqualIgnoringCase("\xE2\x82z", "\xEF\xBF\xBDZ")) << "one for a character that is cut short";
    EXPECT_FALSE(platform::EqualIgnoringCase("\xE2\x28z", "\xEF\xBF\xBDz"));
    EXPECT_FALSE(platform::EqualIgnoringCase("a\xFF", "a"));
}

TEST(WholeCharacters, EndWhereACharacterEnds) {
    EXPECT_EQ(platform::WholeCharacters("abc", 5), 3u);
    EXPECT_EQ(platform::WholeCharacters("abc", 3), 3u);
    EXPECT_EQ(platform::WholeCharacters("abc", 2), 2u);
    EXPECT_EQ(platform::WholeCharacters("\xE2\x82\xACz", 3), 3u);
    EXPECT_EQ(platform::WholeCharacters("a\xE2\x82\xACz", 3), 1u);
    EXPECT_EQ(platform::WholeCharacters("\xF0\x9F\x96\xA8", 3), 0u);
    EXPECT_EQ(platform::WholeCharacters("", 0), 0u);
}

TEST(FindingACharacter, GivesItsFirstPosition) {
    EXPECT_EQ(platform::FindCharacter("2201", '0'), 2u);
    EXPECT_EQ(platform::FindCharacter("0", '0'), 0u);
    EXPECT_EQ(platform::FindCharacter("22", '0'), std::string::npos);
    EXPECT_EQ(platform::FindCharacter("", '0'), std::string::npos);
}
