// files list.

#include "tool_test.h"

using ::testing::HasSubstr;
using ::testing::Not;

class FilesList : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
        Output({"files", "add", kSans, kSansBold, kMono});
    }
};

TEST_F(FilesList, ShowsAllFilesAndMarksTheTickedOnes) {
    Output({"files", "tick", "2"});
    const auto rows = Run({"--json", "files", "list"}).Json();
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0]["LocalPath"], kSans);
    EXPECT_EQ(rows[0]["ticked"], false);
    EXPECT_EQ(rows[1]["ticked"], true);
    EXPECT_EQ(rows[1]["kind"], "TrueType font");
}

TEST_F(FilesList, AllIsWhatIsListedWithoutAnOption) {
    EXPECT_EQ(Output({"files", "list", "--all"}), Output({"files", "list"}));
    EXPECT_EQ(Run({"files", "list", "--all", "--ticked"}).status, kUsage);
}

TEST_F(FilesList, TickedShowsWhatWouldBeSent) {
    EXPECT_EQ(Run({"--json", "files", "list", "--ticked"}).Json().size(), 0u);
    Output({"files", "tick", "1", "3"});
    const auto rows = Run({"--json", "files", "list", "--ticked"}).Json();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0]["FileID"], "1");
    EXPECT_EQ(rows[1]["FileID"], "3");
    EXPECT_EQ(rows[1]["Size"], std::to_string(std::filesystem::file_size(kMono)));
}

TEST_F(FilesList, KindsAreNamedInTheLanguageChosen) {
    EXPECT_THAT(Output({"files", "list", "--language", "German"}), HasSubstr("TrueType-Schrift"));
}

TEST_F(FilesList, FindsFilesBeyondAGapInTheNumbers) {
    std::string text = ReadBytes(UserPath());
    text.replace(text.find("FileID=\"3\""), 10, "FileID=\"90\"");
    WriteBytes(UserPath(), text);
    EXPECT_THAT(Output({"files", "list"}), HasSubstr(kMono));
}

TEST_F(FilesList, FindsFilesOfOtherHostsWhenTheyAreTicked) {
    std::string text = ReadBytes(UserPath());
    text.replace(text.find("FileID=\"3\""), 10, "FileID=\"other\"");
    WriteBytes(UserPath(), text);
    EXPECT_THAT(Output({"files", "list"}), Not(HasSubstr(kMono)));
    Output({"files", "tick", "other"});
    EXPECT_THAT(Output({"files", "list"}), HasSubstr(kMono));
}
