// job add, job list.

#include "tool_test.h"

using ::testing::HasSubstr;

class Jobs : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }
};

TEST_F(Jobs, AJobIsRecorded) {
    Output({"job", "add", "7", "§ Invoice", "--type", "Proof", "--copies", "3", "--stored", "0:"});
    EXPECT_EQ(Saved("Jobs"), (std::vector<Record>{{{"Name", "§ Invoice"},
                                                   {"ID", "7"},
                                                   {"Type", "Proof"},
                                                   {"Copies", "3"},
                                                   {"Stored", "0:"},
                                                   {"checked", "0"}}}));
}

TEST_F(Jobs, AllJobsAreListed) {
    const auto rows = Run({"--json", "--printer", "Atrium", "job", "list"}).Json();
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[1]["Name"], "Invitations");
    EXPECT_EQ(rows[1]["ID"], "102");
    EXPECT_EQ(rows[1]["Copies"], "40");
}

TEST_F(Jobs, NoJobsAreAnEmptyList) { EXPECT_EQ(Run({"--json", "job", "list"}).Json(), nlohmann::json::array()); }

TEST_F(Jobs, AnIDThatIsTakenIsRefused) {
    Output({"job", "add", "7", "First"});
    const ToolRun run = Run({"job", "add", "7", "Second"});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("is recorded already"));
}

TEST_F(Jobs, WhatAHostCouldNotReadBackIsRefused) {
    EXPECT_EQ(Run({"job", "add", "1234567890", "Name"}).status, kRefused);
    EXPECT_EQ(Run({"job", "add", "1", std::string(100, 'n')}).status, kRefused);
    EXPECT_EQ(Run({"job", "add", "1", "Name", "--type", "1234567890"}).status, kRefused);
    EXPECT_EQ(Run({"job", "add", "1", "Name", "--copies", "many"}).status, kRefused);
    Output({"job", "add", "123456789", std::string(99, 'n')});
    EXPECT_THAT(Output({"job", "list"}), HasSubstr(std::string(99, 'n')));
}

TEST_F(Jobs, AJobIsChanged) {
    Output({"job", "edit", "102", "--copies", "5", "--printer", "Atrium"});
    EXPECT_EQ(ValueOf(Saved("Jobs", "Atrium.xml")[1], "Copies"), "5");
    EXPECT_EQ(Run({"job", "edit", "102", "--id", "101", "--printer", "Atrium"}).status, kRefused);
    EXPECT_EQ(Run({"job", "edit", "102", "--printer", "Atrium"}).status, kUsage);
    EXPECT_EQ(Run({"job", "edit", "9", "--copies", "5", "--printer", "Atrium"}).status, kMissing);
}

TEST_F(Jobs, JobsAreRemoved) {
    EXPECT_EQ(Output({"job", "remove", "101", "103", "--printer", "Atrium"}), "2 jobs removed\n");
    EXPECT_EQ(Saved("Jobs", "Atrium.xml").size(), 1u);
    EXPECT_EQ(Run({"job", "remove", "--printer", "Atrium"}).status, kUsage);
}

TEST_F(Jobs, AStoredValueThatIsTooLongDoesNotEndTheTool) {
    WriteBytes(UserPath(), "<D><Jobs><Item Name='" + std::string(5000, 'n') +
                               "' ID='1234567890123' Type='' Copies='' Stored='' checked='' /></Jobs></D>");
    EXPECT_EQ(Run({"--json", "job", "list"}).Json()[0]["ID"], "1234567890123");
    EXPECT_EQ(Run({"doctor", "main"}).status, kNo);
}
