// All ticked files of a project, checked for IDs that occur twice in a group.

#include "id_message_test.h"
#include "process_stop.h"

#include <cstdint>

namespace {

class IdValidation : public IdMessageTest {
protected:
    /// The clash message for these files, or none when they are valid; the result says the same.
    std::optional<std::string> Validate() {
        int32_t result = -1;
        const std::optional<std::string> message = MessageOf([&] { result = IdsAreValid(nullptr); });
        EXPECT_EQ(result, message.has_value() ? 0 : 1);
        return message;
    }

    std::optional<std::string> Validate(const std::string& rows, const ClashStrings& strings = {}) {
        OpenWith(Files(rows), strings);
        return Validate();
    }

    /// The clash message of two Type "2" files of ID 7, with this template and this name of their kind.
    std::optional<std::string> ClashMessage(const std::string& text, const std::string& kindName = "macros") {
        return Validate(FileRow("a", "2", "7") + FileRow("b", "2", "7"), {.text = text, .typeTwo = kindName});
    }
};

using IdValidationDeathTest = IdValidation;

} // namespace

TEST_F(IdValidation, FilesOfDifferentIdsAreValid) {
    EXPECT_EQ(
        Validate(FileRow("a", "2", "3") + FileRow("b", "2", "4") + FileRow("c", "5", "5") + FileRow("d", "1", "6")),
        std::nullopt);
}

TEST_F(IdValidation, GroupsAreSeparateAndIdsAreComparedWhole) {
    EXPECT_EQ(Validate(FileRow("a", "2", "3") + FileRow("b", "2", "13") + FileRow("c", "5", "3")), std::nullopt);
    EXPECT_EQ(
        Validate(FileRow("a", "2", "13") + FileRow("b", "2", "3") + FileRow("c", "2", "31") + FileRow("d", "2", "1")),
        std::nullopt);
}

TEST_F(IdValidation, ABitmapFontAndATrueTypeFontClash) {
    EXPECT_EQ(Validate(FileRow("a", "1", "4") + FileRow("b", "5", "4")), "Two of fonts have the ID 4.");
}

TEST_F(IdValidation, FilesOfTypeTwoClash) {
    EXPECT_EQ(Validate(FileRow("a", "2", "4") + FileRow("b", "2", "4")), "Two of macros have the ID 4.");
}

TEST_F(IdValidation, TheTypeEightListIsNotChecked) {
    EXPECT_EQ(Validate(FileRow("a", "8", "4") + FileRow("b", "8", "4")), std::nullopt);
}

TEST_F(IdValidation, FilesOfOtherTypesAreNotListed) {
    EXPECT_EQ(Validate(FileRow("a", "6", "4") + FileRow("b", "6", "4") + FileRow("c", "22", "4") +
                       FileRow("d", "22", "4") + FileRow("e", "", "4") + FileRow("f", "", "4")),
              std::nullopt);
}

TEST_F(IdValidation, AFileThatIsNotTickedDoesNotClash) {
    EXPECT_EQ(Validate(FileRow("a", "2", "4", "1") + FileRow("b", "2", "4", "0")), std::nullopt);
    EXPECT_EQ(Validate(FileRow("a", "2", "4", "1") + FileRow("b", "2", "4", "true") + FileRow("c", "2", "4", " 1")),
              std::nullopt);
}

TEST_F(IdValidation, TheFirstIdThatOccursAgainIsReported) {
    EXPECT_EQ(Validate(FileRow("a", "2", "7") + FileRow("b", "2", "9") + FileRow("c", "2", "7")),
              "Two of macros have the ID 7.");
    EXPECT_EQ(Validate(FileRow("a", "2", "9") + FileRow("b", "2", "7") + FileRow("c", "2", "7")),
              "Two of macros have the ID 7.");
    EXPECT_EQ(
        Validate(FileRow("a", "2", "3") + FileRow("b", "2", "5") + FileRow("c", "2", "5") + FileRow("d", "2", "3")),
        "Two of macros have the ID 3.");
}

