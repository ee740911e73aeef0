// get, set, clear.

#include "tool_test.h"

using ::testing::HasSubstr;

class Attributes : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }
};

TEST_F(Attributes, GetPrintsTheFirstValue) { EXPECT_EQ(Output({"get", "Project", "Volume"}), "0:\n"); }

TEST_F(Attributes, GetPrintsJson) { EXPECT_EQ(Run({"--json", "get", "Project", "Volume"}).Json(), "0:"); }

TEST_F(Attributes, GetPicksARow) {
    EXPECT_EQ(Output({"get", "CurrentDisk", "Percent", "--where", "Partition=Jobs", "--printer", "Atrium"}), "20\n");
}

TEST_F(Attributes, GetTellsAMissFromAValue) {
    EXPECT_EQ(Run({"get", "Project", "Colour"}).status, kMissing);
    EXPECT_EQ(Run({"get", "Nothing", "Name"}).status, kMissing);
    const ToolRun run = Run({"get", "CurrentDisk", "Percent", "--where", "Partition=None", "--printer", "Atrium"});
    EXPECT_EQ(run.status, kMissing);
    EXPECT_EQ(run.output, "");
}

TEST_F(Attributes, GetFindsAValueThatEqualsItsFilter) {
    Output({"files", "add", kSans, kSansBold, kMono, kFontFolder + "DejaVuSerif.ttf",
            kFontFolder + "DejaVuSerif-Bold.ttf"});
    EXPECT_EQ(Output({"get", "Files", "Type", "--where", "FileID=5"}), "5\n");
    EXPECT_EQ(Run({"get", "Files", "ICMType", "--where", "FileID=5"}).status, kMissing);
}

TEST_F(Attributes, GetFindsAnEmptyValueOfAKnownRow) {
    EXPECT_EQ(Output({"set", "Project", "Name", ""}), "Project Name = \n");
    EXPECT_EQ(Output({"get", "Project", "Name"}), "\n");
}

TEST_F(Attributes, AFilterWithoutANameIsMisuse) {
    EXPECT_EQ(Run({"get", "Files", "Type", "--where", "FileID"}).status, kUsage);
    EXPECT_EQ(Run({"get", "Files", "Type", "--where", "=5"}).status, kUsage);
}

TEST_F(Attributes, SetOverwritesTheFirstValue) {
    Output({"set", "RGBSource", "IDArray", "2222"});
    EXPECT_EQ(Saved("RGBSource"), (std::vector<Record>{{{"IDArray", "2222"}}}));
}

TEST_F(Attributes, SetCreatesNothing) {
    const ToolRun run = Run({"set", "Project", "Colour", "red"});
    EXPECT_EQ(run.status, kMissing);
    EXPECT_THAT(run.errors, HasSubstr("no item of Project carries Colour"));
    EXPECT_EQ(Run({"set", "Nothing", "Name", ""}).status, kMissing);
}

TEST_F(Attributes, SetRefusesWhatADocumentCannotHold) {
    EXPECT_EQ(Run({"set", "Project", "Name", "a\x01"}).status, kRefused);
    EXPECT_EQ(Run({"set", "Project", "Name", "a\xFF"}).status, kRefused);
    EXPECT_EQ(Output({"get", "Project", "Name"}), "Untitled\n");
}

TEST_F(Attributes, SetKeepsEverySpecialCharacter) {
    const std::string value = "<&>\"' \t\n Größe \xF0\x9F\x96\xA8";
    Output({"set", "Project", "Name", value});
    EXPECT_EQ(Output({"get", "Project", "Name"}), value + "\n");
}

TEST_F(Attributes, SetChangesOneAttributeOfOneRow) {
    const auto before = Saved("CurrentDisk", "Atrium.xml");
    Output({"set", "CurrentDisk", "Percent", "25", "--where", "Partition=Fonts", "--printer", "Atrium"});
    auto expected = before;
    expected[1][3].second = "25";
    EXPECT_EQ(Saved("CurrentDisk", "Atrium.xml"), expected);
}

TEST_F(Attributes, SetOfAMissingRowChangesNothing) {
    const std::string before = ReadBytes(UserPath("Atrium.xml"));
    EXPECT_EQ(Run({"set", "CurrentDisk", "Percent", "25", "--where", "Partition=None", "--printer", "Atrium"}).status,
              kMissing);
    EXPECT_EQ(ReadBytes(UserPath("Atrium.xml")), before);
}

TEST_F(Attributes, SetOfARowNeedsADocumentThatIsPreparedForIt) {
    const ToolRun run = Run({"set", "Storage", "Location", "x", "--where", "Volume=1:", "--printer", "Atrium"});
    EXPECT_EQ(run.status, kMissing);
    EXPECT_THAT(run.errors, HasSubstr("Edit.Storage.Location"));
}

TEST_F(Attributes, SetOfARowAcceptsAnEmptyValue) {
    Output({"set", "CurrentDisk", "Size", "", "--where", "Partition=Fonts", "--printer", "Atrium"});
    EXPECT_EQ(ValueOf(Saved("CurrentDisk", "Atrium.xml")[1], "Size"), "");
}

TEST_F(Attributes, ClearEmptiesAContainerAndSaysWhenItWasEmpty) {
    EXPECT_EQ(Output({"clear", "Jobs", "--printer", "Atrium"}), "Jobs is empty now\n");
    EXPECT_TRUE(Saved("Jobs", "Atrium.xml").empty());
    EXPECT_EQ(Output({"clear", "Jobs", "--printer", "Atrium"}), "Jobs had nothing to remove\n");
}

TEST_F(Attributes, ClearForgetsWhatItCouldList) {
    Output({"clear", "Storage", "--printer", "Atrium"});
    EXPECT_TRUE(Saved("Index.Storage", "Atrium.xml").empty());
}
