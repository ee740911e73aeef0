// The ticked files of a project as a chain of records, and the release of such a chain.

#include "file_rows.h"
#include "process_stop.h"
#include "record_fields.h"
#include "saving_host_test.h"

#include <cstring>

namespace {

/// The ticked files, with the release of their chain.
struct FileChain {
    FileItem first{};
    int32_t count = 0;

    FileChain() { count = GetFiles(&first); }
    ~FileChain() {
        if (count > 0) {
            for (FileItem link{}, *next = first.next; next != nullptr;) {
                link.next = next;
                next = next->next;
                FreeFileItem(&link);
            }
        }
    }
    FileChain(const FileChain&) = delete;
    FileChain& operator=(const FileChain&) = delete;

    /// The FileIDs of all records, in order.
    std::vector<std::string> FileIds() const {
        std::vector<std::string> ids;
        for (const FileItem* item = count > 0 ? &first : nullptr; item != nullptr; item = item->next) {
            ids.emplace_back(item->FileID);
        }
        return ids;
    }
};

using Ids = std::vector<std::string>;

FileItem FilledItem() {
    FileItem item;
    std::memset(&item, '#', sizeof item);
    return item;
}

/// A file whose `field` has this value.
std::string RowWith(const std::string& field, const std::string& value, const std::string& checked = "1") {
    std::string row = "<Item";
    for (const char* name :
         {"FileID", "Component", "ID", "Type", "Volume", "Path", "LocalPath", "Size", "CreateDate"}) {
        row += std::string(" ") + name + "='" + (field == name ? value : "x") + "'";
    }
    return row + " checked='" + (field == "checked" ? value : checked) + "'/>";
}

class FileRecords : public SavingHostTest {};

using FileRecordsDeathTest = FileRecords;

} // namespace

TEST_F(FileRecords, TheTickedFilesAreChainedInDocumentOrder) {
    OpenMain(Files(FileRow("a", "5", "1", "0") + FileRow("b", "5", "2", "1") + FileRow("c", "5", "3", "1")));
    const FileChain files;
    EXPECT_EQ(files.count, 2);
    EXPECT_STREQ(files.first.FileID, "b");
    ASSERT_NE(files.first.next, nullptr);
    EXPECT_STREQ(files.first.next->FileID, "c");
    EXPECT_EQ(files.first.next->next, nullptr);
}

TEST_F(FileRecords, TheSevenLeadingValuesOfARowFillTheRecord) {
    OpenMain(Files("<Item FileID='1' Component='2' ID='3' Type='4' Volume='5' Path='6' LocalPath='7' Size='8' "
                   "CreateDate='9' checked='1'/>"));
    const FileChain files;
    ASSERT_EQ(files.count, 1);
    EXPECT_STREQ(files.first.FileID, "1");
    EXPECT_STREQ(files.first.Component, "2");
    EXPECT_STREQ(files.first.ID, "3");
    EXPECT_STREQ(files.first.Type, "4");
    EXPECT_STREQ(files.first.Volume, "5");
    EXPECT_STREQ(files.first.Path, "6");
    EXPECT_STREQ(files.first.LocalPath, "7");
}

TEST_F(FileRecords, SizeAndCreateDateOfTheCallersRecordAreNotFilled) {
    OpenMain(Files(FileRow("a", "5", "1")));
    FileItem first{};
    SetField(first.Size, "mine");
    SetField(first.CreateDate, "mine too");
    EXPECT_EQ(GetFiles(&first), 1);
    EXPECT_STREQ(first.Size, "mine");
    EXPECT_STREQ(first.CreateDate, "mine too");
}

TEST_F(FileRecords, OneTickedFileEndsItsChain) {
    OpenMain(Files(FileRow("a", "5", "1")));
    FileItem first = FilledItem();
    EXPECT_EQ(GetFiles(&first), 1);
    EXPECT_EQ(first.next, nullptr);
}

TEST_F(FileRecords, FilesBehindTheLastTickedOneDoNotReachTheChain) {
    OpenMain(Files(FileRow("a", "5", "1", "1") + FileRow("b", "5", "2", "0") + FileRow("c", "5", "3", "0")));
    const FileChain files;
    EXPECT_EQ(files.count, 1);
    EXPECT_EQ(files.FileIds(), (Ids{"a"}));
}

TEST_F(FileRecords, OnlyTheExactTextOneTicksAFile) {
    std::string rows;
    for (const char* value : {"true", " 1", "1 ", "01", "11", "", "0", "2", "-1", "+1"}) {
        rows += FileRow("no", "5", "1", value);
    }
    OpenMain(Files(rows + FileRow("yes", "5", "2", "1")));
    const FileChain files;
    EXPECT_EQ(files.FileIds(), (Ids{"yes"}));
}