TEST_F(IdValidation, OfTwoClashesOnlyTheOneOfTypeTwoIsShown) {
    EXPECT_EQ(
        Validate(FileRow("a", "1", "4") + FileRow("b", "5", "4") + FileRow("c", "2", "6") + FileRow("d", "2", "6")),
        "Two of macros have the ID 6.");
}

TEST_F(IdValidation, TheFontsAreCheckedAlsoWhenTypeTwoIsFine) {
    EXPECT_EQ(Validate(FileRow("a", "2", "4") + FileRow("b", "5", "8") + FileRow("c", "5", "8")),
              "Two of fonts have the ID 8.");
}

TEST_F(IdValidation, EmptyIdsNeverClash) {
    EXPECT_EQ(Validate(FileRow("a", "2", "") + FileRow("b", "2", "") + FileRow("c", "5", "") + FileRow("d", "1", "")),
              std::nullopt);
    EXPECT_EQ(Validate(FileRow("a", "2", "") + FileRow("b", "2", "4") + FileRow("c", "2", "") + FileRow("d", "2", "4")),
              "Two of macros have the ID 4.");
}

TEST_F(IdValidation, IdsAreComparedAsText) {
    EXPECT_EQ(
        Validate(FileRow("a", "2", "07") + FileRow("b", "2", "7") + FileRow("c", "2", " 7") + FileRow("d", "2", "7a")),
        std::nullopt);
}

TEST_F(IdValidation, AnIdThatIsNoNumberIsShownAsOne) {
    EXPECT_EQ(Validate(FileRow("a", "2", "abc") + FileRow("b", "2", "abc")), "Two of macros have the ID 0.");
    EXPECT_EQ(Validate(FileRow("a", "2", " 07x") + FileRow("b", "2", " 07x")), "Two of macros have the ID 7.");
}

TEST_F(IdValidation, AnIdBeyond32BitsIsShownAsTheNearestEndOfTheRange) {
    EXPECT_EQ(Validate(FileRow("a", "2", "99999999999") + FileRow("b", "2", "99999999999")),
              "Two of macros have the ID 2147483647.");
    EXPECT_EQ(Validate(FileRow("a", "2", "-99999999999") + FileRow("b", "2", "-99999999999")),
              "Two of macros have the ID -2147483648.");
}

TEST_F(IdValidation, ACommaInAnIdDividesItInTwo) {
    EXPECT_EQ(Validate(FileRow("a", "2", "1,2") + FileRow("b", "2", "2")), "Two of macros have the ID 2.");
    EXPECT_EQ(Validate(FileRow("a", "2", "5,5")), "Two of macros have the ID 5.");
    EXPECT_EQ(Validate(FileRow("a", "2", ",,1") + FileRow("b", "2", "2")), std::nullopt);
}

TEST_F(IdValidation, AFileWithoutAnIdIsListedUnderItsFileId) {
    EXPECT_EQ(Validate("<Item FileID='5' Type='2' checked='1'/>" + FileRow("b", "2", "5")),
              "Two of macros have the ID 5.");
}

TEST_F(IdValidation, ATickedFileWithoutATypeIsNotListed) {
    EXPECT_EQ(Validate("<Item FileID='a' ID='5' checked='1'/><Item FileID='b' ID='5' checked='1'/>"), std::nullopt);
}

TEST_F(IdValidation, AFileIdThatIsListedTwiceClashesWithItself) {
    EXPECT_EQ(Validate(FileRow("a", "2", "1") + FileRow("a", "2", "2")), "Two of macros have the ID 1.");
}

TEST_F(IdValidation, OfAFileIdThatIsListedTwiceTheTickedOneCounts) {
    // Both the Type and the ID are those of the ticked file, although another stands before it.
    EXPECT_EQ(Validate(FileRow("a", "2", "1", "0") + FileRow("a", "2", "2") + FileRow("b", "2", "2")),
              "Two of macros have the ID 2.");
    EXPECT_EQ(Validate(FileRow("a", "6", "1", "0") + FileRow("a", "2", "2") + FileRow("b", "2", "2")),
              "Two of macros have the ID 2.");
    EXPECT_EQ(Validate(FileRow("a", "2", "7", "0") + FileRow("a", "6", "2") + FileRow("b", "2", "7")), std::nullopt);
}

