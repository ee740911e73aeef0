// Partitions, recorded in the current and in the default layout, and the shares of the disk read back.

#include "process_stop.h"
#include "saving_host_test.h"

#include <cstdint>

namespace {

constexpr uint32_t kDisk = 1;
constexpr uint32_t kFlash = 0;

constexpr const char* kLayouts = "<CurrentDisk/><DefaultDisk/><CurrentFlash/><DefaultFlash/>";

void Write(const PartitionRecord& partition, uint32_t disk) { WritePartition(&partition, disk); }

PartitionRecord Kilobytes(int64_t size) { return {0, "P", size * 1024, 0}; }

class Partitions : public SavingHostTest {
protected:
    /// "Size" of the one partition that was written for this number of bytes.
    AnsiString WrittenSize(int64_t bytes) {
        DelAllElem("CurrentFlash");
        Write({0, "P", bytes, 0}, kFlash);
        return GetAttrValue("CurrentFlash", "Size");
    }
};

using PartitionsDeathTest = Partitions;
using DiskPercent = Partitions;

} // namespace

TEST_F(Partitions, ADiskPartitionGoesToBothDiskLayouts) {
    OpenMain(kLayouts);
    Write({3, "Fonts", 2048, 40}, kDisk);
    const Items expected{{{"Image", "3"}, {"Partition", "Fonts"}, {"Size", "2"}, {"Percent", "40"}}};
    EXPECT_EQ(SavedItems("CurrentDisk"), expected);
    EXPECT_EQ(SavedItems("DefaultDisk"), expected);
    EXPECT_EQ(SavedItems("CurrentFlash"), Items{});
    EXPECT_EQ(SavedItems("DefaultFlash"), Items{});
}

TEST_F(Partitions, AFlashPartitionGoesToBothFlashLayoutsWithoutAPercentage) {
    OpenMain(kLayouts);
    Write({3, "Fonts", 2048, 40}, kFlash);
    const Items expected{{{"Image", "3"}, {"Partition", "Fonts"}, {"Size", "2"}}};
    EXPECT_EQ(SavedItems("CurrentFlash"), expected);
    EXPECT_EQ(SavedItems("DefaultFlash"), expected);
    EXPECT_EQ(SavedItems("CurrentDisk"), Items{});
    EXPECT_EQ(SavedItems("DefaultDisk"), Items{});
}

TEST_F(Partitions, EveryMediumFlagButZeroIsTheDisk) {
    OpenMain(kLayouts);
    Write({0, "A", 0, 0}, 2);
    Write({0, "B", 0, 0}, 0xFFFFFFFFu);
    Write({0, "C", 0, 0}, 0x80000000u);
    EXPECT_EQ(SavedItems("CurrentDisk").size(), 3u);
    EXPECT_EQ(SavedItems("CurrentFlash"), Items{});
}

TEST_F(Partitions, EveryMediumFlagButZeroHasAPercentage) {
    for (const uint32_t flag : {0x100u, 0x10000u, 0x80000000u}) {
        OpenMain(kLayouts);
        Write({3, "Fonts", 2048, 40}, flag);
        const Items expected{{{"Image", "3"}, {"Partition", "Fonts"}, {"Size", "2"}, {"Percent", "40"}}};
        EXPECT_EQ(SavedItems("CurrentDisk"), expected) << flag;
        EXPECT_EQ(SavedItems("DefaultDisk"), expected) << flag;
        CloseAll();
    }
}

TEST_F(Partitions, SizesAreKilobytesTruncatedTowardZero) {
    OpenMain(kLayouts);
    EXPECT_EQ(WrittenSize(0), "0");
    EXPECT_EQ(WrittenSize(1023), "0");
    EXPECT_EQ(WrittenSize(1024), "1");
    EXPECT_EQ(WrittenSize(1536), "1");
    EXPECT_EQ(WrittenSize(2047), "1");
    EXPECT_EQ(WrittenSize(-1023), "0");
    EXPECT_EQ(WrittenSize(-1024), "-1");
    EXPECT_EQ(WrittenSize(-1536), "-1");
    EXPECT_EQ(WrittenSize(INT64_C(5000000000000)), "4882812500");
}

