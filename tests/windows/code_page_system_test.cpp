// What the platform layer makes of the code page that the system has, where it is one of double bytes.

#include "platform/code_page.h"

#include <windows.h>

#include <gtest/gtest.h>

TEST(DoubleByteCodePage, CutsWhereACharacterEnds) {
    if (::GetACP() != 932) {
        GTEST_SKIP() << "the code page is " << ::GetACP();
    }
    EXPECT_EQ(platform::WholeCharacters("\x95\x5C\x95\x5C", 2), 2u);
    EXPECT_EQ(platform::WholeCharacters("\x95\x5C\x95\x5C", 3), 2u);
    EXPECT_EQ(platform::WholeCharacters("a\x95\x5C\x95\x5C", 3), 3u);
    EXPECT_EQ(platform::WholeCharacters("a\x95\x5C\x95\x5C", 4), 3u);
    EXPECT_EQ(platform::WholeCharacters("\xB1\xB2\x95\x5C", 2), 2u) << "katakana of one byte";
    EXPECT_EQ(platform::WholeCharacters("\x95\x5C", 9), 2u);
}
