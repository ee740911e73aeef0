// The command line itself: help, misuse, and the options that stand for every verb.

#include "tool_test.h"

#include <algorithm>

using ::testing::HasSubstr;

class CommandLine : public ToolTest {};

TEST_F(CommandLine, NoVerbShowsTheHelpAndIsMisuse) {
    const ToolRun run = Run({});
    EXPECT_EQ(run.status, kUsage);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, HasSubstr("no verb was given"));
    EXPECT_THAT(run.errors, HasSubstr("init, reset"));
}

TEST_F(CommandLine, HelpListsTheExitStatuses) {
    const std::string help = Output({"--help"});
    EXPECT_THAT(help, HasSubstr("Exit status:"));
    EXPECT_THAT(help, HasSubstr("the change was not kept"));
}

TEST_F(CommandLine, AnUnknownVerbIsMisuse) {
    const ToolRun run = Run({"frobnicate"});
    EXPECT_EQ(run.status, kUsage);
    EXPECT_THAT(run.errors, HasSubstr("frobnicate"));
}

TEST_F(CommandLine, AMistypedWordGetsTheNearest) {
    EXPECT_THAT(Run({"files", "lits"}).errors, HasSubstr("did you mean list?"));
    EXPECT_THAT(Run({"docter"}).errors, HasSubstr("did you mean doctor?"));
    EXPECT_THAT(Run({"files", "list", "--tickd"}).errors, HasSubstr("did you mean --ticked?"));
    EXPECT_THAT(Run({"job", "list", "--printer", "Atirum"}).errors, HasSubstr("did you mean Atrium.xml?"));
    EXPECT_THAT(Run({"show", "Job"}).errors, HasSubstr("did you mean Jobs?"));
}

TEST_F(CommandLine, AnEmptyPrinterNameIsMisuse) {
    Init();
    const std::string before = ReadBytes(UserPath());
    EXPECT_EQ(Run({"--printer", "", "job", "add", "1", "x"}).status, kUsage);
    EXPECT_EQ(ReadBytes(UserPath()), before);
}

TEST_F(CommandLine, HelpForAVerbHasExamplesAndNoStatuses) {
    const std::string help = Output({"files", "add", "--help"});
    EXPECT_THAT(help, HasSubstr("cordelctl files add"));
    EXPECT_THAT(help, HasSubstr("Examples:"));
    EXPECT_EQ(help.find("the change was not kept"), std::string::npos);
}

TEST_F(CommandLine, ErrorsAreDataForScripts) {
    const ToolRun run = Run({"--json", "get", "Nothing", "Name"});
    EXPECT_EQ(run.Json()["error"]["status"], kMissing);
    EXPECT_NE(run.Json()["error"]["reason"], "");
    EXPECT_EQ(Run({"--json", "frobnicate"}).Json()["error"]["status"], kUsage);
}

TEST_F(CommandLine, NothingOfAnOptionReachesStandardErrorAsItIs) {
    const ToolRun run = Run({"get", "\x1b[31mX",
                             "\xE2\x80\xAE"
                             "Y\xC2\x9B"});
    EXPECT_EQ(run.errors.find('\x1b'), std::string::npos);
    EXPECT_EQ(run.errors.find("\xE2\x80\xAE"), std::string::npos);
    EXPECT_EQ(run.errors.find("\xC2\x9B"), std::string::npos);
    EXPECT_THAT(run.errors, HasSubstr("\\u{1B}"));
}

TEST_F(CommandLine, RowsComeInTheColumnsAndTheFormAskedFor) {
    Init();
    EXPECT_EQ(Output({"job", "list", "--printer", "Atrium", "--format", "{ID}:{Name}"}).substr(0, 4), "101:");
    const std::string zero = Output({"job", "list", "--printer", "Atrium", "-0", "--columns", "ID,Copies"});
    EXPECT_EQ(std::count(zero.begin(), zero.end(), '\0'), 3);
    EXPECT_EQ(zero.substr(0, 4), "101\t");
    EXPECT_EQ(Run({"job", "list", "--printer", "Atrium", "--columns", "Idd"}).status, kUsage);
    EXPECT_EQ(Run({"job", "list", "--columns", "Idd"}).status, kUsage) << "there are no jobs";
    EXPECT_EQ(Output({"files", "list", "--quiet", "-0", "--columns", "FileID,Copyright"}), "") << "there are no files";
    EXPECT_EQ(Run({"show", "Files", "--columns", "FileIDs"}).status, kUsage);
    EXPECT_EQ(Run({"id", "next", "rgb", "--columns", "ID"}).status, kUsage) << "it prints no table";
    EXPECT_EQ(Output({"--quiet", "set", "Project", "Name", "x"}), "");
}

