// files tick, files untick.

#include "tool_test.h"

using ::testing::HasSubstr;

class FilesTick : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
        Output({"files", "add", kSans, kSansBold, kMono});
    }

    std::string Ticks() const {
        std::string ticks;
        for (const Record& file : Saved("Files")) {
            ticks += ValueOf(file, "checked");
        }
        return ticks;
    }
};

TEST_F(FilesTick, TicksFilesByFileIDAndByPath) {
    EXPECT_EQ(Output({"files", "tick", "1", kMono}), "2 files ticked\n");
    EXPECT_EQ(Ticks(), "101");
}

TEST_F(FilesTick, ChangesNothingElse) {
    auto expected = Saved("Files");
    Output({"files", "tick", "2"});
    expected[1][9].second = "1";
    EXPECT_EQ(Saved("Files"), expected);
}

TEST_F(FilesTick, UnticksFiles) {
    Output({"files", "tick", "1", "2", "3"});
    Output({"files", "untick", "2"});
    EXPECT_EQ(Ticks(), "101");
}

TEST_F(FilesTick, TicksAndUnticksAll) {
    Output({"files", "tick", "2"});
    EXPECT_EQ(Output({"files", "tick", "--all"}), "2 files ticked, 1 were so already\n");
    EXPECT_EQ(Ticks(), "111");
    EXPECT_EQ(Output({"files", "untick", "--all"}), "3 files unticked\n");
    EXPECT_EQ(Ticks(), "000");
}

TEST_F(FilesTick, TicksAllWhateverTheFileIDs) {
    std::string text = ReadBytes(UserPath());
    text.replace(text.find("FileID=\"2\""), 10, "FileID=\"other\"");
    WriteBytes(UserPath(), text);
    Output({"files", "tick", "--all"});
    EXPECT_EQ(Ticks(), "111");
}

TEST_F(FilesTick, NothingToChangeIsNoFailureAndNoSave) {
    const std::string before = ReadBytes(UserPath());
    EXPECT_EQ(Output({"files", "untick", "--all"}), "0 files unticked, 3 were so already\n");
    EXPECT_EQ(Run({"--json", "history"}).Json().size(), 1u); // of adding them
    EXPECT_EQ(ReadBytes(UserPath()), before);
}

TEST_F(FilesTick, TicksFilesByWhatTheyAre) {
    Output({"files", "tick", "--where", "PostScriptName=DejaVuSans-Bold"});
    EXPECT_EQ(Ticks(), "010");
}

TEST_F(FilesTick, RemovesFilesFromTheList) {
    Output({"files", "remove", "1", kMono});
    const auto files = Saved("Files");
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(ValueOf(files[0], "FileID"), "2");
}

TEST_F(FilesTick, AnUnknownFileIsReportedBeforeAnythingIsChanged) {
    const ToolRun run = Run({"files", "tick", "1", "99"});
    EXPECT_EQ(run.status, kMissing);
    EXPECT_THAT(run.errors, HasSubstr("\"99\""));
    EXPECT_EQ(Ticks(), "000");
}

TEST_F(FilesTick, NoFileAndNotAllIsMisuse) { EXPECT_EQ(Run({"files", "tick"}).status, kUsage); }
