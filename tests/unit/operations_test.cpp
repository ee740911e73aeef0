// What the operations under the exports say of what came of them, and that they work on the document that they are
// given.

#include "catalogue/file_records.h"
#include "catalogue/project_files.h"
#include "engine_document.h"
#include "ids/duplicate_id_check.h"
#include "ids/free_id_search.h"
#include "ids/icm_profile_ids.h"
#include "ids/id_validation.h"
#include "jobs/job_list.h"
#include "nodes/attribute_values.h"
#include "nodes/copy_operations.h"
#include "nodes/generic_writers.h"
#include "storage/partition_copy.h"
#include "storage/partitions.h"
#include "storage/send_space.h"
#include "storage/storage_devices.h"
#include "store/module_state.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace {

const char* const kTwoFiles = "<r><Files><Item FileID=\"a\" ID=\"1\" Type=\"2\" LocalPath=\"x\" checked=\"1\"/>"
                              "<Item FileID=\"b\" ID=\"1\" Type=\"2\" LocalPath=\"y\" checked=\"1\"/></Files>"
                              "<Property><Item FileID=\"a\"/></Property></r>";

/// A document that is not the current one.
class COtherDocument : public CEngineDocument {
public:
    explicit COtherDocument(const std::string& xml) : CEngineDocument(xml) { State().currentDocument = nullptr; }
};

} // namespace

TEST(AddingAProjectFile, SaysWhetherItWasAddedWasThereOrHadNoList) {
    FileItem file{};
    std::strcpy(file.FileID, "1");
    COtherDocument document("<r><Files/></r>");
    EXPECT_EQ(AddProjectFile(&document.Object(), file).m_what, What::Done);
    EXPECT_EQ(AddProjectFile(&document.Object(), file).m_what, What::AlreadyThere);
    COtherDocument without("<r/>");
    EXPECT_EQ(AddProjectFile(&without.Object(), file).m_what, What::NoContainer);
    EXPECT_EQ(AddProjectFile(nullptr, file).m_what, What::NoDocument);
    COtherDocument withComment("<r><Files><!--c--></Files></r>");
    const COutcome failed = AddProjectFile(&withComment.Object(), file);
    EXPECT_EQ(failed.m_what, What::Failed);
    EXPECT_EQ(failed.m_reason.m_kind, ReasonKind::Refused);
    EXPECT_EQ(failed.m_reason.m_strWords, "a child of the container has no attributes");
}

TEST(AddingAJob, SaysWhetherItWasAddedWasThereOrHadNoList) {
    JobRecord job{};
    std::strcpy(job.id, "1");
    COtherDocument document("<r><Jobs/></r>");
    EXPECT_EQ(AddJob(&document.Object(), job).m_what, What::Done);
    EXPECT_EQ(AddJob(&document.Object(), job).m_what, What::AlreadyThere);
    EXPECT_EQ(AddJob(nullptr, job).m_what, What::NoDocument);
    COtherDocument without("<r/>");
    EXPECT_EQ(AddJob(&without.Object(), job).m_what, What::NoContainer);
}

TEST(AddingATestFileName, SaysWhetherItWasAddedOrWasThere) {
    COtherDocument document("<r><Names/></r>");
    EXPECT_EQ(AddTestFileName(&document.Object(), "Names", "1", "a").m_what, What::Done);
    EXPECT_EQ(AddTestFileName(&document.Object(), "Names", "1", "a").m_what, What::AlreadyThere);
    EXPECT_EQ(AddTestFileName(&document.Object(), "none", "1", "a").m_what, What::NoContainer);
}

TEST(WritingAValue, SaysWhetherThereWasOneToWrite) {
    COtherDocument document("<r><A><i V=\"x\"/></A></r>");
    EXPECT_EQ(WriteValue(&document.Object(), "A", "V", "y").m_what, What::Done);
    EXPECT_EQ(WriteValue(&document.Object(), "A", "W", "y").m_what, What::NoSuchRow);
    EXPECT_EQ(WriteValue(&document.Object(), "B", "V", "y").m_what, What::NoContainer);
    EXPECT_EQ(CopyValue(&document.Object(), "A", "B", "V").m_what, What::NoContainer);
    const COutcome refused = WriteValue(&document.Object(), "A", "V", "\x01");
    EXPECT_EQ(refused.m_what, What::Failed);
    EXPECT_EQ(refused.m_reason.m_kind, ReasonKind::Refused);
}

