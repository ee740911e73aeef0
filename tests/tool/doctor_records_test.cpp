// doctor: files, IDs, profile slots, jobs, partitions and settings.

#include "doctor_test.h"

using ::testing::HasSubstr;

class DoctorFiles : public DoctorTest {};

TEST_F(DoctorFiles, ASoundRowGivesNoError) {
    ExpectNoFinding(Files(File("1", "5", "0")), "file-row-order");
    EXPECT_EQ(Run({"--json", "doctor", UserFile("x.xml", Document(Files(File("1", "5", "0"))))}).Json()["errors"], 0);
}

TEST_F(DoctorFiles, AFileThatIsGoneOrChangedIsAWarning) {
    ExpectFinding(Files(File("1", "5", "0")), "local-file-gone", "warning", "Files", "item 1 (FileID \"1\")");
    std::string row = File("1", "5", "0");
    row.replace(row.find("/f/1"), 4, UserFile("there", "three bytes and more"));
    ExpectFinding(Files(row), "local-file-changed", "warning", "Files", "item 1 (FileID \"1\")");
}

TEST_F(DoctorFiles, TwoFilesForOnePathOfThePrinterAreAWarning) {
    ExpectFinding(Files(File("1", "5", "0") + File("2", "5", "1")), "target-taken-twice", "warning", "Files",
                  "item 2 (FileID \"2\")");
}

TEST_F(DoctorFiles, AVolumeThatIsNotThereIsAWarning) {
    const std::string storage = "<Storage><Item StorageName='d' Volume='1:'/></Storage>";
    ExpectFinding(storage + Files(File("1", "5", "0")), "volume-unknown", "warning", "Files", "item 1 (FileID \"1\")");
}

TEST_F(DoctorFiles, MoreFreeThanThereIsIsAWarning) {
    ExpectFinding("<Storage><Item StorageName='d' Volume='1:' TotalSpace='5' FreeSpace='6'/></Storage>",
                  "free-space-impossible", "warning", "Storage", "item 1 (Volume \"1:\")");
}

TEST_F(DoctorFiles, AShortRowIsAnError) {
    ExpectFinding(Files("<Item FileID='1' Component='' ID='0' Type='5'/>"), "file-row-short", "error", "Files",
                  "item 1 (FileID \"1\")");
}

TEST_F(DoctorFiles, ARowOutOfOrderIsAnError) {
    ExpectFinding(Files("<Item FileID='1' ID='0' Component='' Type='5' Volume='' Path='' LocalPath='' Size='' "
                        "CreateDate='' checked='0'/>"),
                  "file-row-order", "error", "Files", "item 1 (FileID \"1\")");
}

TEST_F(DoctorFiles, ARowWithoutAFileIDIsAnError) {
    ExpectFinding(Files("<Item Type='5'/>"), "file-without-key", "error", "Files", "item 1");
}

TEST_F(DoctorFiles, ARepeatedFileIDIsAnError) {
    ExpectFinding(Files(File("1", "5", "0") + File("1", "5", "1")), "key-repeated", "error", "Files",
                  "item 2 (FileID \"1\")");
}

TEST_F(DoctorFiles, AValueThatStopsAHostIsAnError) {
    ExpectFinding(Files(File("1", "2", std::string(256, '1'))), "field-too-long", "error", "Files",
                  "item 1 (FileID \"1\")");
}

TEST_F(DoctorFiles, ALongDetailIsAWarningButACommentMayBeLong) {
    const std::string text(256, 'a');
    ExpectFinding(Files(File("1", "5", "0", false, "FontStyle='" + text + "'")), "value-too-long", "warning", "Files",
                  "item 1 (FileID \"1\")");
    ExpectNoFinding(Files(File("1", "5", "0", false, "Comment='" + text + "'")), "value-too-long");
}

TEST_F(DoctorFiles, AnUnknownTypeIsAWarning) {
    ExpectFinding(Files(File("1", "9", "0")), "unknown-type", "warning", "Files", "item 1 (FileID \"1\")");
}

TEST_F(DoctorFiles, ATickThatIsNeitherZeroNorOneIsAWarning) {
    std::string row = File("1", "5", "0");
    row.replace(row.find("checked='0'"), 11, "checked='x'");
    ExpectFinding(Files(row), "tick-is-no-tick", "warning", "Files", "item 1 (FileID \"1\")");
}

class DoctorIds : public DoctorTest {
protected:
    static std::string Both() { return "item 1 (FileID \"1\"), item 2 (FileID \"2\")"; }
};

TEST_F(DoctorIds, AClashOfFontsIsAWarningUnlessBothAreTicked) {
    ExpectFinding(Files(File("1", "5", "7") + File("2", "1", "7", true)), "id-clash", "warning", "Files", Both());
    ExpectFinding(Files(File("1", "5", "7", true) + File("2", "1", "7", true)), "id-clash", "error", "Files", Both());
}

