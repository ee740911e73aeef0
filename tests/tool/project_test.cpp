// export and import: the list of a project's files.

#include "tool_test.h"

using ::testing::HasSubstr;

class Project : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
        Output({"files", "add", kSans, kMono, kRgbProfile});
        Output({"files", "tick", "2"});
    }

    std::string Exported() const { return UserFile("list.json", Output({"export"})); }
};

TEST_F(Project, ExportsEveryAttributeOfEveryFile) {
    const auto files = Run({"export"}).Json()["files"];
    ASSERT_EQ(files.size(), 3u);
    EXPECT_EQ(files[0]["LocalPath"], kSans);
    EXPECT_EQ(files[0]["FontFamilyName"], "DejaVu Sans");
    EXPECT_EQ(files[1]["checked"], "1");
    EXPECT_EQ(files[2]["ProfileType"], "0");
}

TEST_F(Project, ExportsToAFile) {
    const std::string path = m_folder / "list.json";
    EXPECT_THAT(Output({"export", path}), HasSubstr("3 files exported"));
    EXPECT_EQ(ReadBytes(path), Output({"export"}));
    EXPECT_EQ(Run({"export", m_folder / "none" / "list.json"}).status, kNoOutput);
}

TEST_F(Project, ImportsIntoAnotherDocumentAsItWas) {
    Output({"--printer", "Workshop", "import", Exported()});
    EXPECT_EQ(Saved("Files", "Workshop.xml"), Saved("Files"));
}

TEST_F(Project, RefusesWhatIsListedAlready) {
    const auto before = ReadBytes(UserPath());
    const ToolRun run = Run({"--json", "import", Exported()});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_EQ(run.Json()[0]["imported"], false);
    EXPECT_THAT(run.errors, HasSubstr("listed already"));
    EXPECT_EQ(ReadBytes(UserPath()), before);
}

TEST_F(Project, GivesTheNextFreeIDForOneThatIsTaken) {
    Output({"--printer", "Workshop", "files", "add", kSansBold});
    const auto rows = Run({"--json", "--printer", "Workshop", "import", Exported()}).Json();
    EXPECT_EQ(rows[0]["formerID"], "0");
    EXPECT_NE(rows[0]["ID"], "0");
    EXPECT_EQ(Run({"doctor", "Workshop"}).status, kDone);
}

TEST_F(Project, SaysWhenAFileIsNotOnThisComputer) {
    const std::string list =
        UserFile("list.json", R"({"files": [{"LocalPath": "/nowhere/a.mac", "Type": "2", "ID": "3"}]})");
    EXPECT_THAT(Output({"import", list}), HasSubstr("not on this computer"));
    EXPECT_EQ(ValueOf(Saved("Files")[3], "ID"), "3");
}

TEST_F(Project, AListNestedDeepIsRefused) {
    EXPECT_EQ(Run({"import", "-"}, std::string(100000, '[')).status, kRefused);
    EXPECT_EQ(Run({"import", "-"}, std::string(100000, '[') + std::string(100000, ']')).status, kRefused);
}

TEST_F(Project, AListThatIsLargerThanAnyCanBeIsRefusedUnread) {
    const std::string list = UserFile("large.json", "");
    std::filesystem::resize_file(list, (std::uintmax_t{256} << 20) + 1);
    const ToolRun run = Run({"import", list});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("large.json is larger than any can be: more than 256 MiB"));
}

TEST_F(Project, RefusesWhatNoRecordHolds) {
    const std::string list = UserFile("list.json", R"({"files": [{"LocalPath": "/a", "Type": "7"}, {"Type": "5"}, 7,
        {"LocalPath": "/b", "Type": "5", "FontStyle": ")" +
                                                       std::string(256, 'a') + R"("}]})");
    const ToolRun run = Run({"import", list});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.output, HasSubstr("0 files imported, 4 refused"));
    EXPECT_EQ(Saved("Files").size(), 3u);
}

TEST_F(Project, WhereOneFileIsRefusedNothingIsChangedUnlessToldToKeepGoing) {
    const std::string before = ReadBytes(UserPath());
    const std::string list =
        UserFile("list.json", R"({"files": [{"LocalPath": "/a.mac", "Type": "2"}, {"LocalPath": "/b", "Type": "7"}]})");
    const ToolRun run = Run({"import", list});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("nothing was changed, since 1 of 2 files cannot be imported"));
    EXPECT_EQ(ReadBytes(UserPath()), before);
    EXPECT_EQ(Run({"import", "--keep-going", list}).status, kRefused);
    EXPECT_EQ(Saved("Files").size(), 4u);
}

TEST_F(Project, AListOfAnotherShapeIsRefused) {
    for (const char* const list : {"", "[]", "{\"files\": 1}"}) {
        EXPECT_EQ(Run({"import", UserFile("list.json", list)}).status, kRefused) << list;
    }
    EXPECT_EQ(Run({"import", m_folder / "none.json"}).status, kRefused);
}

TEST_F(Project, ReadsTheListFromStandardInput) {
    EXPECT_EQ(Run({"--printer", "Workshop", "import", "-"}, Output({"export"})).status, kDone);
    EXPECT_EQ(Saved("Files", "Workshop.xml").size(), 3u);
}