TEST_F(CommandLine, SeveralPrintersAreReadOneAfterTheOther) {
    const auto all = Run({"--json", "--all-printers", "storage", "list"}).Json();
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0]["printer"], "Atrium.xml");
    EXPECT_EQ(all[0]["result"].size(), 3u);
    EXPECT_EQ(all[1]["printer"], "Workshop.xml");
    EXPECT_EQ(Run({"--printer", "Atrium", "--printer", "Workshop", "job", "add", "1", "x"}).status, kUsage);
}

TEST_F(CommandLine, AFamilyWithoutAVerbNamesItsVerbs) {
    const ToolRun run = Run({"files"});
    EXPECT_EQ(run.status, kUsage);
    EXPECT_THAT(run.errors, HasSubstr("add, list, edit, remove, tick, untick"));
}

TEST_F(CommandLine, AMissingArgumentIsMisuse) { EXPECT_EQ(Run({"get", "Project"}).status, kUsage); }

TEST_F(CommandLine, TheVersionIsPrinted) { EXPECT_THAT(Output({"--version"}), HasSubstr("cordelctl 1.")); }

TEST_F(CommandLine, GlobalOptionsMayStandAnywhere) {
    EXPECT_EQ(Output({"--printer", "Atrium", "get", "Project", "Name"}), "Atrium\n");
    EXPECT_EQ(Output({"get", "Project", "Name", "--printer", "Atrium.xml"}), "Atrium\n");
}

TEST_F(CommandLine, APrinterWithoutADocumentIsReported) {
    const ToolRun run = Run({"--printer", "Nowhere", "get", "Project", "Name"});
    EXPECT_EQ(run.status, kNoDocument);
    EXPECT_THAT(run.errors, HasSubstr(InstalledPath("Nowhere.xml").string()));
}

TEST_F(CommandLine, APrinterNameIsNoPath) {
    EXPECT_EQ(Run({"--printer", "../language/English/Strings", "get", "Main", "Title"}).status, kUsage);
}

TEST_F(CommandLine, ALanguageNameIsNoPath) {
    for (const char* const name : {"../language/German", "German/../English", ".", ""}) {
        EXPECT_EQ(Run({"show", "--texts", "Main", "--language", name}).status, kUsage) << name;
    }
}

TEST_F(CommandLine, WithoutInstalledDocumentsItSaysWhereTheyBelong) {
    std::filesystem::remove_all(InstallFolder() / "Cordelbox");
    const ToolRun run = Run({"get", "Project", "Name"});
    EXPECT_EQ(run.status, kNoDocument);
    EXPECT_THAT(run.errors, HasSubstr((InstallFolder() / "Cordelbox").string()));
}

TEST_F(CommandLine, AMalformedDocumentIsReported) {
    WriteBytes(InstalledPath(), "<Cordelbox>");
    const ToolRun run = Run({"get", "Project", "Name"});
    EXPECT_EQ(run.status, kNoDocument);
    EXPECT_THAT(run.errors, HasSubstr("cannot be read: " + InstalledPath().string()));
}

TEST_F(CommandLine, AMalformedPerUserCopyIsReportedWithTheWayBack) {
    WriteBytes(UserPath(), "");
    const ToolRun run = Run({"get", "Project", "Name"});
    EXPECT_EQ(run.status, kNoDocument);
    EXPECT_THAT(run.errors, HasSubstr(UserPath().string()));
    EXPECT_THAT(run.errors, HasSubstr("cordelctl reset"));
}

TEST_F(CommandLine, AMissingMainDocumentDoesNotMatterForAPrinter) {
    std::filesystem::remove(InstalledPath());
    EXPECT_EQ(Run({"get", "Project", "Name"}).status, kNoDocument);
    EXPECT_EQ(Output({"--printer", "Atrium", "get", "Project", "Name"}), "Atrium\n");
}

TEST_F(CommandLine, OutputThatCannotBeWrittenIsAFailure) {
    const std::string line = "'" + (InstallFolder() / "cordelctl").string() + "' get Project Name >/dev/full 2>&1";
    const int status = std::system(line.c_str());
    EXPECT_EQ(WEXITSTATUS(status), kNoOutput);
}
