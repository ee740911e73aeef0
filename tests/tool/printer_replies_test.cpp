// storage inquiry, storage report with a printer's own reply, and plan.

#include "tool_test.h"

using ::testing::HasSubstr;

namespace {

const std::string kReply = "\x1B%-12345X@PJL INFO FILESYS [3 TABLE]\r\n"
                           "VOLUME TOTAL SIZE FREE SPACE LOCATION LABEL STATUS\r\n"
                           "0:     1000000    1000       DISK     SYS   READ-WRITE\r\n"
                           "1:     2000000    2000       RAM            READ-WRITE\r\n\f";

} // namespace

class PrinterReplies : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }

    void Report(const std::string& reply = kReply) const {
        EXPECT_EQ(Run({"--printer", "Workshop", "storage", "report", "-"}, reply).status, kDone);
    }

    void AddTicked(const std::string& name, std::size_t size) const {
        Output({"files", "add", "--type", "2", "--volume", "0:", UserFile(name, std::string(size, 'x'))});
        Output({"files", "tick", "--all"});
    }
};

TEST_F(PrinterReplies, TheInquiryIsPrintedByteForByte) {
    EXPECT_EQ(Output({"storage", "inquiry", "0:fonts"}), "\x1B%-12345X@PJL\r\n@PJL INFO FILESYS\r\n@PJL FSDIRLIST "
                                                         "NAME=\"0:\\fonts\" ENTRY=1 COUNT=65535\r\n\x1B%-12345X");
    EXPECT_EQ(Run({"storage", "inquiry", "fonts"}).status, kUsage);
}

TEST_F(PrinterReplies, AReplyIsRecordedAsAReport) {
    Report();
    const auto rows = Saved("Storage", "Workshop.xml");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0], (Record{{"VolumeNum", "1"},
                               {"StorageName", "DISK"},
                               {"Volume", "0:"},
                               {"TotalSpace", "1000000"},
                               {"FreeSpace", "1000"},
                               {"Location", "DISK"},
                               {"Label", "SYS"},
                               {"Status", "READ-WRITE"}}));
    EXPECT_EQ(ValueOf(rows[1], "Label"), "");
}

TEST_F(PrinterReplies, WhatIsNotUnderstoodIsRefusedWithItsLineAndChangesNothing) {
    const std::string before = ReadBytes(UserPath("Workshop.xml"));
    const ToolRun run = Run({"--printer", "Workshop", "storage", "report", "-"}, kReply + "garbage\r\n");
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("line 5 of the report"));
    EXPECT_EQ(Run({"--printer", "Workshop", "storage", "report", "-"}, "@PJL INFO FILESYS\r\n\"?\"\r\n\f").status,
              kRefused);
    EXPECT_EQ(ReadBytes(UserPath("Workshop.xml")), before);
}

TEST_F(PrinterReplies, ThePlanHasTheFiguresOfSpace) {
    Report();
    AddTicked("a", 600);
    AddTicked("b", 300);
    const auto space = Run({"--json", "space", "--for", "Workshop"}).Json();
    const auto plan = Run({"--json", "plan", "--for", "Workshop"}).Json();
    ASSERT_EQ(plan["volumes"].size(), 1u);
    for (const char* const figure : {"FilesSize", "FreeSpace", "FreeSpaceAfterSend"}) {
        EXPECT_EQ(plan["volumes"][0][figure], space[0][figure]) << figure;
    }
    EXPECT_EQ(plan["fits"], true);
}

TEST_F(PrinterReplies, ThePlanTellsWhatDoesNotFitAndByHowMuch) {
    Report();
    AddTicked("a", 900);
    AddTicked("b", 300);
    const ToolRun run = Run({"plan", "--for", "Workshop"});
    EXPECT_EQ(run.status, kNo);
    EXPECT_THAT(run.output, HasSubstr("200 bytes missing"));
    EXPECT_THAT(run.output, HasSubstr("send macros/b"));
    EXPECT_THAT(run.output, HasSubstr("does not fit: macros/a"));
}

TEST_F(PrinterReplies, ThePlanHoldsTheProjectAgainstWhatIsThere) {
    Report();
    AddTicked("a", 100);
    AddTicked("b", 200);
    const std::string listing = UserFile("listing.txt", "@PJL FSDIRLIST NAME=\"0:\\macros\" ENTRY=1\r\n"
                                                        "a TYPE=FILE SIZE=100\r\nb TYPE=FILE SIZE=50\r\n"
                                                        "old TYPE=FILE SIZE=7\r\n\f");
    const auto volume = Run({"--json", "plan", "--for", "Workshop", "--listing", listing}).Json()["volumes"][0];
    EXPECT_EQ(volume["steps"][0]["step"], "there");
    EXPECT_EQ(volume["steps"][1]["step"], "replace");
    EXPECT_EQ(volume["bytesToSend"], 200);
    EXPECT_EQ(volume["inNoProject"][0]["Path"], "macros/old");
    EXPECT_THAT(Output({"plan", "--for", "Workshop", "--listing", listing, "--steps"}),
                ::testing::MatchesRegex("replace\t0:\tmacros/b\t.*b\t200\n"));
}

TEST_F(PrinterReplies, APrintersOwnDocumentPlansForTheMainProject) {
    Report();
    AddTicked("a", 100);
    EXPECT_EQ(Run({"--json", "--printer", "Workshop", "plan"}).Json()["volumes"][0]["FilesSize"], 100);
}
