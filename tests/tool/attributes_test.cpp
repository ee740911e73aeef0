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

TEST_F(Attributes, SetAddsAnAttributeOnRequest) {
    Output({"set", "Project", "Colour", "red", "--create"});
    EXPECT_EQ(Saved("Project"), (std::vector<Record>{{{"Name", "Untitled"}, {"Volume", "0:"}, {"Colour", "red"}}}));
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

TEST_F(Attributes, SetChangesAnyRowOfAnyContainer) {
    Output({"set", "Storage", "Location", "x", "--where", "Volume=1:", "--printer", "Atrium"});
    EXPECT_EQ(ValueOf(Saved("Storage", "Atrium.xml")[1], "Location"), "x");
}

TEST_F(Attributes, SetRefusesWhatTheAttributeDoesNotTake) {
    const std::vector<std::string> where{"--where", "Partition=Fonts", "--printer", "Atrium"};
    for (const auto& value : {std::vector<std::string>{"Percent", "101"}, {"Size", "big"}, {"Size", ""}}) {
        std::vector<std::string> command{"set", "CurrentDisk", value[0], value[1]};
        command.insert(command.end(), where.begin(), where.end());
        EXPECT_EQ(Run(command).status, kRefused) << value[0] << " " << value[1];
    }
}

TEST_F(Attributes, SizesMayHaveAUnit) {
    Output({"set", "CurrentDisk", "Size", "4G", "--where", "Partition=Fonts", "--printer", "Atrium"});
    EXPECT_EQ(ValueOf(Saved("CurrentDisk", "Atrium.xml")[1], "Size"), "4194304"); // KiB
    Output({"set", "Storage", "FreeSpace", "1.5 MiB", "--where", "Volume=0:", "--printer", "Atrium"});
    EXPECT_EQ(ValueOf(Saved("Storage", "Atrium.xml")[0], "FreeSpace"), "1572864");
}

TEST_F(Attributes, SeveralConditionsMustAllHold) {
    const std::vector<std::string> command{"get",     "Storage",   "Label",     "--where", "StorageName=Hard disk",
                                           "--where", "Volume=1:", "--printer", "Atrium"};
    EXPECT_EQ(Output(command), "FONTS\n");
}

TEST_F(Attributes, SeveralRowsAreChangedOnRequestOnly) {
    const std::vector<std::string> command{"set",       "Storage", "Status", "Busy", "--where", "StorageName=Hard disk",
                                           "--printer", "Atrium"};
    EXPECT_EQ(Run(command).status, kRefused);
    auto all = command;
    all.emplace_back("--all");
    Output(all);
    EXPECT_EQ(ValueOf(Saved("Storage", "Atrium.xml")[1], "Status"), "Busy");
    EXPECT_EQ(ValueOf(Saved("Storage", "Atrium.xml")[2], "Status"), "Ready");
}

TEST_F(Attributes, AddPutsTheValuesInOrder) {
    Output({"add", "Jobs", "ID=7", "Name=One", "Type=t", "Stored=", "Copies=1", "checked=0"});
    EXPECT_EQ(Saved("Jobs"),
              (std::vector<Record>{
                  {{"Name", "One"}, {"ID", "7"}, {"Type", "t"}, {"Copies", "1"}, {"Stored", ""}, {"checked", "0"}}}));
    EXPECT_EQ(Run({"add", "Jobs", "ID=8"}).status, kRefused); // read by position: nothing may be missing
    EXPECT_EQ(Run({"add", "Jobs", "ID=7", "Name=Two", "Type=t", "Stored=", "Copies=1", "checked=0"}).status, kRefused);
}

TEST_F(Attributes, RemoveTakesRowsAway) {
    Output({"remove", "Jobs", "--where", "ID=102", "--printer", "Atrium"});
    const auto jobs = Saved("Jobs", "Atrium.xml");
    ASSERT_EQ(jobs.size(), 2u);
    EXPECT_EQ(ValueOf(jobs[1], "ID"), "103");
    EXPECT_EQ(Run({"remove", "Jobs", "--printer", "Atrium"}).status, kUsage);
    EXPECT_EQ(Run({"remove", "Jobs", "--where", "ID=9", "--printer", "Atrium"}).status, kMissing);
}

TEST_F(Attributes, EmptyNamesAreMisuse) {
    EXPECT_EQ(Run({"get", "", "Name"}).status, kUsage);
    EXPECT_EQ(Run({"clear", ""}).status, kUsage);
}

TEST_F(Attributes, ClearEmptiesAContainerAndSaysWhenItWasEmpty) {
    EXPECT_EQ(Output({"clear", "Jobs", "--printer", "Atrium"}), "Jobs is empty now\n");
    EXPECT_TRUE(Saved("Jobs", "Atrium.xml").empty());
    EXPECT_EQ(Output({"clear", "Jobs", "--printer", "Atrium"}), "Jobs had nothing to remove\n");
}
