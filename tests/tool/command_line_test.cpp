// The command line itself: help, misuse, and the options that stand for every verb.

#include "tool_test.h"

using ::testing::HasSubstr;

class CommandLine : public ToolTest {};

TEST_F(CommandLine, NoVerbShowsTheHelpAndIsMisuse) {
    const ToolRun run = Run({});
    EXPECT_EQ(run.status, kUsage);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, HasSubstr("Subcommands:"));
}

TEST_F(CommandLine, HelpListsTheExitStatuses) {
    const std::string help = Output({"--help"});
    EXPECT_THAT(help, HasSubstr("Exit status:"));
    EXPECT_THAT(help, HasSubstr("4  the change was not kept"));
}

TEST_F(CommandLine, AnUnknownVerbIsMisuse) {
    const ToolRun run = Run({"frobnicate"});
    EXPECT_EQ(run.status, kUsage);
    EXPECT_THAT(run.errors, HasSubstr("frobnicate"));
}

TEST_F(CommandLine, AFamilyWithoutAVerbNamesItsVerbs) {
    const ToolRun run = Run({"files"});
    EXPECT_EQ(run.status, kUsage);
    EXPECT_THAT(run.errors, HasSubstr("add, list, tick, untick, edit"));
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
    EXPECT_THAT(run.errors, HasSubstr("cannot be read as XML: " + InstalledPath().string()));
}

TEST_F(CommandLine, AMalformedPerUserCopyIsReportedWithTheWayBack) {
    WriteBytes(UserPath(), "");
    const ToolRun run = Run({"get", "Project", "Name"});
    EXPECT_EQ(run.status, kNoDocument);
    EXPECT_THAT(run.errors, HasSubstr(UserPath().string()));
    EXPECT_THAT(run.errors, HasSubstr("cordelctl restore"));
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
