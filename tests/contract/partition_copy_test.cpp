// Values of the current disk layout, carried into the default one.

#include "saving_host_test.h"

#include <cstdint>

namespace {

constexpr int32_t kAllShares = 1;
constexpr int32_t kChosenImage = 0;

Record Partition(const char* image, const char* name, const char* size, const char* percent) {
    return {{"Image", image}, {"Partition", name}, {"Size", size}, {"Percent", percent}};
}

class PartitionCopy : public SavingHostTest {};

} // namespace

TEST_F(PartitionCopy, SharesAndSizesOfAllPartitionsAreCopied) {
    OpenMain("<CurrentDisk><Item Image='1' Partition='A' Size='10' Percent='60'/>"
             "<Item Image='2' Partition='B' Size='20' Percent='40'/></CurrentDisk>"
             "<DefaultDisk><Item Image='8' Partition='B' Size='0' Percent='0'/>"
             "<Item Image='9' Partition='A' Size='0' Percent='0'/></DefaultDisk>");
    CopyPatition(kAllShares);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("8", "B", "20", "40"), Partition("9", "A", "10", "60")}));
    EXPECT_EQ(SavedItems("CurrentDisk"), (Items{Partition("1", "A", "10", "60"), Partition("2", "B", "20", "40")}));
}

TEST_F(PartitionCopy, EveryModeButZeroCopiesShares) {
    OpenMain("<CurrentDisk><Item Image='1' Partition='A' Size='10' Percent='60'/></CurrentDisk>"
             "<DefaultDisk><Item Image='9' Partition='A' Size='0' Percent='0'/></DefaultDisk>");
    CopyPatition(-1);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("9", "A", "10", "60")}));
    WriteAttr("DefaultDisk", "Size", "0");
    CopyPatition(2);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("9", "A", "10", "60")}));
    for (const int32_t mode : {0x100, 0x10000, 0x1000000, INT32_MIN}) {
        WriteAttr("DefaultDisk", "Size", "0");
        CopyPatition(mode);
        EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("9", "A", "10", "60")})) << mode;
    }
}

TEST_F(PartitionCopy, WithoutCurrentPartitionsTheDocumentIsOnlySaved) {
    OpenMain("<CurrentDisk/><DefaultDisk><Item Image='9' Partition='A' Size='1' Percent='2'/></DefaultDisk>");
    EXPECT_TRUE(Saves([] { CopyPatition(kAllShares); }));
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("9", "A", "1", "2")}));
}

TEST_F(PartitionCopy, WithoutTheContainersTheDocumentIsOnlySaved) {
    OpenMain("<Storage/>");
    EXPECT_TRUE(Saves([] { CopyPatition(kAllShares); }));
    EXPECT_TRUE(Saves([] { CopyPatition(kChosenImage); }));
    EXPECT_EQ(SavedItems("Storage"), Items{});
    EXPECT_EQ(UserMainText().find("Disk"), std::string::npos) << UserMainText();
}

TEST_F(PartitionCopy, ThePartitionNameReplacesAMissingSize) {
    OpenMain("<CurrentDisk><Item Image='1' Partition='P1' Percent='60'/></CurrentDisk>"
             "<DefaultDisk><Item Image='9' Partition='P1' Size='5' Percent='0'/></DefaultDisk>");
    CopyPatition(kAllShares);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("9", "P1", "P1", "60")}));
}

TEST_F(PartitionCopy, ThePartitionNameReplacesAMissingPercentage) {
    OpenMain("<CurrentDisk><Item Partition='P1' Size='7'/></CurrentDisk>"
             "<DefaultDisk><Item Image='9' Partition='P1' Size='5' Percent='0'/></DefaultDisk>");
    CopyPatition(kAllShares);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("9", "P1", "7", "P1")}));
}

