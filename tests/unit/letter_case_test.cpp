// Letters of both cases, compared with what the C library makes of every code point.

#include "platform/letter_case.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cwctype>

using platform::LowerCase;

TEST(LowerCase, IsThatOfTheCLibraryForEveryCodePoint) {
    const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    ASSERT_NE(unicode, nullptr);
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        ASSERT_EQ(LowerCase(codePoint), static_cast<char32_t>(towlower_l(static_cast<wint_t>(codePoint), unicode)))
            << std::hex << static_cast<unsigned>(codePoint);
    }
    freelocale(unicode);
}

TEST(LowerCase, OfALetterIsOneLetter) {
    EXPECT_EQ(LowerCase(U'A'), U'a');
    EXPECT_EQ(LowerCase(U'\u00DF'), U'\u00DF') << "sharp s";
    EXPECT_EQ(LowerCase(U'\u0130'), U'i') << "capital i with a dot";
    EXPECT_EQ(LowerCase(U'\u01C5'), U'\u01C6') << "a letter in title case";
    EXPECT_EQ(LowerCase(U'\u03A3'), U'\u03C3') << "capital sigma";
    EXPECT_EQ(LowerCase(U'\u03C2'), U'\u03C2') << "final sigma";
    EXPECT_EQ(LowerCase(U'\u1E9E'), U'\u00DF') << "capital sharp s";
    EXPECT_EQ(LowerCase(U'\U00010400'), U'\U00010428');
}

TEST(LowerCase, OfAnythingElseIsItself) {
    for (const char32_t codePoint : {U'\0', U'@', U'[', U'`', U'{', U'\u00D7', U'\u0131', U'\u4E00', U'\U0001F5A8'}) {
        EXPECT_EQ(LowerCase(codePoint), codePoint);
    }
    EXPECT_EQ(LowerCase(0xD800), char32_t{0xD800});
    EXPECT_EQ(LowerCase(0xFFFFFFFF), char32_t{0xFFFFFFFF});
}
