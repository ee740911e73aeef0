// The lowest ID that is free for a new file.

#include "file_rows.h"
#include "saving_host_test.h"

namespace {

constexpr int32_t kFonts = 0;
constexpr int32_t kTypeTwo = 1;

class FreeIdSearch : public SavingHostTest {};

} // namespace

TEST_F(FreeIdSearch, WithoutFilesItIsZero) {
    OpenMain("<Files/>");
    EXPECT_EQ(GetValidID(kTypeTwo), 0);
    EXPECT_EQ(GetValidID(kFonts), 0);
}

TEST_F(FreeIdSearch, WithoutTheContainerItIsZero) {
    OpenMain("<Jobs/>");
    EXPECT_EQ(GetValidID(kTypeTwo), 0);
    EXPECT_EQ(GetValidID(kFonts), 0);
}

TEST_F(FreeIdSearch, WithoutAnOpenDocumentItIsZero) {
    Open();
    EXPECT_EQ(GetValidID(kTypeTwo), 0);
    EXPECT_EQ(GetValidID(kFonts), 0);
}

TEST_F(FreeIdSearch, TheFirstGapIsFree) {
    OpenMain(Files(FileRow("a", "2", "0") + FileRow("b", "2", "3") + FileRow("c", "2", "1")));
    EXPECT_EQ(GetValidID(kTypeTwo), 2);
}

TEST_F(FreeIdSearch, FontsOfBothTypesShareTheirIds) {
    OpenMain(Files(FileRow("a", "5", "0") + FileRow("b", "1", "1")));
    EXPECT_EQ(GetValidID(kFonts), 2);
}

TEST_F(FreeIdSearch, EveryKindButZeroMeansTypeTwo) {
    OpenMain(Files(FileRow("a", "2", "0") + FileRow("b", "2", "1")));
    EXPECT_EQ(GetValidID(-1), 2);
    EXPECT_EQ(GetValidID(2), 2);
    EXPECT_EQ(GetValidID(8), 2);
    EXPECT_EQ(GetValidID(INT32_MIN), 2);
    EXPECT_EQ(GetValidID(kFonts), 0);
}

TEST_F(FreeIdSearch, TickedOrNotMakesNoDifference) {
    OpenMain(Files(FileRow("a", "2", "0", "0") + FileRow("b", "2", "1", "1")));
    EXPECT_EQ(GetValidID(kTypeTwo), 2);
}

TEST_F(FreeIdSearch, AFileOfAnotherTypeDoesNotTakeTheFirstId) {
    OpenMain(Files(FileRow("a", "8", "0")));
    EXPECT_EQ(GetValidID(kTypeTwo), 0);
    EXPECT_EQ(GetValidID(kFonts), 0);
}

TEST_F(FreeIdSearch, TheRememberedFilterCountLetsFilesOfAnyTypeTakeAnIdOnceOneWasTaken) {
    OpenMain(Files(FileRow("a", "2", "0") + FileRow("b", "8", "1")));
    EXPECT_EQ(GetValidID(kTypeTwo), 2);
}

TEST_F(FreeIdSearch, TheRememberedFilterCountHoldsForTheRestOfTheSearch) {
    OpenMain(Files(FileRow("a", "2", "0") + FileRow("b", "2", "1") + FileRow("c", "6", "2") + FileRow("d", "8", "3") +
                   FileRow("e", "1", "4") + FileRow("f", "", "5")));
    EXPECT_EQ(GetValidID(kTypeTwo), 6);
}

TEST_F(FreeIdSearch, TheFilterCountIsNotRememberedFromOneSearchToTheNext) {
    OpenMain(Files(FileRow("a", "2", "0") + FileRow("b", "8", "1")));
    EXPECT_EQ(GetValidID(kTypeTwo), 2);
    WriteAttr("Files", "Type", "8");
    EXPECT_EQ(GetValidID(kTypeTwo), 0);
}

TEST_F(FreeIdSearch, TheRememberedFilterCountOfTheBitmapFontsCountsFilesOfAnyType) {
    OpenMain(Files(FileRow("a", "1", "0") + FileRow("b", "6", "1") + FileRow("c", "2", "2")));
    EXPECT_EQ(GetValidID(kFonts), 3);
}

TEST_F(FreeIdSearch, TheRememberedFilterCountOfTheTrueTypeFontsCountsFilesOfAnyType) {
    OpenMain(Files(FileRow("a", "5", "0") + FileRow("b", "6", "1") + FileRow("c", "2", "2")));
    EXPECT_EQ(GetValidID(kFonts), 3);
}

TEST_F(FreeIdSearch, IdsAreComparedAsText) {
    OpenMain(Files(FileRow("a", "2", "0") + FileRow("b", "2", "01") + FileRow("c", "2", " 1") +
                   FileRow("d", "2", "+1") + FileRow("e", "2", "1.0")));
    EXPECT_EQ(GetValidID(kTypeTwo), 1);
}

TEST_F(FreeIdSearch, AFileWithoutAFileIdTakesNoId) {
    OpenMain(Files("<Item ID='0' Type='2'/>" + FileRow("b", "2", "1")));
    EXPECT_EQ(GetValidID(kTypeTwo), 0);
}

TEST_F(FreeIdSearch, FilesBehindACommentTakeNoId) {
    OpenMain(Files(FileRow("a", "2", "0") + "<!-- note -->" + FileRow("b", "2", "1")));
    EXPECT_EQ(GetValidID(kTypeTwo), 1);
}

TEST_F(FreeIdSearch, TheLastIdIs32767AndThenThereIsNone) {
    std::string rows;
    for (int id = 0; id < 32767; ++id) {
        const std::string text = std::to_string(id);
        rows += "<Item FileID='" + text + "' ID='" + text + "' Type='" + (id % 2 == 0 ? "1" : "5") + "'/>";
    }
    OpenMain("<Files>" + rows + "</Files>");
    EXPECT_EQ(GetValidID(kFonts), 32767);
    FileItem last{};
    last.ID[0] = '3', last.ID[1] = '2', last.ID[2] = '7', last.ID[3] = '6', last.ID[4] = '7';
    last.Type[0] = '1';
    WritePrjFile(&last);
    EXPECT_EQ(GetValidID(kFonts), -1);
    EXPECT_EQ(GetValidID(kTypeTwo), 0);
}

TEST_F(FreeIdSearch, AllIdsOfTypeTwoTakenGivesMinusOne) {
    std::string rows;
    for (int id = 0; id < 32768; ++id) {
        const std::string text = std::to_string(id);
        rows += "<Item FileID='" + text + "' ID='" + text + "' Type='2'/>";
    }
    OpenMain("<Files>" + rows + "</Files>");
    EXPECT_EQ(GetValidID(kTypeTwo), -1);
}

TEST_F(FreeIdSearch, SearchingSavesNothing) {
    OpenMain(Files(FileRow("a", "2", "0")));
    EXPECT_FALSE(Saves([] {
        GetValidID(kTypeTwo);
        GetValidID(kFonts);
    }));
}