TEST_F(PartitionCopy, APartitionWithoutACounterpartIsNotCreated) {
    OpenMain("<CurrentDisk><Item Image='1' Partition='A' Size='10' Percent='60'/>"
             "<Item Image='2' Partition='B' Size='20' Percent='40'/></CurrentDisk>"
             "<DefaultDisk><Item Image='8' Partition='B' Size='0' Percent='0'/></DefaultDisk>");
    CopyPatition(kAllShares);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("8", "B", "20", "40")}));
}

TEST_F(PartitionCopy, AnAttributeThatTheCounterpartLacksIsNotCreated) {
    OpenMain("<CurrentDisk><Item Image='1' Partition='A' Size='10' Percent='60'/></CurrentDisk>"
             "<DefaultDisk><Item Partition='A' Size='0'/></DefaultDisk>");
    CopyPatition(kAllShares);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{{{"Partition", "A"}, {"Size", "10"}}}));
}

TEST_F(PartitionCopy, OnlyTheFirstCounterpartIsWritten) {
    OpenMain("<CurrentDisk><Item Image='1' Partition='A' Size='10' Percent='60'/></CurrentDisk>"
             "<DefaultDisk><Item Image='8' Partition='A' Size='0' Percent='0'/>"
             "<Item Image='9' Partition='A' Size='0' Percent='0'/></DefaultDisk>");
    CopyPatition(kAllShares);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("8", "A", "10", "60"), Partition("9", "A", "0", "0")}));
}

TEST_F(PartitionCopy, OfCurrentPartitionsOfOneNameTheFirstIsCopied) {
    OpenMain("<CurrentDisk><Item Image='1' Partition='A' Size='10' Percent='60'/>"
             "<Item Image='2' Partition='A' Size='20' Percent='40'/></CurrentDisk>"
             "<DefaultDisk><Item Image='9' Partition='A' Size='0' Percent='0'/></DefaultDisk>");
    CopyPatition(kAllShares);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("9", "A", "10", "60")}));
}

TEST_F(PartitionCopy, PartitionNamesAreComparedExactly) {
    OpenMain("<CurrentDisk><Item Image='1' Partition='fonts' Size='10' Percent='60'/></CurrentDisk>"
             "<DefaultDisk><Item Image='9' Partition='Fonts' Size='0' Percent='0'/></DefaultDisk>");
    CopyPatition(kAllShares);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("9", "Fonts", "0", "0")}));
}

TEST_F(PartitionCopy, PartitionsBehindACommentAreNotCopied) {
    OpenMain("<CurrentDisk><Item Image='1' Partition='A' Size='10' Percent='60'/><!-- note -->"
             "<Item Image='2' Partition='B' Size='20' Percent='40'/></CurrentDisk>"
             "<DefaultDisk><Item Image='8' Partition='A' Size='0' Percent='0'/>"
             "<Item Image='9' Partition='B' Size='0' Percent='0'/></DefaultDisk>");
    CopyPatition(kAllShares);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("8", "A", "10", "60"), Partition("9", "B", "0", "0")}));
}

TEST_F(PartitionCopy, FlashPartitionsAreNeverTouched) {
    OpenMain("<CurrentFlash><Item Image='1' Partition='A' Size='10' Percent='60'/></CurrentFlash>"
             "<DefaultFlash><Item Image='9' Partition='A' Size='0' Percent='0'/></DefaultFlash>"
             "<CurrentDisk><Item Image='2' Partition='A' Size='20' Percent='40'/></CurrentDisk>"
             "<DefaultDisk><Item Image='8' Partition='A' Size='0' Percent='0'/></DefaultDisk>"
             "<CurrentChosePartition><Item Name='A'/></CurrentChosePartition>");
    CopyPatition(kAllShares);
    CopyPatition(kChosenImage);
    EXPECT_EQ(SavedItems("CurrentFlash"), (Items{Partition("1", "A", "10", "60")}));
    EXPECT_EQ(SavedItems("DefaultFlash"), (Items{Partition("9", "A", "0", "0")}));
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("2", "A", "20", "40")}));
}

