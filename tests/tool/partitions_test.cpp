// partition add, show, copy.

#include "tool_test.h"

using ::testing::HasSubstr;

class Partitions : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }
};

TEST_F(Partitions, ADiskPartitionEntersBothLayouts) {
    Output({"partition", "add", "P1", "--size", "1536", "--percent", "40", "--image", "2"});
    const std::vector<Record> expected{{{"Image", "2"}, {"Partition", "P1"}, {"Size", "1"}, {"Percent", "40"}}};
    EXPECT_EQ(Saved("CurrentDisk"), expected);
    EXPECT_EQ(Saved("DefaultDisk"), expected);
}

TEST_F(Partitions, AFlashPartitionHasNoPercentage) {
    Output({"partition", "add", "P1", "--flash", "--size", "2048"});
    const std::vector<Record> expected{{{"Image", "0"}, {"Partition", "P1"}, {"Size", "2"}}};
    EXPECT_EQ(Saved("CurrentFlash"), expected);
    EXPECT_EQ(Saved("DefaultFlash"), expected);
    EXPECT_EQ(Run({"partition", "add", "P2", "--flash", "--size", "1", "--percent", "3"}).status, kUsage);
}

TEST_F(Partitions, ASizeMayHaveAUnit) {
    Output({"partition", "add", "P1", "--size", "4G"});
    EXPECT_EQ(ValueOf(Saved("CurrentDisk").at(0), "Size"), "4194304");
    EXPECT_EQ(Run({"partition", "add", "P2", "--size", "4X"}).status, kUsage);
}

TEST_F(Partitions, ArChangedAndRemovedInBothLayouts) {
    Output({"partition", "edit", "Fonts", "--size", "6G", "--percent", "40", "--printer", "Atrium"});
    EXPECT_EQ(ValueOf(Saved("CurrentDisk", "Atrium.xml")[1], "Percent"), "40");
    EXPECT_EQ(ValueOf(Saved("DefaultDisk", "Atrium.xml")[1], "Size"), "6291456");
    Output({"partition", "edit", "Fonts", "--percent", "20", "--layout", "current", "--printer", "Atrium"});
    EXPECT_EQ(ValueOf(Saved("DefaultDisk", "Atrium.xml")[1], "Percent"), "40");
    Output({"partition", "remove", "Fonts", "--printer", "Atrium"});
    EXPECT_EQ(Saved("CurrentDisk", "Atrium.xml").size(), 2u);
    EXPECT_EQ(Saved("DefaultDisk", "Atrium.xml").size(), 2u);
}

TEST_F(Partitions, APartitionThatIsThereIsRefused) {
    Output({"partition", "add", "P1", "--size", "1024"});
    EXPECT_EQ(Run({"partition", "add", "P1", "--size", "2048"}).status, kRefused);
    EXPECT_EQ(Saved("CurrentDisk").size(), 1u);
}

TEST_F(Partitions, SizesThatWouldStopTheLibraryAreMisuse) {
    EXPECT_EQ(Run({"partition", "add", "P1", "--size", "102399999999998977"}).status, kUsage);
    Output({"partition", "add", "P1", "--size", "102399999999998976"});
    EXPECT_EQ(ValueOf(Saved("CurrentDisk").at(0), "Size"), "99999999999999");
    EXPECT_EQ(Run({"partition", "add", "P2", "--size", "-1"}).status, kUsage);
    EXPECT_EQ(Run({"partition", "add", "P2", "--size", "1", "--percent", "101"}).status, kUsage);
}

TEST_F(Partitions, AreShownWithThePercentagesOfTheDisk) {
    const auto rows = Run({"--json", "--printer", "Atrium", "partition", "list"}).Json();
    EXPECT_EQ(rows.size(), 10u);
    EXPECT_EQ(rows[1]["Partition"], "Fonts");
    EXPECT_EQ(rows[1]["Percent"], "30");
    EXPECT_EQ(rows[1]["Layout"], "current");
}

TEST_F(Partitions, SizesAndPercentagesAreCopiedToTheDefaults) {
    Output({"--printer", "Atrium", "set", "CurrentDisk", "Percent", "25", "--where", "Partition=Jobs"});
    Output({"--printer", "Atrium", "set", "CurrentDisk", "Image", "8", "--where", "Partition=Jobs"});
    Output({"--printer", "Atrium", "partition", "copy"});
    EXPECT_EQ(ValueOf(Saved("DefaultDisk", "Atrium.xml")[2], "Percent"), "25");
    EXPECT_EQ(ValueOf(Saved("DefaultDisk", "Atrium.xml")[2], "Image"), "2");
}

TEST_F(Partitions, TheImageOfOnePartitionIsCopied) {
    Output({"--printer", "Atrium", "set", "CurrentDisk", "Image", "8", "--where", "Partition=Jobs"});
    Output({"--printer", "Atrium", "partition", "copy", "--image", "Jobs"});
    EXPECT_EQ(ValueOf(Saved("DefaultDisk", "Atrium.xml")[2], "Image"), "8");
    EXPECT_EQ(ValueOf(Saved("CurrentChosePartition", "Atrium.xml")[0], "Name"), "Jobs");
}

TEST_F(Partitions, AMissingPartitionOrValueIsNotCopiedAsAName) {
    EXPECT_EQ(Run({"--printer", "Atrium", "partition", "copy", "--image", "None"}).status, kMissing);
    std::string text = ReadBytes(UserPath("Atrium.xml"));
    text.replace(text.find(" Percent=\"30\""), 13, "");
    WriteBytes(UserPath("Atrium.xml"), text);
    EXPECT_EQ(Run({"--printer", "Atrium", "partition", "copy"}).status, kMissing);
    EXPECT_EQ(ReadBytes(UserPath("Atrium.xml")), text);
}
