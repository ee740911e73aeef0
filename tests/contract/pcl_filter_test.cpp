// The 28 PCL settings as an array of numbers.

#include "saving_host_test.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

constexpr std::array<const char*, 28> kNames{
    "CMFORMFEED",        "CMRESET",          "CMPAPERSIZE",      "CMVERTMOTIONIDX",   "CMLINESPACING",
    "CMTOPMARGIN",       "CMTEXTLENGTH",     "CMOUTPUTBIN",      "CMPAPERTRAY",       "CMPERFORATIONSKIP",
    "CMORIENTATION",     "CMSIMPLEXDUPLEX",  "CMJOBSEPARATION",  "CMLEFTOFFSETREG",   "CMCOPIES",
    "CMTOPOFFSETREG",    "CMDUPLEXPAGESIDE", "CMPRINTDIRECTION", "CMPAGELENGTH",      "CMCONFIG_IMG_DATA",
    "CMSET_VIEW_ILLUM",  "CMDRV_CONFIG",     "CMRENDER_ALGO",    "CMPALETTE_CTRL_ID", "CMPALETTE_CTRL",
    "CMMONO_PRINT_MODE", "CMPUSHPOP_CHECK",  "CMFRAGMENT_CHECK",
};

constexpr std::size_t kCopies = 14;

class PclFilter : public SavingHostTest {
protected:
    /// What the text of one setting is read as.
    int32_t Read(const std::string& text) {
        CloseAll();
        OpenMain("<PCLCurrentSetting><Item CMCOPIES='" + text + "'/></PCLCurrentSetting>");
        std::array<int32_t, 28> settings{};
        ReadPCLFilter(settings.data());
        return settings[kCopies];
    }
};

} // namespace

TEST_F(PclFilter, EverySettingHasItsSlot) {
    std::string attributes;
    for (std::size_t slot = kNames.size(); slot-- > 0;) {
        attributes += std::string(" ") + kNames[slot] + "='" + std::to_string(100 + slot) + "'";
    }
    OpenMain("<PCLCurrentSetting><Item" + attributes + "/></PCLCurrentSetting>");
    std::array<int32_t, 28> settings{};
    EXPECT_EQ(ReadPCLFilter(settings.data()), 1u);
    for (std::size_t slot = 0; slot < settings.size(); ++slot) {
        EXPECT_EQ(settings[slot], static_cast<int32_t>(100 + slot)) << kNames[slot];
    }
}

TEST_F(PclFilter, TheCopiesLieInSlotFourteen) {
    OpenMain("<PCLCurrentSetting><Item CMCOPIES='3'/></PCLCurrentSetting>");
    std::array<int32_t, 28> settings{};
    ReadPCLFilter(settings.data());
    std::array<int32_t, 28> expected{};
    expected[kCopies] = 3;
    EXPECT_EQ(settings, expected);
}

TEST_F(PclFilter, SettingsMayBeSpreadOverSeveralItems) {
    OpenMain("<PCLCurrentSetting><Item CMRESET='1'/><Item CMCOPIES='2'/><Item CMCOPIES='3' CMFRAGMENT_CHECK='4'/>"
             "</PCLCurrentSetting>");
    std::array<int32_t, 28> settings{};
    ReadPCLFilter(settings.data());
    EXPECT_EQ(settings[1], 1);
    EXPECT_EQ(settings[kCopies], 2);
    EXPECT_EQ(settings[27], 4);
}

TEST_F(PclFilter, NumbersAreReadLeniently) {
    EXPECT_EQ(Read("3"), 3);
    EXPECT_EQ(Read("12abc"), 12);
    EXPECT_EQ(Read("abc"), 0);
    EXPECT_EQ(Read(" -1"), -1);
    EXPECT_EQ(Read("+7"), 7);
    EXPECT_EQ(Read("007"), 7);
    EXPECT_EQ(Read(""), 0);
    EXPECT_EQ(Read("   "), 0);
    EXPECT_EQ(Read("-"), 0);
    EXPECT_EQ(Read("- 1"), 0);
    EXPECT_EQ(Read("+-1"), 0);
    EXPECT_EQ(Read("1.9"), 1);
    EXPECT_EQ(Read("0x10"), 0);
    EXPECT_EQ(Read("1e3"), 1);
    EXPECT_EQ(Read("4 5"), 4);
}

TEST_F(PclFilter, EveryWhiteSpaceIsSkippedBeforeANumber) { EXPECT_EQ(Read(" &#9;&#10;&#13; 8"), 8); }

TEST_F(PclFilter, NumbersBeyond32BitsBecomeTheNearestEndOfTheRange) {
    EXPECT_EQ(Read("2147483647"), INT32_MAX);
    EXPECT_EQ(Read("2147483648"), INT32_MAX);
    EXPECT_EQ(Read("4294967296"), INT32_MAX);
    EXPECT_EQ(Read("9223372036854775808"), INT32_MAX);
    EXPECT_EQ(Read("99999999999999999999999999999999"), INT32_MAX);
    EXPECT_EQ(Read("-2147483648"), INT32_MIN);
    EXPECT_EQ(Read("-2147483649"), INT32_MIN);
    EXPECT_EQ(Read("-99999999999999999999999999999999"), INT32_MIN);
}

TEST_F(PclFilter, EverySlotIsWrittenAlsoWithoutTheContainer) {
    OpenMain("<Jobs/>");
    std::array<int32_t, 29> settings;
    settings.fill(77);
    EXPECT_EQ(ReadPCLFilter(settings.data()), 1u);
    EXPECT_TRUE(std::all_of(settings.begin(), settings.end() - 1, [](int32_t setting) { return setting == 0; }));
    EXPECT_EQ(settings.back(), 77) << "written past the array";
}

TEST_F(PclFilter, EverySlotIsWrittenAlsoWithoutAnOpenDocument) {
    Open();
    std::array<int32_t, 28> settings;
    settings.fill(77);
    EXPECT_EQ(ReadPCLFilter(settings.data()), 1u);
    EXPECT_EQ(settings, (std::array<int32_t, 28>{}));
}

TEST_F(PclFilter, NullIsIgnored) {
    OpenMain("<PCLCurrentSetting><Item CMCOPIES='3'/></PCLCurrentSetting>");
    EXPECT_EQ(ReadPCLFilter(nullptr), 1u);
}

TEST_F(PclFilter, ReadingSavesNothing) {
    OpenMain("<PCLCurrentSetting><Item CMCOPIES='3'/></PCLCurrentSetting>");
    std::array<int32_t, 28> settings{};
    EXPECT_FALSE(Saves([&] { ReadPCLFilter(settings.data()); }));
}

TEST_F(PclFilter, TheCurrentPrinterDocumentIsRead) {
    OpenMain("<PCLCurrentSetting><Item CMCOPIES='3'/></PCLCurrentSetting>");
    OpenPrinterWith("Office.xml", "<PCLCurrentSetting><Item CMCOPIES='4'/></PCLCurrentSetting>");
    std::array<int32_t, 28> settings{};
    ReadPCLFilter(settings.data());
    EXPECT_EQ(settings[kCopies], 4);
}
