// The code page UTF-8, which a host may ask for in its manifest: characters of one to four bytes, and halves of
// characters in UTF-16.

#include "lacking_system.h"
#include "platform/code_page.h"
#include "wide_text.h"

#include <gtest/gtest.h>

using platform::EqualIgnoringCase;
using platform::FindCharacter;
using platform::NextCodePoint;

class CodePageUtf8 : public ::testing::Test {
private:
    const CCodePage m_codePage;
};

TEST_F(CodePageUtf8, HasEveryCharacter) {
    const wchar_t* const wide = L"a\u00E4\u20AC\U0001F5A8";
    const char* const bytes = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x96\xA8";
    EXPECT_EQ(platform::ToWideText(bytes), wide);
    EXPECT_EQ(platform::ToAnsi(wide), AnsiString(bytes));
    EXPECT_EQ(platform::CDomArgument(AnsiString(bytes)).View(), wide);
}

TEST_F(CodePageUtf8, ReadsNothingBehindTheText) {
    EXPECT_EQ(platform::ToAnsi(std::wstring_view(L"\u00E4bc", 2)), AnsiString("\xC3\xA4"
                                                                              "b"));
    EXPECT_EQ(platform::ToWideText(std::string_view("\xC3\xA4"
                                                    "bc",
                                                    3)),
              L"\u00E4b");
}

TEST_F(CodePageUtf8, HasTextsOfAnyLength) {
    std::wstring wide;
    std::string bytes;
    for (const std::size_t length : {255, 256, 257, 100000}) {
        wide.resize(length, L'\u20AC');
        while (bytes.size() < 3 * length) {
            bytes += "\xE2\x82\xAC";
        }
        EXPECT_EQ(platform::ToAnsi(wide), bytes.c_str()) << length;
        EXPECT_EQ(platform::ToWideText(bytes), wide) << length;
    }
}

TEST_F(CodePageUtf8, HasNoCharacterForHalfOfOne) {
    EXPECT_EQ(platform::ToAnsi(L"\xD83D!"), AnsiString("\xEF\xBF\xBD!"));
}

TEST_F(CodePageUtf8, FoldsLettersOfAnyLength) {
    EXPECT_TRUE(EqualIgnoringCase("Stra\xC3\x9F"
                                  "e \xC3\x84.ttf",
                                  "STRA\xC3\x9F"
                                  "E \xC3\xA4.TTF"));
    EXPECT_TRUE(EqualIgnoringCase("\xE2\xB0\x80", "\xE2\xB0\xB0")) << "Glagolitic, of three bytes";
    EXPECT_FALSE(EqualIgnoringCase("\xE2\x82\xAC", "\xE2\x82\xAD"));
    EXPECT_FALSE(EqualIgnoringCase("\xF0\x9F\x96\xA8", "\xF0\x9F\x96\xA9"));
    EXPECT_TRUE(EqualIgnoringCase("\xF0\x9F\x96\xA8", "\xF0\x9F\x96\xA8"));
    EXPECT_FALSE(EqualIgnoringCase("a", "ab"));
}

TEST_F(CodePageUtf8, FoldsAsUnicodeDoes) {
    EXPECT_TRUE(EqualIgnoringCase("\xE2\x84\xAA", "k")) << "the Kelvin sign";
    EXPECT_TRUE(EqualIgnoringCase("\xC4\xB0", "i")) << "capital i with a dot";
    EXPECT_FALSE(EqualIgnoringCase("\xC3\x9F", "ss")) << "no expansion";
    EXPECT_FALSE(EqualIgnoringCase("\xC3\xA4", "a\xCC\x88")) << "no composition";
    EXPECT_TRUE(EqualIgnoringCase("\xF0\x90\x90\x80", "\xF0\x90\x90\xA8")) << "Deseret, of two units";
}

TEST_F(CodePageUtf8, TakesIllFormedBytesForWhatTheyWouldBeStoredAs) {
    EXPECT_TRUE(EqualIgnoringCase("a\xE2\x82", "A\xE2\x82"));
    EXPECT_TRUE(EqualIgnoringCase("a\xE2\x82", "A\xE2\x83"));
    EXPECT_TRUE(EqualIgnoringCase("a\xFF", "A\xEF\xBF\xBD"));
    EXPECT_TRUE(EqualIgnoringCase("\xE2\x82z", "\xEF\xBF\xBDZ"));
    EXPECT_FALSE(EqualIgnoringCase("a\xFF", "a"));
}

TEST_F(CodePageUtf8, CutsWhereACharacterEnds) {
    EXPECT_EQ(platform::WholeCharacters("abc", 5), 3u);
    EXPECT_EQ(platform::WholeCharacters("abc", 3), 3u);
    EXPECT_EQ(platform::WholeCharacters("abc", 2), 2u);
    EXPECT_EQ(platform::WholeCharacters("\xE2\x82\xACz", 3), 3u);
    EXPECT_EQ(platform::WholeCharacters("a\xE2\x82\xACz", 3), 1u);
    EXPECT_EQ(platform::WholeCharacters("\xC2\xA9z", 1), 0u) << "the first that begins a character of two bytes";
}

TEST_F(CodePageUtf8, FindsNoCharacterWithinAnother) {
    EXPECT_EQ(FindCharacter("\xC3\xA4\xE2\x82\xAC\xF0\x9F\x96\xA8|x", '|'), 9u);
    EXPECT_EQ(FindCharacter("\x80|", '|'), 1u) << "a byte that begins no character is one by itself";
    EXPECT_EQ(FindCharacter("\xC3\xA4", '|'), std::string_view::npos);
}

TEST(CodePoints, AreReadFromTwoHalves) {
    const std::wstring_view text = L"a\xD83D\xDDA8z";
    std::size_t position = 0;
    EXPECT_EQ(NextCodePoint(text, position), U'a');
    EXPECT_EQ(NextCodePoint(text, position), U'\U0001F5A8');
    EXPECT_EQ(NextCodePoint(text, position), U'z');
    EXPECT_EQ(position, text.size());
    position = 0;
    EXPECT_EQ(NextCodePoint(L"\xD800\xDC00", position), U'\U00010000') << "the first";
    position = 0;
    EXPECT_EQ(NextCodePoint(L"\xDBFF\xDFFF", position), U'\U0010FFFF') << "the last";
}

TEST(CodePoints, ThatAreHalvesAloneStayHalves) {
    for (const std::wstring_view text : {L"\xD83D", L"\xD83Dz", L"\xD83D\xD83D", L"\xD83D\xE000", L"\xDDA8\xD83D"}) {
        std::size_t position = 0;
        EXPECT_EQ(NextCodePoint(text, position), static_cast<char32_t>(text.front()));
        EXPECT_EQ(position, 1u);
    }
    std::size_t position = 0;
    EXPECT_EQ(NextCodePoint(L"\xFFFD", position), 0xFFFDu);
}

TEST(CodePageOfSingleBytes, FoldsTheFirstByteBeyondAsciiWhereThatIsALetter) {
    const CCodePage cyrillic(1251);
    EXPECT_TRUE(EqualIgnoringCase("\x80", "\x90"));
    EXPECT_FALSE(EqualIgnoringCase("\x80", "\x91"));
}
