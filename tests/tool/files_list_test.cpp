// files list.

#include "tool_test.h"

using ::testing::HasSubstr;

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

TEST_F(FilesList, FindsFilesOfEveryHost) {
    std::string text = ReadBytes(UserPath());
    for (const auto& [mine, other] : {std::pair("1", "5001"), std::pair("2", "5003"), std::pair("3", "abc")}) {
        const std::string attribute = std::string("FileID=\"") + mine + "\"";
        text.replace(text.find(attribute), attribute.size(), std::string("FileID=\"") + other + "\"");
    }
    WriteBytes(UserPath(), text);
    const auto rows = Run({"--json", "files", "list", "--all"}).Json();
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0]["FileID"], "5001");
    EXPECT_EQ(rows[2]["FileID"], "abc");
    EXPECT_EQ(Output({"id", "next", "font"}), "3\n"); // 0, 1 and 2 are taken
    Output({"files", "add", kFontFolder + "DejaVuSerif.ttf"});
    EXPECT_EQ(ValueOf(Saved("Files")[3], "ID"), "3");
    EXPECT_EQ(ValueOf(Saved("Files")[3], "FileID"), "5004");
}

TEST_F(FilesList, ACommentAmongTheFilesIsSaidAndNoNumberIsGivenThatMayBeWrong) {
    std::string text = ReadBytes(UserPath());
    text.insert(text.find("<Item FileID=\"2\""), "<!-- here -->");
    WriteBytes(UserPath(), text);
    const ToolRun list = Run({"--json", "files", "list"});
    EXPECT_EQ(list.Json().size(), 3u);
    EXPECT_THAT(list.errors, HasSubstr("behind item 1, and hosts read no further"));
    for (const auto& command : {std::vector<std::string>{"id", "next", "font"},
                                {"id", "check", "1"},
                                {"id", "validate"},
                                {"space"},
                                {"export"},
                                {"files", "add", kRgbProfile}}) {
        const ToolRun run = Run(command);
        EXPECT_EQ(run.status, kRefused) << ::testing::PrintToString(command);
        EXPECT_THAT(run.errors, HasSubstr("Files of the main document has an error"))
            << ::testing::PrintToString(command);
        EXPECT_EQ(run.output, "");
    }
    EXPECT_EQ(ReadBytes(UserPath()), text);
}
