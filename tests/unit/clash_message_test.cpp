// The two ways in which a template becomes a message.

#include "ids/clash_message.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <limits>
#include <string>

namespace {

/// Of this process, in bytes.
std::size_t LargestResidentSize() {
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

} // namespace

TEST(FillingPlaceholders, ReplacesEveryOneOfBothKinds) {
    EXPECT_EQ(FillPlaceholders("%s %d %s %d", "Macro", "12"), "Macro 12 Macro 12");
    EXPECT_EQ(FillPlaceholders("%d before %s", "Macro", "12"), "12 before Macro");
    EXPECT_EQ(FillPlaceholders("%s%s%d%d", "a", "1"), "aa11");
}

TEST(FillingPlaceholders, LeavesATextWithoutThemAlone) {
    EXPECT_EQ(FillPlaceholders("", "Macro", "12"), "");
    EXPECT_EQ(FillPlaceholders("none", "Macro", "12"), "none");
    EXPECT_EQ(FillPlaceholders("100% %5s %", "Macro", "12"), "100% %5s %");
}

TEST(FillingPlaceholders, ReplacesAnIdPlaceholderThatTheNameBroughtIn) {
    EXPECT_EQ(FillPlaceholders("%s", "no. %d", "12"), "no. 12");
}

TEST(FillingPlaceholders, DoesNotReplaceANamePlaceholderThatTheNameBroughtIn) {
    EXPECT_EQ(FillPlaceholders("%s", "%s", "12"), "%s");
}

TEST(FillingPlaceholders, TakesAPercentSignThatANameEndsWithForTheBeginningOfOne) {
    EXPECT_EQ(FillPlaceholders("%sd", "100%", "12"), "10012");
}

TEST(FillingPlaceholders, CutsWhatIsLongerThan64KiB) {
    const std::string longest(65536, 'x');
    EXPECT_EQ(FillPlaceholders(longest, "Macro", "12"), longest);
    EXPECT_EQ(FillPlaceholders(longest + "y", "Macro", "12"), longest);
    EXPECT_EQ(FillPlaceholders("%s%d", longest, "12"), longest);
    EXPECT_EQ(FillPlaceholders("%d%s", longest, "12"), "12" + longest.substr(2));
}

TEST(FillingPlaceholders, CutsAtACharacter) {
    const std::string text(65534, 'x');
    EXPECT_EQ(FillPlaceholders(text + "\xC3\xA4y", "", ""), text + "\xC3\xA4");
    EXPECT_EQ(FillPlaceholders(text + "\xE2\x82\xAC", "", ""), text);
    EXPECT_EQ(FillPlaceholders(text + "y\xF0\x9F\x96\xA8", "", ""), text + "y");
}

TEST(FillingPlaceholders, CutsWhatIsFilledAndNotTheTemplate) {
    // Every placeholder becomes one byte, the last of them the last that is kept.
    std::string text;
    for (int i = 0; i < 65537; ++i) {
        text += "%d";
    }
    EXPECT_EQ(FillPlaceholders(text, "", "7"), std::string(65536, '7'));
    EXPECT_EQ(FillPlaceholders("%s" + text.substr(2), "%d", "7"), std::string(65536, '7'));
}

TEST(FillingPlaceholders, CostsNoMoreMemoryThanTheLimitAsksFor) {
    // Filled without a limit this would be two billion bytes.
    std::string text;
    for (int i = 0; i < 20000; ++i) {
        text += "%s";
    }
    const std::string name(100000, 'n');
    const std::size_t before = LargestResidentSize();
    EXPECT_EQ(FillPlaceholders(text, name, "7"), std::string(65536, 'n'));
    EXPECT_LT(LargestResidentSize() - before, std::size_t{4} << 20);
}

TEST(FormattingAClash, PrintsKindAndIdTwiceInTurn) {
    EXPECT_EQ(FormatClash("%s %d %s %d", "Macro", 12), "Macro 12 Macro 12");
}

TEST(FormattingAClash, PrintsTheNextArgumentAsWhatItIs) {
    EXPECT_EQ(FormatClash("%d %s", "Macro", 12), "Macro 12");
    EXPECT_EQ(FormatClash("%s %s %s %s", "Macro", 12), "Macro 12 Macro 12");
    EXPECT_EQ(FormatClash("%d %d %d %d", "Macro", 12), "Macro 12 Macro 12");
}

TEST(FormattingAClash, CopiesAFifthDirective) { EXPECT_EQ(FormatClash("%s%d%s%d%s%-5d.", "a", 1), "a1a1%s%-5d."); }

TEST(FormattingAClash, DoesNotLookAtWhatAnArgumentHolds) { EXPECT_EQ(FormatClash("%s %d", "%d%s%n", 7), "%d%s%n 7"); }

TEST(FormattingAClash, FollowsTheWidthOfATextOnEitherSide) {
    EXPECT_EQ(FormatClash("[%5s][%d]", "abc", 1), "[  abc][1]");
    EXPECT_EQ(FormatClash("[%-5s]", "abc", 1), "[abc  ]");
    EXPECT_EQ(FormatClash("[%2s]", "abc", 1), "[abc]");
}

TEST(FormattingAClash, FollowsThePrecisionOfAText) {
    EXPECT_EQ(FormatClash("[%.2s]", "abc", 1), "[ab]");
    EXPECT_EQ(FormatClash("[%.s]", "abc", 1), "[]");
    EXPECT_EQ(FormatClash("[%5.2s]", "abc", 1), "[   ab]");
    EXPECT_EQ(FormatClash("[%.9s]", "abc", 1), "[abc]");
}

TEST(FormattingAClash, FollowsWidthAndFlagsOfANumber) {
    EXPECT_EQ(FormatClash("%s[%5d]", "", 42), "[   42]");
    EXPECT_EQ(FormatClash("%s[%-5d]", "", 42), "[42   ]");
    EXPECT_EQ(FormatClash("%s[%05d]", "", 42), "[00042]");
    EXPECT_EQ(FormatClash("%s[%05d]", "", -42), "[-0042]");
    EXPECT_EQ(FormatClash("%s[%005d]", "", 42), "[00042]");
    EXPECT_EQ(FormatClash("%s[%+d]", "", 42), "[+42]");
    EXPECT_EQ(FormatClash("%s[% d]", "", 42), "[ 42]");
    EXPECT_EQ(FormatClash("%s[%+ d]", "", 42), "[+42]");
    EXPECT_EQ(FormatClash("%s[%-05d]", "", 42), "[42   ]");
    EXPECT_EQ(FormatClash("%s[%+05d]", "", 42), "[+0042]");
}

TEST(FormattingAClash, FollowsThePrecisionOfANumber) {
    EXPECT_EQ(FormatClash("%s[%.5d]", "", 42), "[00042]");
    EXPECT_EQ(FormatClash("%s[%8.5d]", "", 42), "[   00042]");
    EXPECT_EQ(FormatClash("%s[%08.5d]", "", 42), "[   00042]");
    EXPECT_EQ(FormatClash("%s[%.0d]", "", 0), "[]");
    EXPECT_EQ(FormatClash("%s[%.0d]", "", 7), "[7]");
    EXPECT_EQ(FormatClash("%s[%+.0d]", "", 0), "[+]");
}

TEST(FormattingAClash, PrintsBothEndsOfTheRange) {
    EXPECT_EQ(FormatClash("%s%d", "", std::numeric_limits<int32_t>::max()), "2147483647");
    EXPECT_EQ(FormatClash("%s%d", "", std::numeric_limits<int32_t>::min()), "-2147483648");
}

TEST(FormattingAClash, MakesOnePercentSignOfTwo) {
    EXPECT_EQ(FormatClash("100%% %s", "a", 1), "100% a");
    EXPECT_EQ(FormatClash("%%s", "a", 1), "%s");
    EXPECT_EQ(FormatClash("%%%%", "a", 1), "%%");
}

TEST(FormattingAClash, CopiesEveryOtherConversionAndConsumesNothing) {
    EXPECT_EQ(FormatClash("%n%x%ld%*d%s", "a", 1), "%n%x%ld%*da");
    EXPECT_EQ(FormatClash("%1$s|%s", "a", 1), "%1$s|a");
}

TEST(FormattingAClash, CopiesADirectiveThatIsCutShort) {
    for (const char* const text : {"%", "%-", "%5", "%5.", "%5.3", "%-+ #0"}) {
        EXPECT_EQ(FormatClash(text, "a", 1), text);
    }
}

TEST(FormattingAClash, TakesAMessageThatJustFits) {
    EXPECT_EQ(FormatClash(std::string(258, 'x') + "%s", "a", 1), std::string(258, 'x') + "a");
    EXPECT_EQ(FormatClash("%259s", "a", 1).size(), 259u);
}

TEST(FormattingAClashDeath, AMessageOneByteLongerStopsTheProcess) {
    EXPECT_DEATH(FormatClash(std::string(259, 'x') + "%s", "a", 1), "cordelbox: .*message.* 260 bytes");
}

TEST(FormattingAClashDeath, AHugeWidthOrPrecisionStopsTheProcess) {
    EXPECT_DEATH(FormatClash("%99999999999999999999s", "a", 1), "cordelbox: .*message");
    EXPECT_DEATH(FormatClash("%s%.99999999999999999999d", "a", 1), "cordelbox: .*message");
}
