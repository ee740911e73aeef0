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

TEST_F(PrinterReplies, OfSeveralInquiriesInOneCaptureTheLastCounts) {
    Report(kReply + "\x1B%-12345X@PJL ECHO again\r\n\f@PJL INFO FILESYS [2 TABLE]\r\n" +
           "VOLUME TOTAL SIZE FREE SPACE LOCATION LABEL STATUS\r\n"
           "0:     10000000000   9000000000       DISK     SYS   READ-WRITE\r\n\f" +
           "@PJL FSDIRLIST NAME=\"0:\\fonts\" ENTRY=1\r\na TYPE=FILE SIZE=1\r\n\f");
    const auto rows = Saved("Storage", "Workshop.xml");
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(ValueOf(rows[0], "TotalSpace"), "10000000000");
    EXPECT_EQ(ValueOf(rows[0], "FreeSpace"), "9000000000");
}

TEST_F(PrinterReplies, AReportInJsonIsTakenAsBefore) {
    Report(R"( {"storages": [{"name": "DISK", "volumes": [{"volume": "0:", "totalSpace": 9, "freeSpace": 8,
               "location": "", "label": "", "status": ""}]}]})");
    EXPECT_EQ(Saved("Storage", "Workshop.xml").size(), 1u);
}

TEST_F(PrinterReplies, ThePlanHasTheFiguresOfSpaceOnEveryVolume) {
    Report();
    Output({"files", "add", "--type", "2", "--volume", "0:", UserFile("a", std::string(999, 'x'))});
    Output({"files", "add", "--type", "2", "--volume", "0:", UserFile("b", std::string(2, 'y'))});
    Output({"files", "add", "--type", "8", "--volume", "1:", UserFile("c", std::string(2000, 'x'))});
    Output({"files", "add", "--type", "8", "--volume", "1:", UserFile("d", "not ticked")});
    Output({"files", "tick", "1", "2", "3"});
    const auto space = Run({"--json", "space", "--for", "Workshop"}).Json();
    const auto plan = Run({"--json", "plan", "--for", "Workshop"}).Json();
    ASSERT_EQ(space.size(), 2u);
    ASSERT_EQ(plan["volumes"].size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        for (const char* const figure : {"Volume", "FilesSize", "FreeSpace", "FreeSpaceAfterSend"}) {
            EXPECT_EQ(plan["volumes"][i][figure], space[i][figure]) << figure;
        }
        EXPECT_EQ(plan["volumes"][i]["bytesMissing"] == 0, space[i]["fits"]);
    }
    EXPECT_EQ(plan["volumes"][0]["bytesMissing"], 1);
    EXPECT_EQ(plan["fits"], false);
}

TEST_F(PrinterReplies, WhereTheReportIsOlderThanTheListingThePlanSaysSo) {
    Report();
    AddTicked("a", 100);
    const std::string listing =
        UserFile("listing.txt", "@PJL INFO FILESYS\r\nVOLUME TOTAL SIZE FREE SPACE LOCATION LABEL STATUS\r\n"
                                "0: 1000000 50 DISK SYS READ-WRITE\r\n\f"
                                "@PJL FSDIRLIST NAME=\"0:\\macros\" ENTRY=1\r\nold TYPE=FILE SIZE=7\r\n\f");
    const ToolRun run = Run({"plan", "--for", "Workshop", "--listing", listing});
    EXPECT_EQ(run.status, kDone); // the recorded figures count, as for space
    EXPECT_THAT(run.errors, HasSubstr("1000 free bytes are recorded, and the listing tells of 50"));
    EXPECT_EQ(Run({"--printer", "Workshop", "storage", "report", listing}).status, kDone);
    EXPECT_EQ(Run({"plan", "--for", "Workshop", "--listing", listing}).status, kNo);
}

TEST_F(PrinterReplies, AListingOfAVolumeThatIsNotRecordedIsRefused) {
    Report();
    const std::string listing =
        UserFile("listing.txt", "@PJL FSDIRLIST NAME=\"7:\\\" ENTRY=1\r\nold TYPE=FILE SIZE=7\r\n\f");
    const ToolRun run = Run({"plan", "--for", "Workshop", "--listing", listing});
    EXPECT_EQ(run.status, kMissing);
    EXPECT_THAT(run.errors, HasSubstr("files of volume 7:"));
    EXPECT_EQ(Run({"plan", "--for", "Workshop", "--listing", UserFile("not.txt", "no reply")}).status, kRefused);
}