TEST_F(Partitions, ImagesAndPercentagesAreSignedDecimals) {
    OpenMain(kLayouts);
    Write({INT32_MIN, "A", 0, -7}, kDisk);
    Write({INT32_MAX, "B", 0, 0}, kDisk);
    EXPECT_EQ(SavedItems("CurrentDisk"),
              (Items{{{"Image", "-2147483648"}, {"Partition", "A"}, {"Size", "0"}, {"Percent", "-7"}},
                     {{"Image", "2147483647"}, {"Partition", "B"}, {"Size", "0"}, {"Percent", "0"}}}));
}

TEST_F(Partitions, ASizeOfFourteenCharactersFits) {
    OpenMain(kLayouts);
    EXPECT_EQ(WrittenSize(INT64_C(99999999999999) * 1024), "99999999999999");
    EXPECT_EQ(WrittenSize(INT64_C(-9999999999999) * 1024), "-9999999999999");
}

TEST_F(PartitionsDeathTest, ASizeOfFifteenCharactersStopsTheProcess) {
    OpenMain(kLayouts);
    EXPECT_DEATH(Write(Kilobytes(INT64_C(100000000000000)), kFlash), IsStopLine("Size", 15, 15));
    EXPECT_DEATH(Write(Kilobytes(INT64_C(-10000000000000)), kDisk), IsStopLine("Size", 15, 15));
    EXPECT_DEATH(Write({0, "P", INT64_MAX, 0}, kDisk), IsStopLine("Size", 16, 15));
}

TEST_F(Partitions, APercentageOfNineCharactersFits) {
    OpenMain(kLayouts);
    Write({0, "A", 0, 999999999}, kDisk);
    Write({0, "B", 0, -99999999}, kDisk);
    EXPECT_EQ(GetAttrValue1("CurrentDisk", "Partition", "A", "Percent"), "999999999");
    EXPECT_EQ(GetAttrValue1("CurrentDisk", "Partition", "B", "Percent"), "-99999999");
}

TEST_F(PartitionsDeathTest, APercentageOfTenCharactersStopsTheProcess) {
    OpenMain(kLayouts);
    EXPECT_DEATH(Write({0, "P", 0, 1000000000}, kDisk), IsStopLine("Percent", 10, 10));
    EXPECT_DEATH(Write({0, "P", 0, -100000000}, kDisk), IsStopLine("Percent", 10, 10));
    EXPECT_DEATH(Write({0, "P", 0, INT32_MIN}, kDisk), IsStopLine("Percent", 11, 10));
}

TEST_F(PartitionsDeathTest, ANumberThatDoesNotFitLeavesTheSavedDocumentAsItWas) {
    OpenMain(kLayouts);
    const std::string before = UserMainText();
    EXPECT_DEATH(Write({0, "P", 0, INT32_MAX}, kDisk), "Percent");
    EXPECT_EQ(UserMainText(), before);
}

TEST_F(Partitions, ThePercentageOfAFlashPartitionIsNeverFormatted) {
    OpenMain(kLayouts);
    Write({0, "P", 0, INT32_MAX}, kFlash);
    EXPECT_EQ(SavedItems("CurrentFlash"), (Items{{{"Image", "0"}, {"Partition", "P"}, {"Size", "0"}}}));
}

TEST_F(Partitions, ANullNameIsWrittenAsAnEmptyValue) {
    OpenMain(kLayouts);
    Write({1, nullptr, 1024, 0}, kFlash);
    EXPECT_EQ(SavedItems("CurrentFlash"), (Items{{{"Image", "1"}, {"Partition", ""}, {"Size", "1"}}}));
}

TEST_F(Partitions, ANullRecordDoesNothingAtAll) {
    OpenMain(kLayouts);
    EXPECT_FALSE(Saves([] {
        WritePartition(nullptr, kDisk);
        WritePartition(nullptr, kFlash);
    }));
    EXPECT_EQ(GetAttrValue("CurrentDisk", "Image"), "");
    EXPECT_EQ(GetAttrValue("CurrentFlash", "Image"), "");
}

