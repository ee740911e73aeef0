// The print jobs stored on a printer: written one by one, read back as one array.

#include "process_stop.h"
#include "record_fields.h"
#include "saving_host_test.h"

#include <memory>

namespace {

using Jobs = std::unique_ptr<JobRecord[], void (*)(JobRecord*)>;

JobRecord Job(const std::string& name, const std::string& id) {
    JobRecord job{};
    SetField(job.id, id);
    SetField(job.name, name);
    SetField(job.type, "proof");
    SetField(job.copies, "2");
    SetField(job.stored, "disk");
    SetField(job.checked, "1");
    return job;
}

Record JobItem(const char* name, const char* id, const char* checked = "0") {
    return {{"Name", name}, {"ID", id}, {"Type", "proof"}, {"Copies", "2"}, {"Stored", "disk"}, {"checked", checked}};
}

uint32_t Write(const JobRecord& job) { return WriteJobList(&job); }

class JobList : public SavingHostTest {
protected:
    Jobs Read() { return Jobs(GetJobs(&m_nJobs), DelJobList); }

    /// Opens a job list afresh.
    void OpenJobs(const std::string& items) {
        CloseAll();
        OpenMain("<Jobs>" + items + "</Jobs>");
    }

    int32_t m_nJobs = -1;
};

using JobListDeathTest = JobList;

} // namespace

TEST_F(JobList, AJobBecomesAnItemWithSixAttributesInOrder) {
    OpenMain("<Jobs/>");
    EXPECT_EQ(Write(Job("Letter", "7")), 1u);
    EXPECT_EQ(SavedItems("Jobs"), (Items{{{"Name", "Letter"},
                                          {"ID", "7"},
                                          {"Type", "proof"},
                                          {"Copies", "2"},
                                          {"Stored", "disk"},
                                          {"checked", "0"}}}));
}

TEST_F(JobList, ANewJobIsNotTickedWhateverItsRecordSays) {
    OpenMain("<Jobs/>");
    JobRecord job = Job("Letter", "7");
    SetField(job.checked, "1");
    Write(job);
    EXPECT_EQ(GetAttrValue("Jobs", "checked"), "0");
}

TEST_F(JobList, JobsComeBackInDocumentOrder) {
    OpenMain("<Jobs/>");
    Write(Job("Letter", "7"));
    Write(Job("Form", "3"));
    const Jobs jobs = Read();
    ASSERT_EQ(m_nJobs, 2);
    ASSERT_NE(jobs, nullptr);
    EXPECT_STREQ(jobs[0].name, "Letter");
    EXPECT_STREQ(jobs[0].id, "7");
    EXPECT_STREQ(jobs[0].type, "proof");
    EXPECT_STREQ(jobs[0].copies, "2");
    EXPECT_STREQ(jobs[0].stored, "disk");
    EXPECT_STREQ(jobs[0].checked, "0");
    EXPECT_STREQ(jobs[1].name, "Form");
    EXPECT_STREQ(jobs[1].id, "3");
    EXPECT_STREQ(jobs[1].checked, "0");
}

