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
    Output({"job", "add", "7", "Ünvoice", "--type", "Proof", "--copies", "3", "--stored", "0:"});
    EXPECT_EQ(Saved("Jobs"), (std::vector<Record>{{{"Name", "Ünvoice"},
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
    EXPECT_EQ(Run({"job", "add", "1", "Name", "--copies", "0"}).status, kUsage);
    Output({"job", "add", "123456789", std::string(99, 'n')});
    EXPECT_THAT(Output({"job", "list"}), HasSubstr(std::string(99, 'n')));
}