TEST_F(FileRecords, WithoutFilesTheCallersRecordIsUntouched) {
    OpenMain("<Files/><Jobs><Item FileID='a'/></Jobs>");
    const FileItem before = FilledItem();
    FileItem first = before;
    EXPECT_EQ(GetFiles(&first), 0);
    EXPECT_EQ(std::memcmp(&first, &before, sizeof first), 0);
}

TEST_F(FileRecords, WithoutTheContainerTheCallersRecordIsUntouched) {
    OpenMain("<Jobs/>");
    const FileItem before = FilledItem();
    FileItem first = before;
    EXPECT_EQ(GetFiles(&first), 0);
    EXPECT_EQ(std::memcmp(&first, &before, sizeof first), 0);
}

TEST_F(FileRecords, TheCallersRecordHoldsTheLastFileWhenNothingIsTicked) {
    OpenMain(Files(FileRow("a", "5", "1", "0") + FileRow("b", "2", "9", "0")));
    FileItem first = FilledItem();
    FileItem* const next = first.next;
    EXPECT_EQ(GetFiles(&first), 0);
    EXPECT_STREQ(first.FileID, "b");
    EXPECT_STREQ(first.ID, "9");
    EXPECT_STREQ(first.Type, "2");
    EXPECT_EQ(first.next, next);
}

TEST_F(FileRecords, NullGivesZero) {
    OpenMain(Files(FileRow("a", "5", "1")));
    EXPECT_EQ(GetFiles(nullptr), 0);
}

TEST_F(FileRecords, WithoutAnOpenDocumentThereAreNoFiles) {
    Open();
    FileItem first{};
    EXPECT_EQ(GetFiles(&first), 0);
}

TEST_F(FileRecords, AttributesBehindTheTenthAreSkipped) {
    OpenMain(Files(FileRow("a", "5", "1", "1", "FontFamilyName='f' SymbolSet='checked' Copyright='1'") +
                   FileRow("b", "2", "2", "1")));
    const FileChain files;
    EXPECT_EQ(files.FileIds(), (Ids{"a", "b"}));
}

TEST_F(FileRecords, ARowIsReadByPositionFromItsFileIdOn) {
    OpenMain(Files("<Item Note='n' FileID='a' checked='2' Type='3' ID='4' Path='5' Volume='6' Other='7' x='8' y='9' "
                   "z='1'/>"));
    const FileChain files;
    ASSERT_EQ(files.count, 1);
    EXPECT_STREQ(files.first.FileID, "a");
    EXPECT_STREQ(files.first.Component, "2");
    EXPECT_STREQ(files.first.ID, "3");
    EXPECT_STREQ(files.first.Type, "4");
    EXPECT_STREQ(files.first.Volume, "5");
    EXPECT_STREQ(files.first.Path, "6");
    EXPECT_STREQ(files.first.LocalPath, "7");
}

TEST_F(FileRecords, AnItemWithoutAFileIdIsSkipped) {
    OpenMain(Files("<Item fileid='a' Component='c' ID='1' Type='5' Volume='v' Path='p' LocalPath='l' Size='1' "
                   "CreateDate='d' checked='1'/>" +
                   FileRow("b", "5", "2")));
    const FileChain files;
    EXPECT_EQ(files.FileIds(), (Ids{"b"}));
}

TEST_F(FileRecords, AShortRowReadsOnIntoTheNextFile) {
    // The tenth value of the nine-attribute row is the FileID of the file behind it, which is then skipped.
    OpenMain(Files("<Item FileID='a' Component='c' ID='1' Type='5' Volume='v' Path='p' LocalPath='l' Size='1' "
                   "CreateDate='d'/>" +
                   FileRow("1", "5", "2", "0") + FileRow("c", "5", "3", "1")));
    const FileChain files;
    EXPECT_EQ(files.FileIds(), (Ids{"a", "c"}));
}

TEST_F(FileRecords, AShortLastRowIsNotTickedAndReadsAsEmptyPastItsEnd) {
    OpenMain(Files("<Item FileID='a' Component='c'/>"));
    FileItem first = FilledItem();
    EXPECT_EQ(GetFiles(&first), 0);
    EXPECT_STREQ(first.FileID, "a");
    EXPECT_STREQ(first.Component, "c");
    EXPECT_STREQ(first.ID, "");
    EXPECT_STREQ(first.LocalPath, "");
}

TEST_F(FileRecords, FilesBehindACommentAreLeftOut) {
    OpenMain(Files(FileRow("a", "5", "1") + "<!-- note -->" + FileRow("b", "5", "2")));
    const FileChain files;
    EXPECT_EQ(files.count, 1);
    EXPECT_EQ(files.FileIds(), (Ids{"a"}));
}

