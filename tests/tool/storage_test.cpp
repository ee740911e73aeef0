// storage report, storage show.

#include "tool_test.h"

using ::testing::HasSubstr;

class Storage : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }

    ToolRun Report(const std::string& json, const std::vector<std::string>& options = {}) const {
        std::vector<std::string> command{"--printer", "Workshop", "--json", "storage", "report", "-"};
        command.insert(command.end(), options.begin(), options.end());
        return Run(command, json);
    }

    static std::string Volume(const std::string& name) {
        return R"({"storages": [{"name": "Disk", "volumes": [{"volume": ")" + name + R"("}]}]})";
    }
};

TEST_F(Storage, AReportIsRecorded) {
    Output({"--printer", "Workshop", "storage", "report", std::string(SAMPLES_PATH) + "/storage-report.json"});
    const auto rows = Saved("Storage", "Workshop.xml");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0], (Record{{"VolumeNum", "2"},
                               {"StorageName", "Hard disk"},
                               {"Volume", "0:"},
                               {"TotalSpace", "42949672960"},
                               {"FreeSpace", "31138512896"},
                               {"Location", "Internal"},
                               {"Label", "SYSTEM"},
                               {"Status", "Ready"}}));
    EXPECT_EQ(rows[1].size(), 7u);
}

TEST_F(Storage, AReportTakesThePlaceOfTheOneBefore) {
    EXPECT_EQ(Report(Volume("0:")).status, kDone);
    EXPECT_EQ(Report(Volume("1:")).Json().size(), 1u);
    EXPECT_EQ(Saved("Storage", "Workshop.xml").size(), 1u);
}

TEST_F(Storage, AReportIsAddedOnRequest) {
    EXPECT_EQ(Report(Volume("0:")).status, kDone);
    EXPECT_EQ(Report(Volume("1:"), {"--add"}).Json().size(), 2u);
    EXPECT_EQ(Report(Volume("1:"), {"--add"}).Json().size(), 2u);
}

TEST_F(Storage, VolumesWithOneNameAreStillToldApart) {
    const auto rows = Report(R"({"storages": [{"name": "Disk", "volumes": [{"volume": "0:", "location": "left"}]},
                                               {"name": "Card", "volumes": [{"volume": "0:", "location": "right"}]}]})")
                          .Json();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0]["StorageName"], "Disk");
    EXPECT_EQ(rows[1]["StorageName"], "Card");
}

TEST_F(Storage, IsShownAsATableForPeople) {
    EXPECT_THAT(Output({"--printer", "Atrium", "storage", "list"}), HasSubstr("40.0 GiB"));
}

TEST_F(Storage, IsShownInJson) {
    const auto rows = Run({"--json", "--printer", "Atrium", "storage", "list"}).Json();
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[2]["StorageName"], "Flash memory");
    EXPECT_EQ(rows[2]["FreeSpace"], "201326592");
}

TEST_F(Storage, WhatAnotherHostRecordedIsListed) {
    WriteBytes(UserPath(),
               "<D><Storage><Item StorageName='Disk' Volume='0:' TotalSpace='1000' FreeSpace='250'/></Storage></D>");
    const auto rows = Run({"--json", "storage", "list"}).Json();
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0]["used"], 75);
}

TEST_F(Storage, AVolumeIsAddedChangedAndRemoved) {
    Output({"storage", "add", "9:", "--storage-name", "Card", "--total-space", "4G", "--free-space", "1G"});
    EXPECT_EQ(ValueOf(Saved("Storage").at(0), "TotalSpace"), "4294967296");
    EXPECT_EQ(Run({"storage", "add", "9:"}).status, kRefused);
    Output({"storage", "edit", "9:", "--free-space", "2G"});
    EXPECT_EQ(ValueOf(Saved("Storage").at(0), "FreeSpace"), "2147483648");
    Output({"storage", "remove", "9:"});
    EXPECT_TRUE(Saved("Storage").empty());
}

TEST_F(Storage, AReportNestedDeepIsRefused) {
    EXPECT_EQ(Report(std::string(100000, '[')).status, kRefused);
    EXPECT_EQ(Report(R"({"storages": )" + std::string(100000, '[') + std::string(100000, ']') + "}").status, kRefused);
}

TEST_F(Storage, AReportThatIsLargerThanAnyCanBeIsRefusedUnread) {
    const std::string report = UserFile("large.txt", "");
    std::filesystem::resize_file(report, (std::uintmax_t{256} << 20) + 1);
    for (const char* const verb : {"report", "listing"}) {
        const ToolRun run = Run({"storage", verb, report});
        EXPECT_EQ(run.status, kRefused);
        EXPECT_THAT(run.errors, HasSubstr("large.txt is larger than any can be: more than 256 MiB"));
    }
}

TEST_F(Storage, AReportWithoutANameIsAWrongCommand) {
    for (const char* const verb : {"report", "listing"}) {
        const ToolRun run = Run({"storage", verb, ""});
        EXPECT_EQ(run.status, kUsage);
        EXPECT_THAT(run.errors, HasSubstr("the name of the file is empty"));
    }
}

TEST_F(Storage, AVolumeKeepsAName) {
    Output({"storage", "add", "V1"});
    const ToolRun run = Run({"storage", "edit", "V1", "--volume", ""});
    EXPECT_EQ(run.status, kUsage);
    EXPECT_THAT(run.errors, HasSubstr("the value behind --volume is empty"));
}

TEST_F(Storage, NoVolumesAreSaidSo) {
    const ToolRun run = Run({"storage", "list"});
    EXPECT_EQ(run.status, kDone);
    EXPECT_THAT(run.errors, HasSubstr("no volumes are recorded"));
}

TEST_F(Storage, AReportThatIsNoneIsRefusedAndChangesNothing) {
    const std::string before = ReadBytes(UserPath("Workshop.xml"));
    EXPECT_EQ(Report("{").status, kRefused);
    EXPECT_EQ(Report("{}").status, kRefused);
    EXPECT_EQ(Report(R"({"storages": [{}]})").status, kRefused);
    EXPECT_EQ(Run({"storage", "report", "/nowhere.json"}).status, kRefused);
    EXPECT_EQ(ReadBytes(UserPath("Workshop.xml")), before);
}

TEST_F(Storage, AFieldThatDoesNotFitIsRefused) {
    EXPECT_EQ(Report(Volume(std::string(256, 'v'))).status, kRefused);
    EXPECT_EQ(Report(Volume(std::string(255, 'v'))).status, kDone);
}