TEST(ReadingProjectFiles, SaysWhetherTheListIsWhole) {
    COtherDocument whole("<r><Files><Item FileID=\"1\"/></Files></r>");
    EXPECT_TRUE(CProjectFiles(&whole.Object()).Outcome());
    COtherDocument cut("<r><Files><Item FileID=\"1\" Component=\"c\"/><!--c--><Item FileID=\"2\"/></Files></r>");
    CProjectFiles files(&cut.Object());
    EXPECT_EQ(files.Outcome().m_what, What::Failed);
    ProjectFile file;
    ASSERT_TRUE(files.Next(file));
    EXPECT_EQ(file.fileId, "1");
    EXPECT_EQ(file.component, "c");
    EXPECT_FALSE(files.Next(file));
}

TEST(RecordingAPartition, RefusesANumberThatIsTooLongAndRecordsNothing) {
    COtherDocument document("<r><CurrentDisk/><DefaultDisk/></r>");
    PartitionRecord partition{};
    partition.size = std::numeric_limits<int64_t>::max();
    const PartitionRecorded recorded = RecordPartition(&document.Object(), partition, Medium::Disk);
    EXPECT_STREQ(recorded.m_pTooLong, "Size");
    EXPECT_EQ(recorded.m_nLength, 16u);
    EXPECT_EQ(recorded.m_nRoom, 15u);
    EXPECT_EQ(document.Text("CurrentDisk"), "<CurrentDisk/>");
    partition.percent = std::numeric_limits<int32_t>::max();
    const PartitionRecorded both = RecordPartition(&document.Object(), partition, Medium::Disk);
    EXPECT_STREQ(both.m_pTooLong, "Size") << "the first of two";
    EXPECT_EQ(both.m_nLength, 16u);
}

TEST(RecordingAPartition, SaysWhatCameOfEachLayout) {
    COtherDocument document("<r><CurrentDisk/></r>");
    PartitionRecord partition{};
    partition.name = "P";
    const PartitionRecorded recorded = RecordPartition(&document.Object(), partition, Medium::Disk);
    EXPECT_TRUE(recorded.m_current);
    EXPECT_EQ(recorded.m_default.m_what, What::NoContainer);
    EXPECT_EQ(recorded.m_pTooLong, nullptr);
}

TEST(CopyingPartitions, LeavesOutWhatIsMissingWhereThatIsAskedFor) {
    const char* const xml = "<r><CurrentDisk><Item Partition=\"P\" Size=\"7\"/></CurrentDisk>"
                            "<DefaultDisk><Item Partition=\"P\" Size=\"1\" Percent=\"50\"/></DefaultDisk></r>";
    COtherDocument asHosts(xml);
    EXPECT_EQ(CopyPartitionShares(&asHosts.Object(), MissingValue::TakesName).m_nCopied, 2u);
    EXPECT_EQ(ReadValue(&asHosts.Object(), "DefaultDisk", "Percent"), "P");
    COtherDocument careful(xml);
    const PartitionCopy copy = CopyPartitionShares(&careful.Object(), MissingValue::StaysOut);
    EXPECT_EQ(copy.m_nCopied, 1u);
    EXPECT_EQ(copy.m_nMissing, 1u);
    EXPECT_EQ(ReadValue(&careful.Object(), "DefaultDisk", "Percent"), "50");
    EXPECT_EQ(ReadValue(&careful.Object(), "DefaultDisk", "Size"), "7");
}

TEST(CopyingPartitions, CountsWhatTheDefaultLayoutHasNoPlaceFor) {
    COtherDocument document("<r><CurrentDisk><Item Partition=\"P\" Size=\"7\" Percent=\"9\" Image=\"3\"/></CurrentDisk>"
                            "<DefaultDisk><Item Partition=\"P\" Size=\"1\"/></DefaultDisk>"
                            "<CurrentChosePartition><Item Name=\"P\"/></CurrentChosePartition></r>");
    const PartitionCopy shares = CopyPartitionShares(&document.Object(), MissingValue::StaysOut);
    EXPECT_EQ(shares.m_nCopied, 1u);
    EXPECT_EQ(shares.m_nMissing, 0u);
    EXPECT_EQ(shares.m_nNoTarget, 1u);
    const PartitionCopy image = CopyChosenImage(&document.Object(), MissingValue::StaysOut);
    EXPECT_EQ(image.m_nCopied, 0u);
    EXPECT_EQ(image.m_nNoTarget, 1u);
    COtherDocument none("<r/>");
    EXPECT_EQ(CopyChosenImage(&none.Object(), MissingValue::StaysOut).m_nMissing, 1u);
}

TEST(RecordingVolumes, CountsThemAndKeepsTheFirstFailure) {
    VolumeRecord volumes[4]{};
    std::strcpy(volumes[1].volume, "1");
    std::strcpy(volumes[2].volume, "1");
    std::strcpy(volumes[3].volume, "\x01");
    StorageRecord storage{};
    storage.volumes = volumes;
    storage.volumeCount = 4;
    const PrinterInfo info{&storage, 1};
    COtherDocument document("<r><Storage/></r>");
    const CRowsAdded rows = RecordVolumes(&document.Object(), info);
    EXPECT_EQ(rows.m_nAdded, 2u);
    EXPECT_EQ(rows.m_nAlreadyThere, 1u);
    EXPECT_EQ(rows.m_failure.m_reason.m_kind, ReasonKind::Refused);
}

