// show, tree and diff.

#include "tool_test.h"

using ::testing::HasSubstr;

class Show : public ToolTest {
protected:
    std::string Document(const std::string& containers) const {
        return UserFile("document-" + std::to_string(m_nDocuments++) + ".xml", "<D>" + containers + "</D>");
    }

    nlohmann::json Changes(const std::string& before, const std::string& after) const {
        return Run({"--json", "diff", Document(before), Document(after)}).Json();
    }

private:
    mutable int m_nDocuments = 0;
};

TEST_F(Show, ShowsEveryItemOfAContainer) {
    const auto rows = Run({"--json", "--printer", "Atrium", "show", "Jobs"}).Json();
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[1]["Name"], "Invitations");
    EXPECT_THAT(Output({"--printer", "Atrium", "show", "Jobs"}), HasSubstr("Invitations"));
}

TEST_F(Show, AnUnknownContainerIsMissing) { EXPECT_EQ(Run({"show", "Nothing"}).status, kMissing); }

TEST_F(Show, AnEmptyContainerIsSaidToBe) { EXPECT_EQ(Output({"show", "Jobs"}), "Jobs is empty\n"); }

TEST_F(Show, TheTextsAreShownOnRequest) {
    EXPECT_THAT(Output({"show", "--texts", "ProjectFilter", "--language", "German"}), HasSubstr("TrueType-Schrift"));
}

TEST_F(Show, SaysWhenTheLibraryReadsLess) {
    Init();
    WriteBytes(UserPath(), "<D><Mine><Item A='1'/><!-- x --><Item A='2'/></Mine></D>");
    const ToolRun run = Run({"show", "Mine"});
    EXPECT_EQ(run.output, "A\n1\n2\n");
    EXPECT_THAT(run.errors, HasSubstr("behind item 1, and hosts read no further"));
}

TEST_F(Show, AMalformedDocumentIsReportedWithLineAndColumn) {
    WriteBytes(InstalledPath(), "<D>\n<A>\n</B>\n</D>");
    const ToolRun run = Run({"show", "A"});
    EXPECT_EQ(run.status, kNoDocument);
    EXPECT_THAT(run.errors, HasSubstr("line 3, column"));
}

TEST_F(Show, ATreeHoldsTheWholeDocument) {
    const std::string tree = Output({"--printer", "Atrium", "tree"});
    EXPECT_THAT(tree, HasSubstr("\n  Files (empty)\n"));
    EXPECT_THAT(tree, HasSubstr("\n    Item Name=\"Invitations\" ID=\"102\""));
    const auto json = Run({"--json", "--printer", "Atrium", "tree"}).Json();
    EXPECT_EQ(json["name"], "Cordelbox");
    EXPECT_EQ(json["children"][0]["children"][0]["attributes"]["Name"], "Atrium");
}

TEST_F(Show, WithoutAChangeInstalledAndCopyDoNotDiffer) {
    Init();
    EXPECT_THAT(Output({"diff"}), HasSubstr("no difference"));
}

TEST_F(Show, AChangeInTheCopyIsADifference) {
    Init();
    Output({"set", "Project", "Name", "Changed"});
    const ToolRun run = Run({"diff"});
    EXPECT_EQ(run.status, kNo);
    EXPECT_THAT(run.output, HasSubstr("~ Project item 1: Name \"Untitled\" is now \"Changed\""));
}

TEST_F(Show, WithoutACopyThereIsNothingToCompare) { EXPECT_EQ(Run({"diff"}).status, kNoDocument); }

TEST_F(Show, OneDocumentCannotBeCompared) { EXPECT_EQ(Run({"diff", "Atrium"}).status, kUsage); }

TEST_F(Show, LayoutAndCommentsAreNoDifference) {
    EXPECT_EQ(Changes("<A><I B='1'/></A><C/>", "\n<!-- x --><C></C>\n<A>\n  <I B='1' />\n</A>").size(), 0u);
}

