// history, undo, redo, restore, reset: documents as they were.

#include "tool_test.h"

#ifndef _WIN32
#include "access_list.h"
#endif

#include <cstdlib>

using ::testing::HasSubstr;

class History : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }

    std::filesystem::path States() const { return UserPath().parent_path() / ".cordelctl" / "Cordelbox.xml"; }
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

TEST_F(History, WhatAnotherProgramDidBetweenTwoCommandsIsNotUndoneWithoutAWord) {
    Output({"set", "Project", "Name", "a"});
    const std::string others = ReadBytes(UserPath()) + "<!-- another's -->";
    WriteBytes(UserPath(), others);
    Output({"set", "Project", "Name", "b"});
    Output({"undo"});
    EXPECT_EQ(ReadBytes(UserPath()), others);
    const ToolRun run = Run({"undo"});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("another program changed the document"));
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

TEST_F(History, TheAccessListOfTheDocumentIsThatOfItsStatesAndComesBack) {
    const std::string list = AccessListBytes({{AccessEntry::Owner, 6},
                                              {AccessEntry::User, 6, 65534},
                                              {AccessEntry::OwningGroup, 0},
                                              {AccessEntry::Mask, 6},
                                              {AccessEntry::Others, 0}});
    ASSERT_EQ(::setxattr(UserPath().c_str(), kAccessList, list.data(), list.size(), 0), 0);
    Output({"set", "Project", "Name", "a"});
    Output({"undo"});
    EXPECT_EQ(FileAttribute(UserPath(), kAccessList), list); // its mask would be the rights of the group
    EXPECT_EQ(FileAttribute(States() / "undone" / "000001.xml", kAccessList), list);
}

TEST_F(History, NothingIsWrittenThroughLinksThatStandInItsFolder) {
    const auto other = UserFolder() / "other";
    WriteBytes(other, "another file");
    std::filesystem::create_directories(States());
    for (const char* const name : {"000001.xml.partial", "000001.xml", "000001.txt"}) {
        std::filesystem::create_symlink(other, States() / name);
    }
    std::filesystem::create_hard_link(other, UserPath().parent_path() / ".cordelctl" / "Cordelbox.xml.lock");
    Output({"set", "Project", "Name", "a"});
    EXPECT_EQ(ReadBytes(other), "another file");
    Output({"undo"});
    EXPECT_EQ(Output({"get", "Project", "Name"}), "Untitled\n");
    EXPECT_EQ(ReadBytes(other), "another file");
}

TEST_F(History, StatesAreNotKeptInAFolderThatALinkLeadsTo) {
    const auto other = m_folder / "other";
    std::filesystem::create_directories(other);
    WriteBytes(other / "1.xml", "another file");
    std::filesystem::create_directories(States());
    std::filesystem::create_directory_symlink(other, States() / "undone");
    Output({"set", "Project", "Name", "a"});
    const ToolRun run = Run({"undo"});
    EXPECT_EQ(run.status, kNotKept);
    EXPECT_THAT(run.errors, HasSubstr("a link stands in the folder's place"));
    EXPECT_EQ(Output({"get", "Project", "Name"}), "a\n");
    EXPECT_EQ(ReadBytes(other / "1.xml"), "another file"); // and no state that a command makes room for
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
