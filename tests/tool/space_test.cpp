// space: what sending the ticked files leaves free.

#include "tool_test.h"

using ::testing::HasSubstr;

class Space : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }

    void Report(const std::string& volumes) const {
        const ToolRun run = Run({"--printer", "Workshop", "storage", "report", "-"},
                                R"({"storages": [{"name": "Disk", "volumes": [)" + volumes + "]}]}");
        ASSERT_EQ(run.status, kDone) << run.errors;
    }

    void AddTicked(const std::string& volume, const std::string& name, std::size_t size) const {
        Output({"files", "add", "--type", "2", "--volume", volume, UserFile(name, std::string(size, 'x'))});
        Output({"files", "tick", "--all"});
    }
};

TEST_F(Space, AddsUpTheTickedFilesOfEachVolume) {
    Report(R"({"volume": "0:", "freeSpace": 1000}, {"volume": "1:", "freeSpace": 500})");
    AddTicked("0:", "a", 100);
    AddTicked("0:", "b", 50);
    AddTicked("1:", "c", 500);
    Output({"files", "add", "--type", "2", UserFile("d", "not ticked")});
    Output({"space", "--for", "Workshop"});
    EXPECT_EQ(Saved("SendProject"),
              (std::vector<Record>{
                  {{"Volume", "0:"}, {"FilesSize", "150"}, {"FreeSpace", "1000"}, {"FreeSpaceAfterSend", "850"}},
                  {{"Volume", "1:"}, {"FilesSize", "500"}, {"FreeSpace", "500"}, {"FreeSpaceAfterSend", "0"}}}));
    EXPECT_TRUE(Saved("SendProject", "Workshop.xml").empty());
}

TEST_F(Space, FilesThatDoNotFitAreReported) {
    Report(R"({"volume": "0:", "freeSpace": 10})");
    AddTicked("0:", "a", 11);
    const ToolRun run = Run({"--json", "space", "--for", "Workshop"});
    EXPECT_EQ(run.status, kNo);
    EXPECT_EQ(run.Json()[0]["FreeSpaceAfterSend"], -1);
    EXPECT_EQ(run.Json()[0]["fits"], false);
    EXPECT_THAT(run.errors, HasSubstr("do not fit"));
    EXPECT_EQ(ValueOf(Saved("SendProject").at(0), "FreeSpaceAfterSend"), "-1");
}

TEST_F(Space, NoTickedFileLeavesNothingToSend) {
    const ToolRun run = Run({"space"});
    EXPECT_EQ(run.status, kDone);
    EXPECT_THAT(run.errors, HasSubstr("no file is ticked"));
}

TEST_F(Space, AVolumeThatIsNotKnownIsReported) {
    AddTicked("9:", "a", 1);
    const ToolRun run = Run({"space", "--for", "Atrium"});
    EXPECT_EQ(run.status, kMissing);
    EXPECT_THAT(run.errors, HasSubstr("\"9:\""));
}

TEST_F(Space, AFreeSpaceThatIsNoNumberIsRefused) {
    Report(R"({"volume": "0:", "freeSpace": "plenty"})");
    AddTicked("0:", "a", 1);
    EXPECT_EQ(Run({"space", "--for", "Workshop"}).status, kRefused);
}

TEST_F(Space, APrinterThatDoesNotExistIsReported) { EXPECT_EQ(Run({"space", "--for", "Nowhere"}).status, kNoDocument); }