TEST_F(IdValidation, AnEmptyFileIdIsOneToo) {
    EXPECT_EQ(Validate(FileRow("", "2", "4") + FileRow("b", "2", "4")), "Two of macros have the ID 4.");
    EXPECT_EQ(Validate(FileRow("", "2", "4", "0") + FileRow("b", "2", "4")), std::nullopt);
}

TEST_F(IdValidation, FilesBehindACommentAreNotChecked) {
    EXPECT_EQ(Validate(FileRow("a", "2", "3") + "<!-- note -->" + FileRow("b", "2", "3")), std::nullopt);
}

TEST_F(IdValidation, WithoutFilesAllIsValid) {
    EXPECT_EQ(Validate(""), std::nullopt);
    OpenWith("<Jobs/>");
    EXPECT_EQ(Validate(), std::nullopt);
    EXPECT_EQ(Validate(FileRow("a", "2", "3", "0") + FileRow("b", "2", "3", "0")), std::nullopt);
}

TEST_F(IdValidation, WithoutAnOpenDocumentAllIsValid) {
    Open();
    EXPECT_EQ(Validate(), std::nullopt);
}

TEST_F(IdValidation, ALongListIsCheckedToItsEnd) {
    std::string rows;
    for (int i = 0; i < 3000; ++i) {
        rows += FileRow("f" + std::to_string(i), "2", std::to_string(i));
    }
    EXPECT_EQ(Validate(rows), std::nullopt);
    EXPECT_EQ(Validate(rows + FileRow("last", "2", "2999")), "Two of macros have the ID 2999.");
}