TEST_F(FileRecords, OfTwoListsTheFirstIsRead) {
    OpenMain(Files(FileRow("a", "5", "1")) + Files(FileRow("b", "5", "2")));
    const FileChain files;
    EXPECT_EQ(files.FileIds(), (Ids{"a"}));
}

TEST_F(FileRecords, ALongListComesBackWhole) {
    std::string rows;
    Ids expected;
    for (int i = 0; i < 2000; ++i) {
        const std::string fileId = std::to_string(i);
        const bool ticked = i % 3 != 0;
        rows += FileRow(fileId, "5", fileId, ticked ? "1" : "0");
        if (ticked) {
            expected.push_back(fileId);
        }
    }
    OpenMain(Files(rows));
    const FileChain files;
    EXPECT_EQ(files.count, static_cast<int32_t>(expected.size()));
    EXPECT_EQ(files.FileIds(), expected);
}

TEST_F(FileRecords, TheCurrentPrinterDocumentIsRead) {
    OpenMain(Files(FileRow("a", "5", "1")));
    OpenPrinterWith("Office.xml", Files(FileRow("b", "5", "1")));
    const FileChain files;
    EXPECT_EQ(files.FileIds(), (Ids{"b"}));
}

TEST_F(FileRecords, ReadingSavesNothing) {
    OpenMain(Files(FileRow("a", "5", "1")));
    EXPECT_FALSE(Saves([] { const FileChain files; }));
}

TEST_F(FileRecords, AFieldHolds255Bytes) {
    const std::string longest(255, 'x');
    for (const char* field : {"FileID", "Component", "ID", "Type", "Volume", "Path", "LocalPath"}) {
        CloseAll();
        OpenMain(Files(RowWith(field, longest)));
        const FileChain files;
        ASSERT_EQ(files.count, 1);
        const std::vector<std::pair<std::string, const char*>> values{
            {"FileID", files.first.FileID},       {"Component", files.first.Component}, {"ID", files.first.ID},
            {"Type", files.first.Type},           {"Volume", files.first.Volume},       {"Path", files.first.Path},
            {"LocalPath", files.first.LocalPath},
        };
        for (const auto& [name, value] : values) {
            EXPECT_EQ(value, name == field ? longest : "x") << name;
        }
    }
}

TEST_F(FileRecordsDeathTest, AValueOf256BytesStopsTheProcess) {
    for (const char* field : {"FileID", "Component", "ID", "Type", "Volume", "Path", "LocalPath"}) {
        CloseAll();
        OpenMain(Files(RowWith(field, std::string(256, 'x'))));
        FileItem first{};
        EXPECT_DEATH(GetFiles(&first), IsStopLine(field, 256, 256)) << field;
    }
}

TEST_F(FileRecordsDeathTest, TheLastLineTellsHowLongTheValueIs) {
    OpenMain(Files(RowWith("Path", std::string(1000, 'x'))));
    FileItem first{};
    EXPECT_DEATH(GetFiles(&first), IsStopLine("Path", 1000, 256));
}

TEST_F(FileRecordsDeathTest, AValueThatDoesNotFitStopsTheProcessAlsoWhenItsFileIsNotTicked) {
    OpenMain(Files(RowWith("ID", std::string(256, '1'), "0")));
    FileItem first{};
    EXPECT_DEATH(GetFiles(&first), IsStopLine("ID", 256, 256));
}

TEST_F(FileRecords, ValuesThatAreNotCopiedMayHaveAnyLength) {
    const std::string longText(1000, '1');
    for (const char* field : {"Size", "CreateDate", "checked"}) {
        CloseAll();
        OpenMain(Files(RowWith(field, longText)));
        const FileChain files;
        EXPECT_EQ(files.count, std::string(field) == "checked" ? 0 : 1) << field;
    }
}

TEST_F(FileRecords, ReleasingARecordWithoutANextDoesNothing) {
    FileItem item{};
    FreeFileItem(&item);
    FreeFileItem(nullptr);
    EXPECT_EQ(item.next, nullptr);
}

TEST_F(FileRecords, ReleasingTheFirstOfThreeReleasesOnlyTheSecond) {
    OpenMain(Files(FileRow("a", "5", "1") + FileRow("b", "5", "2") + FileRow("c", "5", "3")));
    FileItem first{};
    ASSERT_EQ(GetFiles(&first), 3);
    FileItem* const second = first.next;
    FileItem* const third = second->next;
    FreeFileItem(&first);
    EXPECT_EQ(first.next, second) << "the link is not cleared";
    EXPECT_STREQ(first.FileID, "a");
    EXPECT_STREQ(third->FileID, "c");
    FileItem link{};
    link.next = third;
    FreeFileItem(&link);
}
