// The string that hosts and library hand each other.

#include "cordelbox.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <string>
#include <utility>

TEST(AnsiString, IsEmptyWithoutText) {
    for (const AnsiString& text : {AnsiString(), AnsiString(""), AnsiString(nullptr), AnsiString("abc", 0)}) {
        EXPECT_TRUE(text.empty());
        EXPECT_EQ(text.size(), 0u);
        EXPECT_STREQ(text.c_str(), "");
    }
}

TEST(AnsiString, CopiesItsText) {
    std::string source = "text";
    const AnsiString text(source.c_str());
    source[0] = 'x';
    EXPECT_STREQ(text.c_str(), "text");
    EXPECT_EQ(text.size(), 4u);
    EXPECT_FALSE(text.empty());
}

TEST(AnsiString, EndsAtAZeroByte) {
    EXPECT_EQ(AnsiString("ab\0cd", 5).size(), 2u);
    EXPECT_TRUE(AnsiString("\0cd", 3).empty());
}

TEST(AnsiString, TakesNoMoreThanWasAskedFor) { EXPECT_EQ(AnsiString("abcdef", 3), "abc"); }

TEST(AnsiString, HoldsAnyOtherByte) {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    EXPECT_EQ(std::string(AnsiString(bytes.c_str()).c_str()), bytes);
}

TEST(AnsiString, SharesTheTextOfACopy) {
    AnsiString text("text");
    const AnsiString copy = text;
    EXPECT_EQ(copy.c_str(), text.c_str());
    text = AnsiString("other");
    EXPECT_STREQ(copy.c_str(), "text");
    text = copy;
    EXPECT_EQ(copy.c_str(), text.c_str());
}

TEST(AnsiString, IsEmptyOnceItWasMoved) {
    AnsiString text("text");
    const AnsiString moved = std::move(text);
    EXPECT_EQ(moved, "text");
    EXPECT_TRUE(text.empty()); // NOLINT(bugprone-use-after-move): what is promised
}

TEST(AnsiString, MayBeAssignedToItself) {
    AnsiString text("text");
    const AnsiString& same = text;
    text = same;
    EXPECT_EQ(text, "text");
}

TEST(AnsiString, IsComparedByteForByte) {
    const AnsiString text("text");
    EXPECT_TRUE(text == AnsiString("text"));
    EXPECT_FALSE(text == AnsiString("Text"));
    EXPECT_FALSE(text == AnsiString("texts"));
    EXPECT_TRUE(text != AnsiString("tex"));
    EXPECT_FALSE(text != AnsiString("text"));
    EXPECT_TRUE(AnsiString() == AnsiString(""));
    EXPECT_TRUE(text != AnsiString());
}

TEST(AnsiString, IsComparedWithPlainTextToo) {
    const AnsiString text("text");
    const char* const none = nullptr;
    EXPECT_TRUE(text == "text");
    EXPECT_FALSE(text == "Text");
    EXPECT_FALSE(text == "tex");
    EXPECT_TRUE(text != "texts");
    EXPECT_FALSE(text != "text");
    EXPECT_TRUE("text" == text);
    EXPECT_TRUE(text != none);
    EXPECT_TRUE(AnsiString() == none);
    EXPECT_TRUE(AnsiString() == "");
}

TEST(AnsiString, OfALengthThatNoMemoryHoldsThrows) { EXPECT_THROW(AnsiString("a", SIZE_MAX), std::bad_alloc); }