TEST_F(DoctorIds, AClashOfType8FilesIsSeenAlthoughSendingDoesNotSeeIt) {
    const std::string rows = Files(File("1", "8", "7", true) + File("2", "8", "7", true));
    ExpectFinding(rows, "id-clash", "error", "Files", Both());
    EXPECT_THAT((*Find(FindingsIn(Document(rows)), "id-clash"))["consequence"].get<std::string>(),
                HasSubstr("does not look at Type 8"));
}

TEST_F(DoctorIds, GroupsDoNotClashWithEachOther) {
    ExpectNoFinding(Files(File("1", "5", "7") + File("2", "2", "7") + File("3", "8", "7") + File("4", "6", "7")),
                    "id-clash");
}

TEST_F(DoctorIds, AnIDThatIsNoPlainNumberIsAWarning) {
    for (const char* const id : {"", "07", "-1", "a", "1,2", "32768"}) {
        ExpectFinding(Files(File("1", "2", id)), "id-is-no-number", "warning", "Files", "item 1 (FileID \"1\")");
    }
    ExpectNoFinding(Files(File("1", "2", "32767")), "id-is-no-number");
}

class DoctorProfiles : public DoctorTest {
protected:
    static std::string Slots(const std::string& array) {
        return "<RGBSource><Item IDArray='" + array + "'/></RGBSource>";
    }
};

TEST_F(DoctorProfiles, ASlotThatIsTakenTwiceIsAnError) {
    ExpectFinding(Slots("1111") + Files(Profile("1", "2") + Profile("2", "2")), "slot-taken-twice", "error", "Files",
                  "item 2 (FileID \"2\")");
}

TEST_F(DoctorProfiles, ASlotOutOfRangeIsAnError) {
    for (const char* const slot : {"0", "5", "x", "99999999999"}) {
        ExpectFinding(Slots("1111") + Files(Profile("1", slot)), "slot-out-of-range", "error", "Files",
                      "item 1 (FileID \"1\")");
    }
    ExpectNoFinding(Slots("1111") + Files(Profile("1", "4")), "slot-out-of-range");
}

TEST_F(DoctorProfiles, ASlotThatThePrinterUsesIsANote) {
    ExpectFinding(Slots("2111") + Files(Profile("1", "1")), "slot-in-use", "note", "Files", "item 1 (FileID \"1\")");
}

TEST_F(DoctorProfiles, AProfileOfNoKindIsAWarning) {
    ExpectFinding(Files(File("1", "6", "1")), "profile-without-slots", "warning", "Files", "item 1 (FileID \"1\")");
}

TEST_F(DoctorProfiles, SlotsThatAreMissingOrInAnUnknownStateAreAWarning) {
    ExpectFinding("<RGBSource/>", "no-slots", "warning", "RGBSource");
    ExpectFinding(Slots("113"), "slot-state-unknown", "warning", "RGBSource");
}

class DoctorJobs : public DoctorTest {
protected:
    static std::string Job(const std::string& name, const std::string& id) {
        return "<Item Name='" + name + "' ID='" + id + "' Type='t' Copies='1' Stored='0:' checked='0'/>";
    }
    static std::string Jobs(const std::string& rows) { return "<Jobs>" + rows + "</Jobs>"; }
};

TEST_F(DoctorJobs, AFieldThatIsTooLongIsAnError) {
    ExpectFinding(Jobs(Job("n", "1234567890")), "job-field-too-long", "error", "Jobs", "item 1 (ID \"1234567890\")");
    ExpectFinding(Jobs(Job(std::string(100, 'n'), "1")), "job-field-too-long", "error", "Jobs", "item 1 (ID \"1\")");
    ExpectNoFinding(Jobs(Job(std::string(99, 'n'), "123456789")), "job-field-too-long");
}

TEST_F(DoctorJobs, AJobOutOfOrderIsAnError) {
    ExpectFinding(Jobs("<Item ID='1' Name='n' Type='t' Copies='1' Stored='0:' checked='0'/>"), "job-order", "error",
                  "Jobs", "item 1 (ID \"1\")");
}

TEST_F(DoctorJobs, AJobWithoutAnIDIsAnError) {
    ExpectFinding(Jobs("<Item Name='n'/>"), "job-without-id", "error", "Jobs", "item 1");
}

TEST_F(DoctorJobs, ARepeatedIDIsAnError) {
    ExpectFinding(Jobs(Job("a", "1") + Job("b", "1")), "job-id-repeated", "error", "Jobs", "item 2 (ID \"1\")");
}