TEST(RecordingSeveralRows, CountsThemAndKeepsTheFirstFailure) {
    COtherDocument document("<r><SendProject/></r>");
    const SendSpaceRecord records[] = {{"1", "", "", ""}, {"1", "", "", ""}, {"\x01", "", "", ""}};
    const CRowsAdded rows = RecordSendSpace(&document.Object(), records, 3);
    EXPECT_EQ(rows.m_nAdded, 1u);
    EXPECT_EQ(rows.m_nAlreadyThere, 1u);
    EXPECT_EQ(rows.m_failure.m_reason.m_kind, ReasonKind::Refused);
}

TEST(CheckingIds, ComputesAndShowsNothing) {
    COtherDocument document(kTwoFiles);
    const EditedIdCheck check = CheckEditedId(&document.Object());
    EXPECT_EQ(check.m_strId, "1");
    EXPECT_EQ(check.m_kind, FileKind::Type2);
    EXPECT_EQ(check.m_nUsers, 2);
    EXPECT_TRUE(check.IsClash());
    const std::optional<IdClash> clash = FindTickedClash(&document.Object());
    ASSERT_TRUE(clash.has_value());
    EXPECT_EQ(clash->m_kind, FileKind::Type2);
    EXPECT_EQ(clash->m_strId, "1");
    EXPECT_FALSE(FindTickedClash(nullptr).has_value());
}

TEST(CheckingIds, CountsNoUsersOfATypeThatIsNotChecked) {
    COtherDocument document("<r><Files><Item FileID=\"a\" ID=\"7\" Type=\"6\" LocalPath=\"x\"/></Files>"
                            "<Property><Item FileID=\"a\"/></Property></r>");
    const EditedIdCheck check = CheckEditedId(&document.Object());
    EXPECT_FALSE(check.m_kind.has_value());
    EXPECT_EQ(check.m_nId, 7);
    EXPECT_EQ(check.m_nUsers, 0);
    EXPECT_FALSE(check.IsClash());
}

TEST(ReadingIcmSlots, MarksThoseOfListedProfilesOfTheKindAndNoOther) {
    COtherDocument document(
        "<r><RGBSource><Item IDArray=\"00110\"/></RGBSource><Files>"
        "<Item FileID=\"a\" ID=\"1\" ProfileType=\"0\"/><Item FileID=\"2\" ID=\"2\" ProfileType=\"3\"/>"
        "<Item FileID=\"b\" ID=\"5\" ProfileType=\"0\"/><Item FileID=\"c\" ID=\"6\" ProfileType=\"0\"/>"
        "</Files></r>");
    EXPECT_EQ(ReadIcmSlots(&document.Object(), 0), "20112");
    EXPECT_EQ(ReadIcmSlots(&document.Object(), 1), std::nullopt);
}

TEST(SearchingFreeIds, GoesOnFromTheLastOneAsANewSearchWould) {
    COtherDocument document("<r><Files><Item FileID=\"a\" ID=\"1\" Type=\"5\"/></Files></r>");
    CFreeIdSearch search(&document.Object(), 0);
    for (int expected : {0, 2, 3}) {
        EXPECT_EQ(search.Find(), expected);
        EXPECT_EQ(CFreeIdSearch(&document.Object(), 0).Find(), expected);
        FileItem file{};
        std::strcpy(file.FileID, std::to_string(expected).c_str());
        std::strcpy(file.ID, std::to_string(expected).c_str());
        std::strcpy(file.Type, "5");
        ASSERT_TRUE(AddProjectFile(&document.Object(), file));
    }
}

TEST(CopyingARow, SaysWhenTheTargetLacksIt) {
    COtherDocument document("<r><A><i K=\"1\" V=\"x\"/></A><B><i K=\"2\" V=\"y\"/></B></r>");
    EXPECT_EQ(CopyRow(&document.Object(), "A", "B", "K", "1").m_what, What::NoSuchRow);
    EXPECT_EQ(CopyRow(&document.Object(), "A", "none", "K", "1").m_what, What::NoContainer);
}

TEST(Clearing, TellsAnEmptyContainerFromNone) {
    COtherDocument document("<r><A><i/></A></r>");
    EXPECT_EQ(ClearContainer(&document.Object(), "A").m_what, What::Done);
    EXPECT_EQ(ClearContainer(&document.Object(), "A").m_what, What::NoSuchRow);
    EXPECT_EQ(ClearContainer(&document.Object(), "B").m_what, What::NoContainer);
}