TEST_F(PrinterReplies, ThePlanTellsClashes) {
    Report();
    AddTicked("a", 10);
    AddTicked("b", 10);
    EXPECT_EQ(Run({"files", "edit", "2", "--id", "0"}).status, kNo); // says so, and sets it
    const ToolRun run = Run({"plan", "--for", "Workshop"});
    EXPECT_EQ(run.status, kNo);
    EXPECT_THAT(run.errors, HasSubstr("files 1, 2 (macros) all have the ID 0"));
    EXPECT_EQ(Run({"--json", "plan", "--for", "Workshop"}).Json()["clashes"][0]["kind"], "sent together");
    Output({"files", "untick", "2"});
    const std::string listing =
        UserFile("listing.txt", "@PJL FSDIRLIST NAME=\"0:\\macros\" ENTRY=1\r\nb TYPE=FILE SIZE=10\r\n\f");
    EXPECT_THAT(Run({"plan", "--for", "Workshop", "--listing", listing}).errors,
                HasSubstr("files 1, 2 (macros) have the ID 0, and the last of them is on the printer"));
}

TEST_F(PrinterReplies, TheStepsStandInTheOrderInWhichTheyFit) {
    Report();
    AddTicked("large", 1200);
    AddTicked("small", 100);
    const std::string listing =
        UserFile("listing.txt", "@PJL FSDIRLIST NAME=\"0:\\macros\" ENTRY=1\r\nsmall TYPE=FILE SIZE=400\r\n\f");
    const auto steps = Run({"--json", "plan", "--for", "Workshop", "--listing", listing, "--steps"}).Json();
    ASSERT_EQ(steps.size(), 2u);
    EXPECT_THAT(steps[0].get<std::string>(), ::testing::StartsWith("replace\t0:\tmacros/small\t"));
    EXPECT_THAT(steps[1].get<std::string>(), ::testing::StartsWith("send\t0:\tmacros/large\t"));
    EXPECT_THAT(steps[1].get<std::string>(), ::testing::EndsWith("\t1200"));
}

TEST_F(PrinterReplies, AListingIsShownWithKindsAndSizes) {
    const std::string reply =
        UserFile("reply.txt", "@PJL FSDIRLIST NAME=\"0:\\fonts\" ENTRY=1\r\n. TYPE=DIR\r\nold TYPE=DIR\r\n"
                              "big.bin TYPE=FILE SIZE=5000000000\r\n\f@PJL FSDIRLIST NAME=\"1:\\\" FILEERROR=1\r\n\f");
    const ToolRun run = Run({"storage", "listing", reply});
    EXPECT_EQ(run.status, kDone);
    EXPECT_THAT(run.output, ::testing::ContainsRegex("VOLUME +PATH +KIND +SIZE\n"
                                                     "0: +fonts/old +folder *\n"
                                                     "0: +fonts/big.bin +file +4.7 GiB\n"));
    EXPECT_THAT(run.errors, HasSubstr("the printer did not list 1:: the volume is not there"));
    const auto entries = Run({"--json", "storage", "listing", reply}).Json();
    EXPECT_EQ(entries[0]["Size"], nullptr);
    EXPECT_EQ(entries[1]["Size"], 5000000000);
    EXPECT_THAT(Run({"storage", "listing", "-"}, kReply).errors, HasSubstr("lists no files"));
    EXPECT_EQ(Run({"storage", "listing", "-"}, "no reply").status, kRefused);
}

TEST_F(PrinterReplies, ACaptureMayBeginAnywhereInTheReply) {
    for (const std::string start : {"", "\r\n\f", "@PJL\r\n"}) {
        Report(start + "VOLUME TOTAL SIZE FREE SPACE LOCATION LABEL STATUS\r\n0: 10 5 DISK SYS READ-WRITE\r\n"
                       "1: 10 5 RAM ? READ-WRITE\r\n");
        EXPECT_EQ(Saved("Storage", "Workshop.xml").size(), 2u) << start;
    }
    Report("volume total size free space location label status\n0: 10 5 DISK SYS READ-WRITE\n");
    EXPECT_THAT(Run({"--printer", "Workshop", "storage", "report", "-"}, "Dear Sirs").errors,
                HasSubstr("line 1 of the report"));
    EXPECT_THAT(Run({"--printer", "Workshop", "storage", "report", "-"}, "[]").errors,
                HasSubstr("no list \"storages\""));
}