TEST_F(PartitionCopy, ModeZeroCopiesOnlyTheImageOfTheChosenPartition) {
    OpenMain("<CurrentChosePartition><Item Name='B'/></CurrentChosePartition>"
             "<CurrentDisk><Item Image='1' Partition='A' Size='10' Percent='60'/>"
             "<Item Image='2' Partition='B' Size='20' Percent='40'/></CurrentDisk>"
             "<DefaultDisk><Item Image='8' Partition='A' Size='0' Percent='0'/>"
             "<Item Image='9' Partition='B' Size='0' Percent='0'/></DefaultDisk>");
    EXPECT_TRUE(Saves([] { CopyPatition(kChosenImage); }));
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("8", "A", "0", "0"), Partition("2", "B", "0", "0")}));
    EXPECT_EQ(SavedItems("CurrentDisk"), (Items{Partition("1", "A", "10", "60"), Partition("2", "B", "20", "40")}));
    EXPECT_EQ(SavedItems("CurrentChosePartition"), (Items{{{"Name", "B"}}}));
}

TEST_F(PartitionCopy, ThePartitionNameReplacesAMissingImage) {
    OpenMain("<CurrentChosePartition><Item Name='B'/></CurrentChosePartition>"
             "<CurrentDisk><Item Partition='B' Size='20' Percent='40'/></CurrentDisk>"
             "<DefaultDisk><Item Image='9' Partition='B' Size='0' Percent='0'/></DefaultDisk>");
    CopyPatition(kChosenImage);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("B", "B", "0", "0")}));
}

TEST_F(PartitionCopy, AChosenPartitionThatIsNotCurrentGivesItsNameAsImage) {
    OpenMain("<CurrentChosePartition><Item Name='B'/></CurrentChosePartition><CurrentDisk/>"
             "<DefaultDisk><Item Image='9' Partition='B' Size='0' Percent='0'/></DefaultDisk>");
    CopyPatition(kChosenImage);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("B", "B", "0", "0")}));
}

TEST_F(PartitionCopy, AChosenPartitionWithoutACounterpartChangesNothing) {
    OpenMain("<CurrentChosePartition><Item Name='B'/></CurrentChosePartition>"
             "<CurrentDisk><Item Image='2' Partition='B' Size='20' Percent='40'/></CurrentDisk>"
             "<DefaultDisk><Item Image='9' Partition='A' Size='0' Percent='0'/></DefaultDisk>");
    CopyPatition(kChosenImage);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("9", "A", "0", "0")}));
}

TEST_F(PartitionCopy, WithoutAChoiceThePartitionWithoutANameIsMeant) {
    OpenMain("<CurrentDisk><Item Image='2' Partition='B' Size='20' Percent='40'/></CurrentDisk>"
             "<DefaultDisk><Item Image='8' Partition='B' Size='0' Percent='0'/>"
             "<Item Image='9' Partition='' Size='0' Percent='0'/></DefaultDisk>");
    CopyPatition(kChosenImage);
    EXPECT_EQ(SavedItems("DefaultDisk"), (Items{Partition("8", "B", "0", "0"), Partition("", "", "0", "0")}));
}

TEST_F(PartitionCopy, WithoutAPerUserCopyTheValuesStayInMemory) {
    InstallMain(Document("<CurrentDisk><Item Image='1' Partition='A' Size='10' Percent='60'/></CurrentDisk>"
                         "<DefaultDisk><Item Image='9' Partition='A' Size='0' Percent='0'/></DefaultDisk>"));
    const std::string installed = ReadFile(InstalledMainPath());
    Open();
    CopyPatition(kAllShares);
    EXPECT_EQ(GetAttrValue("DefaultDisk", "Percent"), "60");
    EXPECT_EQ(GetAttrValue("DefaultDisk", "Size"), "10");
    EXPECT_FALSE(std::filesystem::exists(UserMainPath()));
    EXPECT_EQ(ReadFile(InstalledMainPath()), installed);
}

TEST_F(PartitionCopy, WithoutAnOpenDocumentNothingHappens) {
    Open();
    CopyPatition(kAllShares);
    CopyPatition(kChosenImage);
    EXPECT_FALSE(std::filesystem::exists(UserMainPath()));
}
