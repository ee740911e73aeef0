// Fixed fields, and numbers read leniently.

#include "platform/bounded_text.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

TEST(CopyingToAField, FillsItToItsLastByte) {
    char field[6] = "xxxxx";
    platform::CopyToField(field, "12345", "Name");
    EXPECT_STREQ(field, "12345");
}

TEST(CopyingToAField, EndsTheText) {
    char field[6] = "xxxxx";
    platform::CopyToField(field, "1", "Name");
    EXPECT_STREQ(field, "1");
    platform::CopyToField(field, "", "Name");
    EXPECT_STREQ(field, "");
}

TEST(CopyingToAFieldDeath, OneByteTooManyStopsTheProcessAndNamesTheField) {
    char field[6] = {};
    EXPECT_DEATH(platform::CopyToField(field, "123456", "Name"), "cordelbox: .*Name.* 6 bytes.* 6 bytes");
}

TEST(FormattingForAField, TakesTheLongestNumberThatFits) {
    EXPECT_EQ(platform::FormatForField(99999999999999, "Size", 15), "99999999999999");
    EXPECT_EQ(platform::FormatForField(-9999999999999, "Size", 15), "-9999999999999");
    EXPECT_EQ(platform::FormatForField(0, "Size", 15), "0");
}

TEST(FormattingForAFieldDeath, OneDigitTooManyStopsTheProcess) {
    EXPECT_DEATH(platform::FormatForField(100000000000000, "Size", 15), "cordelbox: .*Size.* 15 bytes.* 15 bytes");
}

TEST(FormattingForAField, CanTakeEveryNumber) {
    EXPECT_EQ(platform::FormatForField(std::numeric_limits<long long>::min(), "Size", 24), "-9223372036854775808");
}

TEST(LenientNumbers, TakeLeadingBlanksSignsAndDigits) {
    EXPECT_EQ(platform::LenientInteger("12"), 12);
    EXPECT_EQ(platform::LenientInteger("  12"), 12);
    EXPECT_EQ(platform::LenientInteger("\t\n\v\f\r 12"), 12);
    EXPECT_EQ(platform::LenientInteger("+12"), 12);
    EXPECT_EQ(platform::LenientInteger("-12"), -12);
    EXPECT_EQ(platform::LenientInteger("0012"), 12);
    EXPECT_EQ(platform::LenientInteger("-0"), 0);
}

TEST(LenientNumbers, EndAtTheFirstOtherCharacter) {
    EXPECT_EQ(platform::LenientInteger("12px"), 12);
    EXPECT_EQ(platform::LenientInteger("1 2"), 1);
    EXPECT_EQ(platform::LenientInteger("1.9"), 1);
    EXPECT_EQ(platform::LenientInteger("0x10"), 0);
}

TEST(LenientNumbers, AreZeroWithoutDigits) {
    for (const char* const text : {"", " ", "x", "-", "+", "--1", "+-1", "- 1", " x1", "~1", " ~1"}) {
        EXPECT_EQ(platform::LenientInteger(text), 0) << text;
    }
}

TEST(LenientNumbers, StopAtTheEndsOfTheirRange) {
    EXPECT_EQ(platform::LenientInteger("2147483647"), std::numeric_limits<int32_t>::max());
    EXPECT_EQ(platform::LenientInteger("2147483648"), std::numeric_limits<int32_t>::max());
    EXPECT_EQ(platform::LenientInteger("-2147483648"), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(platform::LenientInteger("-2147483649"), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(platform::LenientInteger(std::string(5000, '9')), std::numeric_limits<int32_t>::max());
    EXPECT_EQ(platform::LenientInteger("-" + std::string(5000, '9')), std::numeric_limits<int32_t>::min());
}