class DoctorPartitions : public DoctorTest {
protected:
    static std::string Layout(const std::string& name, const std::string& rows) {
        return "<" + name + ">" + rows + "</" + name + ">";
    }
    static std::string Partition(const std::string& name) {
        return "<Item Image='0' Partition='" + name + "' Size='1' Percent='1'/>";
    }
};

TEST_F(DoctorPartitions, APartitionOfOneLayoutOnlyIsAWarning) {
    ExpectFinding(Layout("CurrentDisk", Partition("A")) + Layout("DefaultDisk", ""), "partition-unpaired", "warning",
                  "CurrentDisk", "item 1 (Partition \"A\")");
    ExpectFinding(Layout("CurrentFlash", "") + Layout("DefaultFlash", Partition("A")), "partition-unpaired", "warning",
                  "DefaultFlash", "item 1 (Partition \"A\")");
}

TEST_F(DoctorPartitions, ARepeatedPartitionIsAWarning) {
    const std::string twice = Partition("A") + Partition("A");
    ExpectFinding(Layout("CurrentDisk", twice) + Layout("DefaultDisk", Partition("A")), "partition-repeated", "warning",
                  "CurrentDisk", "item 2 (Partition \"A\")");
}

TEST_F(DoctorPartitions, AMissingValueIsAWarning) {
    ExpectFinding(Layout("CurrentDisk", "<Item Image='0' Partition='A' Size='1'/>"), "partition-value-missing",
                  "warning", "CurrentDisk", "item 1 (Partition \"A\")");
    ExpectNoFinding(Layout("CurrentFlash", "<Item Image='0' Partition='A' Size='1'/>"), "partition-value-missing");
}

TEST_F(DoctorPartitions, AChosenPartitionThatIsNotThereIsAWarning) {
    ExpectFinding("<CurrentChosePartition><Item Name='B'/></CurrentChosePartition>", "chosen-partition-unknown",
                  "warning", "CurrentChosePartition", "item 1 (Name \"B\")");
}

class DoctorSettings : public DoctorTest {};

TEST_F(DoctorSettings, AValueThatIsNeverCreatedMustBeThere) {
    ExpectFinding("<Property/>", "value-missing", "warning", "Property");
    ExpectFinding("<CurrentChosePartition/>", "value-missing", "warning", "CurrentChosePartition");
}

TEST_F(DoctorSettings, AnEditedFileThatIsNotListedIsANote) {
    ExpectFinding("<Property><Item FileID='3'/></Property>", "edited-file-unknown", "note", "Property");
}

TEST_F(DoctorSettings, MissingSettingsAreAWarning) {
    ExpectFinding("<PCLCurrentSetting><Item CMRESET='1'/></PCLCurrentSetting>", "setting-missing", "warning",
                  "PCLCurrentSetting");
}

TEST_F(DoctorSettings, ASettingThatIsNoNumberIsAWarning) {
    ExpectFinding("<PCLCurrentSetting><Item CMRESET='one'/></PCLCurrentSetting>", "setting-is-no-number", "warning",
                  "PCLCurrentSetting", "CMRESET");
}

TEST_F(DoctorSettings, PercentagesOfMoreThanAHundredAreAWarning) {
    ExpectFinding("<CurrentDisk><Item Image='0' Partition='A' Size='1' Percent='60'/>"
                  "<Item Image='1' Partition='B' Size='1' Percent='50'/></CurrentDisk>",
                  "percentages-over-100", "warning", "CurrentDisk");
}

class DoctorFix : public DoctorTest {};

TEST_F(DoctorFix, MendsWhatHasOneRightAnswer) {
    std::string ticked = File("1", "5", "0");
    ticked.replace(ticked.find("checked='0'"), 11, "checked='x'");
    const std::string broken =
        Document("<!-- kept --><Files>" + ticked + "<!-- gone -->" + File("1", "5", "1") + "</Files>");
    WriteBytes(UserPath(), broken);
    EXPECT_EQ(Run({"doctor", "main", "--fix", "--dry-run"}).status, kNo);
    EXPECT_EQ(ReadBytes(UserPath()), broken);
    EXPECT_EQ(Run({"doctor", "main", "--fix"}).status, kUsage); // there is nobody to ask
    EXPECT_EQ(ReadBytes(UserPath()), broken);
    Run({"doctor", "main", "--fix", "--yes"});
    const auto files = Saved("Files");
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(ValueOf(files[0], "checked"), "0");
    EXPECT_NE(ValueOf(files[1], "FileID"), "1");
    EXPECT_EQ(Saved("Jobs").size(), 0u); // the container is there now
    EXPECT_EQ(Saved("Property"), (std::vector<Record>{{{"FileID", ""}}}));
    Output({"undo"});
    EXPECT_EQ(ReadBytes(UserPath()), broken);
}
