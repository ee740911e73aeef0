// The free space that sending the project leaves, one item per volume.

#include "saving_host_test.h"

namespace {

SendSpaceRecord Space(const char* volume, const char* filesSize = "10", const char* freeSpace = "100",
                      const char* after = "90") {
    return {volume, filesSize, freeSpace, after};
}

Record SpaceItem(const char* volume, const char* filesSize = "10", const char* freeSpace = "100",
                 const char* after = "90") {
    return {{"Volume", volume}, {"FilesSize", filesSize}, {"FreeSpace", freeSpace}, {"FreeSpaceAfterSend", after}};
}

uint32_t Write(const std::vector<SendSpaceRecord>& records) {
    return WriteFreeVolume(records.data(), static_cast<int64_t>(records.size()));
}

class SendSpace : public SavingHostTest {};

} // namespace

TEST_F(SendSpace, ARecordBecomesAnItemWithFourAttributesInOrder) {
    OpenMain("<SendProject/>");
    EXPECT_EQ(Write({Space("0:", "12 KB", "3 MB", "2988 KB")}), 1u);
    EXPECT_EQ(
        SavedItems("SendProject"),
        (Items{{{"Volume", "0:"}, {"FilesSize", "12 KB"}, {"FreeSpace", "3 MB"}, {"FreeSpaceAfterSend", "2988 KB"}}}));
}

TEST_F(SendSpace, RecordsKeepTheirOrder) {
    OpenMain("<SendProject/>");
    Write({Space("2:"), Space("0:"), Space("1:")});
    EXPECT_EQ(SavedItems("SendProject"), (Items{SpaceItem("2:"), SpaceItem("0:"), SpaceItem("1:")}));
}

TEST_F(SendSpace, NoRecordsLeaveTheContainerEmptyAndTheDocumentSaved) {
    OpenMain("<SendProject><Item Volume='old'/></SendProject>");
    const SendSpaceRecord record = Space("0:");
    uint32_t result = 0;
    EXPECT_TRUE(Saves([&] { result = WriteFreeVolume(&record, 0); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(SavedItems("SendProject"), Items{});
}

TEST_F(SendSpace, ANegativeCountLeavesTheContainerEmpty) {
    OpenMain("<SendProject><Item Volume='old'/></SendProject>");
    const SendSpaceRecord record = Space("0:");
    EXPECT_EQ(WriteFreeVolume(&record, -1), 1u);
    EXPECT_EQ(SavedItems("SendProject"), Items{});
    EXPECT_EQ(WriteFreeVolume(&record, INT64_MIN), 1u);
    EXPECT_EQ(SavedItems("SendProject"), Items{});
}

TEST_F(SendSpace, NullLeavesTheContainerEmpty) {
    OpenMain("<SendProject><Item Volume='old'/></SendProject>");
    EXPECT_EQ(WriteFreeVolume(nullptr, 3), 1u);
    EXPECT_EQ(SavedItems("SendProject"), Items{});
    EXPECT_EQ(WriteFreeVolume(nullptr, 0), 1u);
}

TEST_F(SendSpace, ASecondCallLeavesOnlyItsOwnItems) {
    OpenMain("<SendProject><Item Volume='old'/><Other/></SendProject>");
    Write({Space("0:"), Space("1:")});
    EXPECT_EQ(Write({Space("1:", "20", "100", "80")}), 1u);
    EXPECT_EQ(SavedItems("SendProject"), (Items{SpaceItem("1:", "20", "100", "80")}));
}

TEST_F(SendSpace, EmptyStringsAreWrittenAsEmptyValues) {
    OpenMain("<SendProject/>");
    Write({SendSpaceRecord{}});
    EXPECT_EQ(SavedItems("SendProject"), (Items{SpaceItem("", "", "", "")}));
}

TEST_F(SendSpace, EqualRecordsMakeOneItem) {
    OpenMain("<SendProject/>");
    Write({Space("0:"), Space("0:"), Space("0:", "11")});
    EXPECT_EQ(SavedItems("SendProject"), (Items{SpaceItem("0:"), SpaceItem("0:", "11")}));
}

TEST_F(SendSpace, ValuesOfAnyLengthAreWrittenWhole) {
    OpenMain("<SendProject/>");
    const std::string text(5000, '7');
    Write({Space("0:", text.c_str())});
    EXPECT_EQ(GetAttrValue("SendProject", "FilesSize"), text.c_str());
}

TEST_F(SendSpace, TheHostsStringsStayItsOwn) {
    OpenMain("<SendProject/>");
    const std::vector<SendSpaceRecord> records{Space("0:", "1", "2", "3")};
    Write(records);
    EXPECT_EQ(records[0].volume, "0:");
    EXPECT_EQ(records[0].filesSize, "1");
    EXPECT_EQ(records[0].freeSpace, "2");
    EXPECT_EQ(records[0].freeSpaceAfterSend, "3");
}

TEST_F(SendSpace, ACommentInTheContainerGoesWithTheItems) {
    OpenMain("<SendProject><!-- note --><Item Volume='old'/>text</SendProject>");
    EXPECT_EQ(Write({Space("0:")}), 1u);
    EXPECT_EQ(SavedItems("SendProject"), (Items{SpaceItem("0:")}));
    EXPECT_EQ(UserMainText().find("note"), std::string::npos) << UserMainText();
}

TEST_F(SendSpace, ARecordThatXmlCannotHoldIsLeftOutAndTheOthersAreWritten) {
    OpenMain("<SendProject/>");
    EXPECT_EQ(Write({Space("0:"), Space("1:", "\x02"), Space("2:")}), 1u);
    EXPECT_EQ(SavedItems("SendProject"), (Items{SpaceItem("0:"), SpaceItem("2:")}));
}

TEST_F(SendSpace, NothingElseChanges) {
    OpenMain("<Storage><Item Volume='0:'/></Storage><SendProject/><More><SendProject><Item Volume='second'/>"
             "</SendProject></More>");
    Write({Space("0:")});
    EXPECT_EQ(SavedItems("Storage"), (Items{{{"Volume", "0:"}}}));
    EXPECT_NE(UserMainText().find("second"), std::string::npos) << UserMainText();
}

TEST_F(SendSpace, WithoutTheContainerNothingIsWrittenAndTheDocumentIsSaved) {
    OpenMain("<Jobs/>");
    uint32_t result = 0;
    EXPECT_TRUE(Saves([&] { result = Write({Space("0:")}); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(UserMainText().find("SendProject"), std::string::npos) << UserMainText();
}

TEST_F(SendSpace, WithoutAPerUserCopyTheFiguresStayInMemory) {
    InstallMain(Document("<SendProject><Item Volume='old'/></SendProject>"));
    const std::string installed = ReadFile(InstalledMainPath());
    Open();
    EXPECT_EQ(Write({Space("0:")}), 1u);
    EXPECT_EQ(GetAttrValue("SendProject", "Volume"), "0:");
    EXPECT_FALSE(std::filesystem::exists(UserMainPath()));
    EXPECT_EQ(ReadFile(InstalledMainPath()), installed);
}

TEST_F(SendSpace, WithoutAnOpenDocumentTheResultIsStillOne) {
    Open();
    EXPECT_EQ(Write({Space("0:")}), 1u);
    EXPECT_FALSE(std::filesystem::exists(UserMainPath()));
}