TEST_F(IdValidation, WindowsAreDisabledWhileTheMessageIsShown) {
    OpenWith(Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")));
    ExpectWindowsDisabledAroundTheMessage([](MessageWindows* windows) { EXPECT_EQ(IdsAreValid(windows), 0); });
}

TEST_F(IdValidation, TheWindowsThatWereDisabledAreEnabledAgainWhateverTheRecordSaysByThen) {
    OpenWith(Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")));
    ExpectTheDisabledWindowsEnabledAgain([](MessageWindows* windows) { EXPECT_EQ(IdsAreValid(windows), 0); });
}

TEST_F(IdValidation, WindowsBehindANullHandleAreDisabledToo) {
    OpenWith(Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")));
    ExpectWindowsBehindANullHandleDisabled([](MessageWindows* windows) { IdsAreValid(windows); });
}

TEST_F(IdValidation, WithoutAClashTheWindowsAreLeftAlone) {
    OpenWith(Files(FileRow("a", "2", "3")));
    CTestWindow window;
    MessageWindows windows{};
    windows.owner = window.Slot();
    windows.windows[0] = window.Slot();
    const CMessageWatch watch;
    EXPECT_EQ(IdsAreValid(&windows), 1);
    EXPECT_TRUE(watch.Messages().empty());
    EXPECT_TRUE(watch.Changes().empty());
}

TEST_F(IdValidation, WithoutWindowsTheMessageHasNoOwner) {
    OpenWith(Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")));
    MessageWindows windows{};
    const CMessageWatch watch;
    IdsAreValid(nullptr);
    IdsAreValid(&windows);
    ASSERT_EQ(watch.Messages().size(), 2u);
    EXPECT_EQ(watch.Messages()[0].owner, nullptr);
    EXPECT_EQ(watch.Messages()[1].owner, nullptr);
    EXPECT_EQ(watch.Messages()[0].flags, kOkButtonAndErrorIcon);
    EXPECT_EQ(watch.Messages()[0].caption, "Storage manager");
}

TEST_F(IdValidation, ValidatingSavesNothing) {
    OpenWith(Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")));
    EXPECT_FALSE(Saves([&] { EXPECT_TRUE(Validate().has_value()); }));
}

// The text of the message, a template with four arguments: name, ID, name, ID.

TEST_F(IdValidation, TheTemplateTakesNameAndIdTwice) {
    EXPECT_EQ(ClashMessage("%s %d, %s %d"), "macros 7, macros 7");
    EXPECT_EQ(ClashMessage("%s"), "macros");
    EXPECT_EQ(ClashMessage("no directive"), "no directive");
    EXPECT_EQ(ClashMessage("%s%d%s%d"), "macros7macros7");
}

TEST_F(IdValidation, ADirectivePrintsTheNextArgumentAsWhatItIs) {
    EXPECT_EQ(ClashMessage("%d %s"), "macros 7");
    EXPECT_EQ(ClashMessage("%d %d %d %d"), "macros 7 macros 7");
    EXPECT_EQ(ClashMessage("%s %s %s %s"), "macros 7 macros 7");
}

TEST_F(IdValidation, AFifthDirectiveIsCopiedAsItStands) {
    EXPECT_EQ(ClashMessage("%s %d %s %d %s"), "macros 7 macros 7 %s");
    EXPECT_EQ(ClashMessage("%s%s%s%s%s%d%5d%n"), "macros7macros7%s%d%5d%n");
}

TEST_F(IdValidation, TwoPercentSignsAreOne) {
    EXPECT_EQ(ClashMessage("100%% %s %%d"), "100% macros %d");
    EXPECT_EQ(ClashMessage("%%%s%%"), "%macros%");
}

TEST_F(IdValidation, WidthAndFlagsAreFollowed) {
    EXPECT_EQ(ClashMessage("%10s|%4d|%-10s|%-4d|"), "    macros|   7|macros    |7   |");
    EXPECT_EQ(ClashMessage("%s %04d"), "macros 0007");
    EXPECT_EQ(ClashMessage("%s %+d"), "macros +7");
    EXPECT_EQ(ClashMessage("%s % d"), "macros  7");
    EXPECT_EQ(ClashMessage("%s %-+4d|"), "macros +7  |");
    EXPECT_EQ(ClashMessage("%s %-04d|"), "macros 7   |");
    EXPECT_EQ(ClashMessage("%s %+04d"), "macros +007");
    EXPECT_EQ(ClashMessage("%s %+0d"), "macros +7");
    EXPECT_EQ(ClashMessage("%s %+ d"), "macros +7");
    EXPECT_EQ(ClashMessage("%s % +d"), "macros +7");
    EXPECT_EQ(ClashMessage("%#s|%#d|%-#8s|%#03d"), "macros|7|macros  |007");
    EXPECT_EQ(ClashMessage("%3s %1d"), "macros 7");
}

TEST_F(IdValidation, PrecisionIsFollowed) {
    EXPECT_EQ(ClashMessage("%.2s %.3d"), "ma 007");
    EXPECT_EQ(ClashMessage("%5.2s|%5.3d|"), "   ma|  007|");
    EXPECT_EQ(ClashMessage("%s %05.2d"), "macros    07");
    EXPECT_EQ(ClashMessage("%.0s|%d"), "|7");
    EXPECT_EQ(ClashMessage("%.s|%d"), "|7");
    EXPECT_EQ(ClashMessage("%.100s"), "macros");
}

TEST_F(IdValidation, TheSignOfANegativeIdStandsBeforeTheZeros) {
    EXPECT_EQ(Validate(FileRow("a", "2", "-7") + FileRow("b", "2", "-7"), {.text = "%s %05d|%.0s%+.3d"}),
              "macros -0007|-007");
}

TEST_F(IdValidation, AnIdOfZeroWithAPrecisionOfZeroPrintsNothing) {
    EXPECT_EQ(Validate(FileRow("a", "2", "0") + FileRow("b", "2", "0"), {.text = "%s|%.0d|%.0s%3.0d|"}),
              "macros||   |");
}

TEST_F(IdValidation, OtherConversionsAreCopiedAndConsumeNothing) {
    EXPECT_EQ(ClashMessage("%n%x%p%f%c%i%u %s %d"), "%n%x%p%f%c%i%u macros 7");
    EXPECT_EQ(ClashMessage("%ld %lld %hhd %zd %s"), "%ld %lld %hhd %zd macros");
    EXPECT_EQ(ClashMessage("%1$s %2$d %s"), "%1$s %2$d macros");
    EXPECT_EQ(ClashMessage("%*d %.*s %s"), "%*d %.*s macros");
    EXPECT_EQ(ClashMessage("%D %S %s"), "%D %S macros");
}

TEST_F(IdValidation, AnUnfinishedDirectiveIsCopied) {
    EXPECT_EQ(ClashMessage("%s %"), "macros %");
    EXPECT_EQ(ClashMessage("%s %5"), "macros %5");
    EXPECT_EQ(ClashMessage("%s %-"), "macros %-");
    EXPECT_EQ(ClashMessage("%s %5."), "macros %5.");
}

TEST_F(IdValidation, DirectivesInTheNameAreNotFollowed) { EXPECT_EQ(ClashMessage("%s %d", "%d%n%s%%"), "%d%n%s%% 7"); }

TEST_F(IdValidation, AMissingTemplateMakesAnEmptyMessage) {
    OpenMain(Files(FileRow("a", "2", "7") + FileRow("b", "2", "7")), "<Main><Item Title='t'/></Main>");
    EXPECT_EQ(Validate(), "");
}

TEST_F(IdValidation, AMissingNameOfTypeTwoIsTheTypeItself) {
    OpenMain(Files(FileRow("a", "2", "7") + FileRow("b", "2", "7")),
             "<StringTable><Item DuplicateID_EditingFile_SendingProject='%s: %d'/></StringTable>");
    EXPECT_EQ(Validate(), "2: 7");
}

TEST_F(IdValidation, AMissingNameOfTheFontsIsEmpty) {
    OpenMain(Files(FileRow("a", "5", "7") + FileRow("b", "5", "7")),
             "<StringTable><Item DuplicateID_EditingFile_SendingProject='%s: %d'/></StringTable>");
    EXPECT_EQ(Validate(), ": 7");
}

TEST_F(IdValidation, WithoutStringsAnEmptyMessageIsShown) {
    InstallMain(Document(Files(FileRow("a", "2", "7") + FileRow("b", "2", "7"))));
    EXPECT_EQ(Open("Missing"), nullptr);
    const CMessageWatch watch;
    EXPECT_EQ(IdsAreValid(nullptr), 0);
    ASSERT_EQ(watch.Messages().size(), 1u);
    EXPECT_EQ(watch.Messages()[0].text, "");
    EXPECT_EQ(watch.Messages()[0].caption, "");
}

TEST_F(IdValidation, AMessageOf259BytesFits) {
    const std::string text(253, 'x');
    EXPECT_EQ(ClashMessage(text + "%s"), text + "macros");
    EXPECT_EQ(ClashMessage("%259s"), std::string(253, ' ') + "macros");
    EXPECT_EQ(ClashMessage("%.0s%.259d"), std::string(258, '0') + "7");
    EXPECT_EQ(ClashMessage("%s", std::string(259, 'm')), std::string(259, 'm'));
}

TEST_F(IdValidationDeathTest, AMessageOf260BytesStopsTheProcess) {
    const std::string rows = FileRow("a", "2", "7") + FileRow("b", "2", "7");
    OpenWith(Files(rows), {.text = std::string(254, 'x') + "%s"});
    EXPECT_DEATH(IdsAreValid(nullptr), IsStopLine("message", 260, 260));
    OpenWith(Files(rows), {.text = std::string(1000, 'x')});
    EXPECT_DEATH(IdsAreValid(nullptr), IsStopLine("message", 1000, 260));
    OpenWith(Files(rows), {.text = "%260s"});
    EXPECT_DEATH(IdsAreValid(nullptr), IsStopLine("message", 260, 260));
    OpenWith(Files(rows), {.text = "%s", .typeTwo = std::string(260, 'm')});
    EXPECT_DEATH(IdsAreValid(nullptr), IsStopLine("message", 260, 260));
}

TEST_F(IdValidationDeathTest, AHostileWidthStopsTheProcessAndNothingElse) {
    const std::string rows = FileRow("a", "2", "7") + FileRow("b", "2", "7");
    for (const char* text : {"%2147483647s", "%999999999999999999999999s", "%-2147483648d", "%s%.2147483647d",
                             "%s%.999999999999999999999999d", "%s%99999999999999999999.99999999999999999999d"}) {
        OpenWith(Files(rows), {.text = text});
        EXPECT_DEATH(IdsAreValid(nullptr), ::testing::StartsWith("cordelbox: ")) << text;
    }
}