TEST_F(Show, ItemsArePairedByTheKeyOfTheirContainer) {
    const auto changes =
        Changes("<Jobs><I ID='1' N='a'/><I ID='2' N='b'/></Jobs>", "<Jobs><I ID='2' N='c'/><I ID='3' N='d'/></Jobs>");
    ASSERT_EQ(changes.size(), 3u);
    EXPECT_EQ(changes[0]["change"], "removed");
    EXPECT_EQ(changes[0]["item"], "item 1 (ID \"1\")");
    EXPECT_EQ(changes[1]["change"], "changed");
    EXPECT_EQ(changes[1]["values"][0]["before"], "b");
    EXPECT_EQ(changes[1]["values"][0]["after"], "c");
    EXPECT_EQ(changes[2]["change"], "added");
}

TEST_F(Show, AnotherOrderIsADifference) {
    const auto changes = Changes("<Jobs><I ID='1'/><I ID='2'/></Jobs>", "<Jobs><I ID='2'/><I ID='1'/></Jobs>");
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0]["change"], "reordered");
}

TEST_F(Show, ContainersThatComeAndGoAreDifferences) {
    const auto changes = Changes("<A/>", "<B><I N='1'/></B>");
    ASSERT_EQ(changes.size(), 3u);
    EXPECT_EQ(changes[0]["change"], "container-removed");
    EXPECT_EQ(changes[1]["change"], "container-added");
    EXPECT_EQ(changes[2]["change"], "added");
}

TEST_F(Show, VolumesAndPartitionsHaveBars) {
    EXPECT_THAT(Output({"--printer", "Atrium", "storage", "list"}), HasSubstr("[######--------------]  28 %"));
    EXPECT_THAT(Output({"--printer", "Atrium", "partition", "list"}), HasSubstr("[##########----------]  50 %"));
}

TEST_F(Show, EveryVerbThatWorksOnAnErrorSaysSo) {
    const std::string row = R"(<Item FileID="1" Component="" ID="5" Type="5" Volume="0:" Path="p" LocalPath=")" +
                            kSans + R"(" Size="1" CreateDate="" checked="0"/>)";
    const std::string job = R"(<Item Name="a" ID="1" Type="Stored" Copies="1" Stored="" checked="0"/>)";
    const std::string volume = R"(<Item VolumeNum="1" StorageName="D" Volume="0:" TotalSpace="9" FreeSpace="5"/>)";
    const std::string partition = R"(<Item Image="1" Partition="P" Size="1" Percent="1"/>)";
    // A comment before the one, a key that occurs twice in the others.
    const std::string document = "<D><Files><!-- mine -->" + row + "</Files><Jobs>" + job + job + "</Jobs><Storage>" +
                                 volume + volume + "</Storage><CurrentDisk>" + partition + partition +
                                 "</CurrentDisk><DefaultDisk>" + partition + "</DefaultDisk></D>";
    Init();
    const std::vector<std::vector<std::string>> commands{{"files", "list"},
                                                         {"files", "tick", "--all"},
                                                         {"files", "edit", "--all", "--volume", "1:"},
                                                         {"files", "verify"},
                                                         {"files", "renew", "--all"},
                                                         {"files", "remove", "--all"},
                                                         {"files", "add", kMono},
                                                         {"export"},
                                                         {"id", "next", "font"},
                                                         {"id", "validate"},
                                                         {"space"},
                                                         {"plan"},
                                                         {"show", "Files"},
                                                         {"get", "Files", "Path"},
                                                         {"set", "Files", "Path", "x", "--all"},
                                                         {"job", "list"},
                                                         {"job", "add", "2", "b"},
                                                         {"job", "edit", "--all", "--copies", "2"},
                                                         {"storage", "list"},
                                                         {"storage", "add", "1:", "--total-space", "1G"},
                                                         {"storage", "edit", "--all", "--label", "x"},
                                                         {"partition", "list"},
                                                         {"partition", "add", "Q", "--size", "1K"},
                                                         {"partition", "edit", "--all", "--size", "2K"},
                                                         {"partition", "copy"}};
    for (const auto& command : commands) {
        WriteBytes(UserPath(), document);
        const ToolRun run = Run(command);
        EXPECT_THAT(run.errors, HasSubstr(" has an error: ")) << ::testing::PrintToString(command) << run.status;
    }
}
