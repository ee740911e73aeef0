// history, undo, redo, restore, reset: documents as they were.

#include "tool_test.h"

#include <cstdlib>

using ::testing::HasSubstr;

class History : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }
};

TEST_F(History, UndoGivesTheFormerBytesAfterAnyCommand) {
    WriteBytes(UserPath(),
               "<?xml version='1.0'?>\n<D  ><!-- odd   layout -->\n<Project><Item Name='x'   Volume='0:'/></Project>"
               "<Files/><Jobs></Jobs></D>");
    const std::string before = ReadBytes(UserPath());
    const std::vector<std::vector<std::string>> commands{{"set", "Project", "Name", "y"},
                                                         {"add", "Project", "Name=z"},
                                                         {"files", "add", kSans},
                                                         {"job", "add", "1", "One"},
                                                         {"clear", "Project"}};
    for (const auto& command : commands) {
        Output(command);
        EXPECT_NE(ReadBytes(UserPath()), before) << ::testing::PrintToString(command);
        Output({"undo"});
        EXPECT_EQ(ReadBytes(UserPath()), before) << ::testing::PrintToString(command);
    }
}

TEST_F(History, CommandsAreUndoneAndDoneAgainInTurn) {
    std::vector<std::string> states{ReadBytes(UserPath())};
    for (const char* const name : {"a", "b", "c"}) {
        Output({"set", "Project", "Name", name});
        states.push_back(ReadBytes(UserPath()));
    }
    for (int i = 2; i >= 0; --i) {
        Output({"undo"});
        EXPECT_EQ(ReadBytes(UserPath()), states[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(Run({"undo"}).status, kMissing);
    for (std::size_t i = 1; i < 4; ++i) {
        Output({"redo"});
        EXPECT_EQ(ReadBytes(UserPath()), states[i]);
    }
    EXPECT_EQ(Run({"redo"}).status, kMissing);
}

TEST_F(History, WhatAnotherProgramDidSinceIsNotUndoneWithoutAWord) {
    Output({"set", "Project", "Name", "a"});
    const std::string others = ReadBytes(UserPath()) + "<!-- another's -->";
    WriteBytes(UserPath(), others);
    const ToolRun run = Run({"undo"});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("another program changed the document"));
    EXPECT_EQ(ReadBytes(UserPath()), others);
    Output({"undo", "--force"});
    Output({"redo"});
    EXPECT_EQ(ReadBytes(UserPath()), others);
}

TEST_F(History, AStateIsListedComparedAndRestored) {
    const std::string before = ReadBytes(UserPath());
    Output({"set", "Project", "Name", "a"});
    Output({"set", "Project", "Name", "b"});
    const auto states = Run({"--json", "history"}).Json();
    ASSERT_EQ(states.size(), 2u);
    EXPECT_EQ(states[0]["before"], "set Project Name a");
    const ToolRun diff = Run({"diff", "--state", "1"});
    EXPECT_EQ(diff.status, kNo);
    EXPECT_THAT(diff.output, HasSubstr("Name \"Untitled\" is now \"b\""));
    EXPECT_THAT(Output({"restore", "1", "--dry-run"}), HasSubstr("Name \"b\" is now \"Untitled\""));
    Output({"restore", "1"});
    EXPECT_EQ(ReadBytes(UserPath()), before);
    EXPECT_EQ(Run({"restore", "77"}).status, kMissing);
    Output({"undo"});
    EXPECT_EQ(Output({"get", "Project", "Name"}), "b\n");
}

TEST_F(History, OnlySoManyStatesAreKept) {
    static char bound[] = "CORDELCTL_HISTORY=3";
    ::putenv(bound);
    for (int i = 1; i <= 5; ++i) {
        Output({"set", "Project", "Name", std::to_string(i)});
    }
    const auto states = Run({"--json", "history"}).Json();
    static char unset[] = "CORDELCTL_HISTORY=";
    ::putenv(unset);
    ASSERT_EQ(states.size(), 3u);
    EXPECT_EQ(states[0]["state"], 3);
    EXPECT_EQ(states[2]["state"], 5);
}

#ifndef _WIN32 // where they come from the folder
TEST_F(History, AStateHasTheRightsOfTheDocument) {
    std::filesystem::permissions(UserPath(), std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    Output({"set", "Project", "Name", "a"});
    for (const auto& entry :
         std::filesystem::directory_iterator(UserPath().parent_path() / ".cordelctl" / "Cordelbox.xml")) {
        EXPECT_EQ(entry.status().permissions() &
                      (std::filesystem::perms::group_all | std::filesystem::perms::others_all),
                  std::filesystem::perms::none)
            << entry.path();
    }
}
#endif

class Reset : public ToolTest {};

TEST_F(Reset, WantsToBeToldTwice) {
    WriteBytes(UserPath(), "broken");
    EXPECT_EQ(Run({"reset"}).status, kUsage);
    EXPECT_EQ(ReadBytes(UserPath()), "broken");
}

TEST_F(Reset, PutsTheInstalledDocumentBackAndKeepsWhatWasThere) {
    WriteBytes(UserPath(), "broken");
    EXPECT_EQ(Run({"--json", "reset", "--yes"}).Json()["kept"], "state 1");
    EXPECT_EQ(ReadBytes(UserPath()), ReadBytes(InstalledPath()));
    Output({"undo"});
    EXPECT_EQ(ReadBytes(UserPath()), "broken");
}

TEST_F(Reset, CreatesACopyWhereThereWasNone) {
    EXPECT_TRUE(Run({"--json", "reset", "--yes"}).Json()["kept"].is_null());
    EXPECT_EQ(ReadBytes(UserPath()), ReadBytes(InstalledPath()));
}

TEST_F(Reset, MovesAFolderOutOfTheWay) {
    std::filesystem::create_directories(UserPath());
    Output({"reset", "--yes"});
    EXPECT_EQ(ReadBytes(UserPath()), ReadBytes(InstalledPath()));
}

TEST_F(Reset, ResetsAPrinterOrTheTextsAlone) {
    Output({"--printer", "Atrium", "reset", "--yes"});
    EXPECT_EQ(ReadBytes(UserPath("Atrium.xml")), ReadBytes(InstalledPath("Atrium.xml")));
    EXPECT_FALSE(std::filesystem::exists(UserPath()));
    Output({"--language", "German", "reset", "--texts", "--yes"});
    EXPECT_TRUE(std::filesystem::exists(UserPath().parent_path().parent_path() / "language/German/Strings.xml"));
    EXPECT_FALSE(std::filesystem::exists(UserPath()));
}

TEST_F(Reset, LeavesTheCopyWhenThereIsNothingToPutInItsPlace) {
    WriteBytes(UserPath("Attic.xml"), "mine");
    EXPECT_EQ(Run({"--printer", "Attic", "reset", "--yes"}).status, kNoDocument);
    EXPECT_EQ(ReadBytes(UserPath("Attic.xml")), "mine");
}
