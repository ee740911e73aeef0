// UTF-8 and UTF-16, at the edges of what each form can hold.

#include "platform/utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

using namespace std::string_literals;

namespace {

std::string Appended(char32_t codePoint) {
    std::string text = "<";
    AppendUtf8(text, codePoint);
    return text.substr(1);
}

/// The code points of a text, one after the other; what is not well-formed is zero.
std::u32string Decoded(std::string_view text) {
    std::u32string codePoints;
    for (std::size_t position = 0; position < text.size();) {
        char32_t codePoint = 0;
        codePoints += DecodeUtf8(text, position, codePoint) ? codePoint : U'\0';
    }
    return codePoints;
}

} // namespace

TEST(Utf8, HasOneToFourBytesForACodePoint) {
    const std::pair<char32_t, const char*> codePoints[] = {{0x01, "\x01"},
                                                           {0x7F, "\x7F"},
                                                           {0x80, "\xC2\x80"},
                                                           {0x7FF, "\xDF\xBF"},
                                                           {0x800, "\xE0\xA0\x80"},
                                                           {0xD7FF, "\xED\x9F\xBF"},
                                                           {0xE000, "\xEE\x80\x80"},
                                                           {0xFFFF, "\xEF\xBF\xBF"},
                                                           {0x10000, "\xF0\x90\x80\x80"},
                                                           {0x40000, "\xF1\x80\x80\x80"},
                                                           {0x10FFFF, "\xF4\x8F\xBF\xBF"}};
    for (const auto& [codePoint, bytes] : codePoints) {
        EXPECT_EQ(Appended(codePoint), bytes);
        EXPECT_EQ(Decoded(bytes), std::u32string(1, codePoint)) << bytes;
        EXPECT_EQ(Utf8StepAt(bytes, 0).length, std::string_view(bytes).size()) << bytes;
    }
}

TEST(Utf8, HasAReplacementForWhatIsNoCharacter) {
    for (const auto codePoint : {char32_t{0xD800}, char32_t{0xDFFF}, char32_t{0x110000}}) {
        EXPECT_EQ(Appended(codePoint), "\xEF\xBF\xBD");
    }
}

TEST(Utf8, ThatIsIllFormedIsPassedOverByteByByte) {
    for (const char* const text : {"\x80",
                                   "\xBF",
                                   "\xC0",
                                   "\xC1",
                                   "\xC2",
                                   "\xC2\x7F",
                                   "\xC2\xC0",
                                   "\xDF",
                                   "\xE0\x9F\x80",
                                   "\xE0\xC0\x80",
                                   "\xE1\x80",
                                   "\xE1\x80\xC0",
                                   "\xED\xA0\x80",
                                   "\xEF\xBF",
                                   "\xF0\x8F\x80\x80",
                                   "\xF0\x90\x80",
                                   "\xF1\x80\x80\xC0",
                                   "\xF4\x90\x80\x80",
                                   "\xF5\x80\x80\x80",
                                   "\xFF"}) {
        char32_t codePoint = U'x';
        std::size_t position = 0;
        EXPECT_FALSE(DecodeUtf8(text, position, codePoint)) << text;
        EXPECT_EQ(position, 1u);
        EXPECT_EQ(codePoint, U'x');
        EXPECT_EQ(Utf8StepAt(text, 0).codePoint, 0xFFFDu);
    }
    EXPECT_EQ(Decoded("a\xC3(\xE2\x82z"), U"a\0(\0\0z"s);
}

TEST(Utf8, FromUtf16JoinsTheHalvesOfACharacter) {
    EXPECT_EQ(Utf16ToUtf8(u"a\u00E4\u20ACz"), "a\xC3\xA4\xE2\x82\xACz");
    EXPECT_EQ(Utf16ToUtf8(u"\U00010000\U0001F5A8\U0010FFFF"), "\xF0\x90\x80\x80\xF0\x9F\x96\xA8\xF4\x8F\xBF\xBF");
    EXPECT_EQ(Utf16ToUtf8(u"\xD83D"), "\xEF\xBF\xBD") << "a first half at the end";
    EXPECT_EQ(Utf16ToUtf8(u"\xD83Dz"), "\xEF\xBF\xBDz");
    EXPECT_EQ(Utf16ToUtf8(u"\xD83D\xE000"), "\xEF\xBF\xBD\xEE\x80\x80");
    EXPECT_EQ(Utf16ToUtf8(u"\xD83D\xD83D"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(Utf16ToUtf8(u"\xDDA8\xD83D"), "\xEF\xBF\xBD\xEF\xBF\xBD") << "in the wrong order";
    EXPECT_EQ(Utf16ToUtf8(u"\xDC00z"), "\xEF\xBF\xBDz");
}

TEST(Utf8, AsUtf16HasTwoUnitsForWhatLiesBeyondOne) {
    EXPECT_EQ(Utf8ToUtf16("a\xC3\xA4\xEF\xBF\xBFz"), u"a\u00E4\uFFFFz");
    EXPECT_EQ(Utf8ToUtf16("\xF0\x90\x80\x80\xF0\x9F\x96\xA8\xF4\x8F\xBF\xBF"), u"\U00010000\U0001F5A8\U0010FFFF");
    EXPECT_EQ(Utf8ToUtf16("\xE2\x82z\xFF"), u"\uFFFD\uFFFDz\uFFFD");
    EXPECT_EQ(Utf8ToUtf16(""), u"");
}