TEST_F(Partitions, WritingAPartitionAgainUnchangedAddsNothing) {
    OpenMain(kLayouts);
    Write({3, "Fonts", 2048, 40}, kDisk);
    EXPECT_TRUE(Saves([] { Write({3, "Fonts", 2048, 40}, kDisk); }));
    EXPECT_EQ(SavedItems("CurrentDisk").size(), 1u);
    EXPECT_EQ(SavedItems("DefaultDisk").size(), 1u);
}

TEST_F(Partitions, WritingAPartitionWithAnotherSizeAddsASecondItemBesideTheOld) {
    OpenMain(kLayouts);
    Write({3, "Fonts", 2048, 40}, kDisk);
    Write({3, "Fonts", 4096, 40}, kDisk);
    const Items expected{{{"Image", "3"}, {"Partition", "Fonts"}, {"Size", "2"}, {"Percent", "40"}},
                         {{"Image", "3"}, {"Partition", "Fonts"}, {"Size", "4"}, {"Percent", "40"}}};
    EXPECT_EQ(SavedItems("CurrentDisk"), expected);
    EXPECT_EQ(SavedItems("DefaultDisk"), expected);
}

TEST_F(Partitions, APartitionIsAddedToTheLayoutThatLacksIt) {
    OpenMain("<CurrentDisk><Item Image='3' Partition='Fonts' Size='2' Percent='40'/></CurrentDisk><DefaultDisk/>");
    Write({3, "Fonts", 2048, 40}, kDisk);
    EXPECT_EQ(SavedItems("CurrentDisk").size(), 1u);
    EXPECT_EQ(SavedItems("DefaultDisk").size(), 1u);
}

TEST_F(Partitions, AMissingLayoutDoesNotKeepThePartitionFromTheOther) {
    OpenMain("<DefaultDisk/><CurrentFlash/>");
    Write({0, "A", 0, 5}, kDisk);
    Write({0, "B", 0, 5}, kFlash);
    EXPECT_EQ(SavedItems("DefaultDisk").size(), 1u);
    EXPECT_EQ(SavedItems("CurrentFlash").size(), 1u);
    EXPECT_EQ(UserMainText().find("CurrentDisk"), std::string::npos);
    EXPECT_EQ(UserMainText().find("DefaultFlash"), std::string::npos);
}

TEST_F(Partitions, NothingElseChanges) {
    OpenMain(std::string(kLayouts) + "<CurrentChosePartition><Item Name='n'/></CurrentChosePartition><More>"
                                     "<CurrentDisk><Item Partition='second'/></CurrentDisk></More>");
    Write({3, "Fonts", 2048, 40}, kDisk);
    EXPECT_EQ(SavedItems("CurrentChosePartition"), (Items{{{"Name", "n"}}}));
    const std::string saved = UserMainText();
    EXPECT_NE(saved.find("second"), std::string::npos) << saved;
    EXPECT_EQ(SavedItems("CurrentDisk").size(), 1u);
}

TEST_F(Partitions, WithoutAnyLayoutTheDocumentIsSavedUnchanged) {
    OpenMain("<Storage><Item Volume='0:'/></Storage>");
    EXPECT_TRUE(Saves([] { Write({0, "A", 0, 5}, kDisk); }));
    EXPECT_EQ(SavedItems("Storage"), (Items{{{"Volume", "0:"}}}));
    EXPECT_EQ(UserMainText().find("Partition"), std::string::npos) << UserMainText();
}

TEST_F(Partitions, WithoutAPerUserCopyAPartitionStaysInMemory) {
    InstallMain(Document(kLayouts));
    const std::string installed = ReadFile(InstalledMainPath());
    Open();
    Write({0, "A", 1024, 5}, kDisk);
    EXPECT_EQ(GetAttrValue("CurrentDisk", "Partition"), "A");
    EXPECT_EQ(GetAttrValue("DefaultDisk", "Partition"), "A");
    EXPECT_FALSE(std::filesystem::exists(UserMainPath()));
    EXPECT_EQ(ReadFile(InstalledMainPath()), installed);
}