TEST_F(JobList, TheSameJobIsNotAddedTwice) {
    OpenMain("<Jobs/>");
    Write(Job("Letter", "7"));
    uint32_t result = 0;
    EXPECT_TRUE(Saves([&] { result = Write(Job("Letter", "7")); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(SavedItems("Jobs"), (Items{JobItem("Letter", "7")}));
}

TEST_F(JobList, AJobThatWasTickedSinceIsAddedAgainUnticked) {
    OpenMain("<Jobs/>");
    Write(Job("Letter", "7"));
    WriteAttr("Jobs", "checked", "1");
    Write(Job("Letter", "7"));
    EXPECT_EQ(SavedItems("Jobs"), (Items{JobItem("Letter", "7", "1"), JobItem("Letter", "7", "0")}));
}

TEST_F(JobList, EmptyFieldsAreWrittenAsEmptyValuesAndComeBack) {
    OpenMain("<Jobs/>");
    Write(JobRecord{});
    EXPECT_EQ(SavedItems("Jobs"),
              (Items{{{"Name", ""}, {"ID", ""}, {"Type", ""}, {"Copies", ""}, {"Stored", ""}, {"checked", "0"}}}));
    const Jobs jobs = Read();
    ASSERT_EQ(m_nJobs, 1);
    EXPECT_STREQ(jobs[0].name, "");
    EXPECT_STREQ(jobs[0].checked, "0");
}

TEST_F(JobList, FieldsOfFullWidthComeBackWhole) {
    OpenMain("<Jobs/>");
    const std::string name(99, 'n');
    JobRecord job = Job(name, "123456789");
    SetField(job.type, "typetypet");
    SetField(job.copies, "999999999");
    SetField(job.stored, "storedsto");
    Write(job);
    const Jobs jobs = Read();
    ASSERT_EQ(m_nJobs, 1);
    EXPECT_EQ(jobs[0].name, name);
    EXPECT_STREQ(jobs[0].id, "123456789");
    EXPECT_STREQ(jobs[0].type, "typetypet");
    EXPECT_STREQ(jobs[0].copies, "999999999");
    EXPECT_STREQ(jobs[0].stored, "storedsto");
}

TEST_F(JobList, ATickOfFourBytesFits) {
    OpenJobs("<Item Name='n' ID='1' Type='t' Copies='2' Stored='s' checked='true'/>");
    const Jobs jobs = Read();
    ASSERT_EQ(m_nJobs, 1);
    EXPECT_STREQ(jobs[0].checked, "true");
}

TEST_F(JobListDeathTest, AJobNameOf100BytesStopsTheProcess) {
    OpenJobs("<Item Name='" + std::string(100, 'n') + "' ID='1' Type='t' Copies='2' Stored='s' checked='0'/>");
    EXPECT_DEATH(GetJobs(&m_nJobs), IsStopLine("name", 100, 100));
}

TEST_F(JobListDeathTest, AValueOfTenBytesStopsTheProcess) {
    const std::string value = "0123456789";
    OpenJobs("<Item Name='n' ID='" + value + "' Type='t' Copies='2' Stored='s' checked='0'/>");
    EXPECT_DEATH(GetJobs(&m_nJobs), IsStopLine("ID", 10, 10));
    OpenJobs("<Item Name='n' ID='1' Type='" + value + "' Copies='2' Stored='s' checked='0'/>");
    EXPECT_DEATH(GetJobs(&m_nJobs), IsStopLine("Type", 10, 10));
    OpenJobs("<Item Name='n' ID='1' Type='t' Copies='" + value + "' Stored='s' checked='0'/>");
    EXPECT_DEATH(GetJobs(&m_nJobs), IsStopLine("Copies", 10, 10));
    OpenJobs("<Item Name='n' ID='1' Type='t' Copies='2' Stored='" + value + "' checked='0'/>");
    EXPECT_DEATH(GetJobs(&m_nJobs), IsStopLine("Stored", 10, 10));
}

TEST_F(JobListDeathTest, ATickOfFiveBytesStopsTheProcess) {
    OpenJobs("<Item Name='n' ID='1' Type='t' Copies='2' Stored='s' checked='false'/>");
    EXPECT_DEATH(GetJobs(&m_nJobs), IsStopLine("checked", 5, 5));
}

TEST_F(JobList, WithoutJobsTheArrayIsNullAndTheCountZero) {
    OpenMain("<Jobs/>");
    EXPECT_EQ(GetJobs(&m_nJobs), nullptr);
    EXPECT_EQ(m_nJobs, 0);
}

TEST_F(JobList, WithoutTheContainerTheArrayIsNullAndTheCountZero) {
    OpenMain("<Files/>");
    EXPECT_EQ(GetJobs(&m_nJobs), nullptr);
    EXPECT_EQ(m_nJobs, 0);
}

TEST_F(JobList, WithoutAnOpenDocumentTheArrayIsNullAndTheCountZero) {
    Open();
    EXPECT_EQ(GetJobs(&m_nJobs), nullptr);
    EXPECT_EQ(m_nJobs, 0);
    EXPECT_EQ(Write(Job("Letter", "7")), 1u);
    EXPECT_FALSE(std::filesystem::exists(UserMainPath()));
}

TEST_F(JobList, TheCountMayBeLeftOut) {
    OpenMain("<Jobs/>");
    EXPECT_EQ(GetJobs(nullptr), nullptr);
    Write(Job("Letter", "7"));
    const Jobs jobs(GetJobs(nullptr), DelJobList);
    ASSERT_NE(jobs, nullptr);
    EXPECT_STREQ(jobs[0].name, "Letter");
}

TEST_F(JobList, ReleasingNullDoesNothing) {
    DelJobList(nullptr);
    OpenMain("<Jobs/>");
    DelJobList(GetJobs(&m_nJobs));
    EXPECT_EQ(m_nJobs, 0);
}

TEST_F(JobList, ValuesAreTakenByPosition) {
    OpenJobs("<Item a='1' ID='2' c='3' d='4' e='5' f='6'/>");
    const Jobs jobs = Read();
    ASSERT_EQ(m_nJobs, 1);
    EXPECT_STREQ(jobs[0].name, "1");
    EXPECT_STREQ(jobs[0].id, "2");
    EXPECT_STREQ(jobs[0].type, "3");
    EXPECT_STREQ(jobs[0].copies, "4");
    EXPECT_STREQ(jobs[0].stored, "5");
    EXPECT_STREQ(jobs[0].checked, "6");
}

TEST_F(JobList, AttributesInAnotherOrderFillTheWrongFields) {
    OpenJobs("<Item ID='7' Name='Letter' Type='t' Copies='2' Stored='s' checked='0'/>");
    const Jobs jobs = Read();
    ASSERT_EQ(m_nJobs, 1);
    EXPECT_STREQ(jobs[0].name, "7");
    EXPECT_STREQ(jobs[0].id, "Letter");
}

TEST_F(JobList, MissingAttributesComeBackEmptyAndFurtherOnesAreLeftOut) {
    OpenJobs("<Item Name='Letter' ID='7'/><Item Name='Form' ID='8' Type='t' Copies='2' Stored='s' checked='0' "
             "Note='a note of more than ten bytes'/>");
    const Jobs jobs = Read();
    ASSERT_EQ(m_nJobs, 2);
    EXPECT_STREQ(jobs[0].name, "Letter");
    EXPECT_STREQ(jobs[0].id, "7");
    EXPECT_STREQ(jobs[0].type, "");
    EXPECT_STREQ(jobs[0].copies, "");
    EXPECT_STREQ(jobs[0].stored, "");
    EXPECT_STREQ(jobs[0].checked, "");
    EXPECT_STREQ(jobs[1].checked, "0");
}

TEST_F(JobList, JobsOfOneIdAllComeBackAsTheFirstOfIt) {
    OpenMain("<Jobs/>");
    Write(Job("Letter", "7"));
    Write(Job("Form", "8"));
    Write(Job("Other", "7"));
    const Jobs jobs = Read();
    ASSERT_EQ(m_nJobs, 3);
    EXPECT_STREQ(jobs[0].name, "Letter");
    EXPECT_STREQ(jobs[1].name, "Form");
    EXPECT_STREQ(jobs[2].name, "Letter");
}

TEST_F(JobList, AnItemWithoutAnIdIsNoJob) {
    OpenJobs("<Item Name='no'/><Item Name='yes' ID='1'/><Item Name='no' id='2'/>");
    const Jobs jobs = Read();
    ASSERT_EQ(m_nJobs, 1);
    EXPECT_STREQ(jobs[0].name, "yes");
}

TEST_F(JobList, JobsBehindACommentAreLeftOut) {
    OpenJobs("<Item Name='first' ID='1'/><!-- note --><Item Name='second' ID='2'/>");
    const Jobs jobs = Read();
    ASSERT_EQ(m_nJobs, 1);
    EXPECT_STREQ(jobs[0].name, "first");
}

TEST_F(JobList, ACommentAmongTheJobsKeepsNewOnesOut) {
    OpenJobs("<Item Name='first' ID='1'/><!-- note -->");
    EXPECT_EQ(Write(Job("Letter", "7")), 1u);
    EXPECT_EQ(SavedItems("Jobs"), (Items{{{"Name", "first"}, {"ID", "1"}}}));
}

TEST_F(JobList, ALongListComesBackWhole) {
    std::string items;
    for (int i = 0; i < 2000; ++i) {
        items += "<Item Name='job " + std::to_string(i) + "' ID='" + std::to_string(i) + "'/>";
    }
    OpenJobs(items);
    const Jobs jobs = Read();
    ASSERT_EQ(m_nJobs, 2000);
    for (int i = 0; i < 2000; ++i) {
        ASSERT_EQ(jobs[static_cast<std::size_t>(i)].name, "job " + std::to_string(i));
    }
}

TEST_F(JobList, AJobThatXmlCannotHoldIsNotWrittenAndTheDocumentIsSaved) {
    OpenMain("<Jobs/>");
    uint32_t result = 0;
    EXPECT_TRUE(Saves([&] { result = Write(Job("a\x01", "7")); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(SavedItems("Jobs"), Items{});
}

TEST_F(JobList, ANullJobDoesNothingAtAll) {
    OpenMain("<Jobs/>");
    uint32_t result = 0;
    EXPECT_FALSE(Saves([&] { result = WriteJobList(nullptr); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(GetJobs(&m_nJobs), nullptr);
}

TEST_F(JobList, NothingElseChanges) {
    OpenMain("<Files><Item FileID='a'/></Files><Jobs/><More><Jobs><Item Name='second'/></Jobs></More>");
    Write(Job("Letter", "7"));
    EXPECT_EQ(SavedItems("Files"), (Items{{{"FileID", "a"}}}));
    const std::string saved = UserMainText();
    EXPECT_NE(saved.find("second"), std::string::npos) << saved;
    EXPECT_EQ(saved.find("Letter"), saved.rfind("Letter")) << "the second list was written as well";
}

TEST_F(JobList, WithoutTheContainerTheDocumentIsSavedUnchanged) {
    OpenMain("<Files/>");
    uint32_t result = 0;
    EXPECT_TRUE(Saves([&] { result = Write(Job("Letter", "7")); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(UserMainText().find("Letter"), std::string::npos) << UserMainText();
}

TEST_F(JobList, WithoutAPerUserCopyTheJobStaysInMemory) {
    InstallMain(Document("<Jobs/>"));
    const std::string installed = ReadFile(InstalledMainPath());
    Open();
    EXPECT_EQ(Write(Job("Letter", "7")), 1u);
    EXPECT_EQ(GetAttrValue("Jobs", "Name"), "Letter");
    EXPECT_FALSE(std::filesystem::exists(UserMainPath()));
    EXPECT_EQ(ReadFile(InstalledMainPath()), installed);
}

TEST_F(JobList, ThePrintersOwnDocumentHoldsItsJobs) {
    OpenMain("<Jobs/>");
    OpenPrinterWith("Office.xml", "<Jobs/>");
    Write(Job("Letter", "7"));
    EXPECT_EQ(SavedPrinterItems("Office.xml", "Jobs"), (Items{JobItem("Letter", "7")}));
    EXPECT_EQ(SavedItems("Jobs"), Items{});
    Read();
    EXPECT_EQ(m_nJobs, 1);
}

TEST_F(JobList, ReadingSavesNothing) {
    OpenJobs("<Item Name='n' ID='1'/>");
    EXPECT_FALSE(Saves([&] { Read(); }));
}