TEST_F(Partitions, WithoutAnOpenDocumentNothingIsWritten) {
    Open();
    Write({0, "A", 1024, 5}, kDisk);
    EXPECT_FALSE(std::filesystem::exists(UserMainPath()));
    EXPECT_EQ(GetDiskPercent(), "");
}

TEST_F(DiskPercent, EveryPercentageIsFollowedByOneBlank) {
    OpenMain(kLayouts);
    Write({0, "A", 0, 50}, kDisk);
    Write({0, "B", 0, 30}, kDisk);
    Write({0, "C", 0, 20}, kDisk);
    EXPECT_EQ(GetDiskPercent(), "50 30 20 ");
}

TEST_F(DiskPercent, WithoutPartitionsItIsEmpty) {
    OpenMain("<CurrentDisk/><DefaultDisk><Item Partition='A' Percent='50'/></DefaultDisk>");
    EXPECT_EQ(GetDiskPercent(), "");
}

TEST_F(DiskPercent, WithoutTheContainerItIsEmpty) {
    OpenMain("<CurrentFlash><Item Partition='A' Percent='50'/></CurrentFlash>");
    EXPECT_EQ(GetDiskPercent(), "");
}

TEST_F(DiskPercent, ThePartitionNameStandsInPlaceOfAMissingPercentage) {
    OpenMain("<CurrentDisk><Item Partition='A' Percent='50'/><Item Partition='Fonts'/><Item Partition='C' "
             "Percent='20'/></CurrentDisk>");
    EXPECT_EQ(GetDiskPercent(), "50 Fonts 20 ");
}

TEST_F(DiskPercent, AnEmptyPercentageLeavesItsBlank) {
    OpenMain("<CurrentDisk><Item Partition='A' Percent=''/><Item Partition='B' Percent='30'/></CurrentDisk>");
    EXPECT_EQ(GetDiskPercent(), " 30 ");
}

TEST_F(DiskPercent, PartitionsOfOneNameAllShowTheFirstOfIt) {
    OpenMain("<CurrentDisk><Item Partition='A' Percent='50'/><Item Partition='B' Percent='30'/><Item Partition='A' "
             "Percent='20'/></CurrentDisk>");
    EXPECT_EQ(GetDiskPercent(), "50 30 50 ");
}

TEST_F(DiskPercent, APercentageIsTakenFromTheFirstItemOfTheNameThatHasOne) {
    OpenMain("<CurrentDisk><Item Partition='A'/><Item Partition='A' Percent='20'/></CurrentDisk>");
    EXPECT_EQ(GetDiskPercent(), "20 20 ");
}

TEST_F(DiskPercent, AnItemWithoutAPartitionNameContributesNothing) {
    OpenMain("<CurrentDisk><Item Percent='10'/><Item Partition='B' Percent='30'/></CurrentDisk>");
    EXPECT_EQ(GetDiskPercent(), "30 ");
}

TEST_F(DiskPercent, PartitionsBehindACommentAreLeftOut) {
    OpenMain("<CurrentDisk><Item Partition='A' Percent='50'/><!-- note --><Item Partition='B' Percent='30'/>"
             "</CurrentDisk>");
    EXPECT_EQ(GetDiskPercent(), "50 ");
}

TEST_F(DiskPercent, ReadingSavesNothing) {
    OpenMain("<CurrentDisk><Item Partition='A' Percent='50'/></CurrentDisk>");
    EXPECT_FALSE(Saves([] { GetDiskPercent(); }));
}

TEST_F(DiskPercent, TheCurrentPrinterDocumentIsRead) {
    OpenMain("<CurrentDisk><Item Partition='A' Percent='50'/></CurrentDisk>");
    OpenPrinterWith("Office.xml", "<CurrentDisk><Item Partition='A' Percent='75'/></CurrentDisk>");
    EXPECT_EQ(GetDiskPercent(), "75 ");
}
