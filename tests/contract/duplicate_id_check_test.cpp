// The ID of the file that is being edited, checked against the other files of its group.

#include "id_message_test.h"

#include <cstdint>

namespace {

constexpr int32_t kUntouched = -77;

/// Names the file that is being edited.
std::string Edited(const std::string& fileId) { return "<Property><Item FileID='" + fileId + "'/></Property>"; }

struct Checked {
    int32_t result;
    int32_t id;
    int32_t kind;
    std::optional<std::string> message;
    friend bool operator==(const Checked&, const Checked&) = default;
};

void PrintTo(const Checked& checked, std::ostream* stream) {
    *stream << "result " << checked.result << ", id " << checked.id << ", kind " << checked.kind << ", message "
            << checked.message.value_or("none");
}

class DuplicateIdCheck : public IdMessageTest {
protected:
    Checked Check(MessageWindows* windows = nullptr) {
        Checked checked{-1, kUntouched, kUntouched, {}};
        checked.message = MessageOf([&] { checked.result = CheckID(&checked.id, &checked.kind, windows); });
        return checked;
    }

    /// The message of a clash of two Type "2" files of ID 12.
    std::optional<std::string> ClashMessage(const ClashStrings& strings) {
        OpenWith(Edited("a") + Files(FileRow("a", "2", "12") + FileRow("b", "2", "12")), strings);
        return Check().message;
    }
};

} // namespace

TEST_F(DuplicateIdCheck, AFileThatMeetsOnlyItselfIsFine) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3") + FileRow("b", "2", "4")));
    EXPECT_EQ(Check(), (Checked{1, 3, 1, {}}));
}

TEST_F(DuplicateIdCheck, FontsOfBothTypesShareTheirIds) {
    for (const char* edited : {"a", "b", "c"}) {
        OpenWith(Edited(edited) + Files(FileRow("a", "5", "3") + FileRow("b", "5", "3") + FileRow("c", "1", "3")));
        EXPECT_EQ(Check(), (Checked{0, 3, 0, "Two of fonts have the ID 3."})) << edited;
    }
}

TEST_F(DuplicateIdCheck, ABitmapFontAndATrueTypeFontClash) {
    OpenWith(Edited("a") + Files(FileRow("a", "1", "3") + FileRow("b", "5", "3")));
    EXPECT_EQ(Check(), (Checked{0, 3, 0, "Two of fonts have the ID 3."}));
}

TEST_F(DuplicateIdCheck, FilesOfTypeTwoClash) {
    OpenWith(Edited("b") + Files(FileRow("a", "2", "12") + FileRow("b", "2", "12")));
    EXPECT_EQ(Check(), (Checked{0, 12, 1, "Two of macros have the ID 12."}));
}

TEST_F(DuplicateIdCheck, FilesOfTypeEightClash) {
    OpenWith(Edited("b") + Files(FileRow("a", "8", "12") + FileRow("b", "8", "12")));
    EXPECT_EQ(Check(), (Checked{0, 12, 2, "Two of forms have the ID 12."}));
}

TEST_F(DuplicateIdCheck, FilesOfDifferentGroupsDoNotClash) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3") + FileRow("b", "8", "3") + FileRow("c", "5", "3")));
    EXPECT_EQ(Check(), (Checked{1, 3, 1, {}}));
    OpenWith(Edited("b") + Files(FileRow("a", "2", "3") + FileRow("b", "8", "3") + FileRow("c", "5", "3")));
    EXPECT_EQ(Check(), (Checked{1, 3, 2, {}}));
    OpenWith(Edited("c") + Files(FileRow("a", "2", "3") + FileRow("b", "8", "3") + FileRow("c", "5", "3")));
    EXPECT_EQ(Check(), (Checked{1, 3, 0, {}}));
}

TEST_F(DuplicateIdCheck, AFileOfAnotherTypeIsNotChecked) {
    for (const char* type : {"6", "", "25", "2 ", "05", "3"}) {
        OpenWith(Edited("a") + Files(FileRow("a", type, "3") + FileRow("b", type, "3")));
        EXPECT_EQ(Check(), (Checked{1, 3, kUntouched, {}})) << type;
    }
}

TEST_F(DuplicateIdCheck, TickedOrNotMakesNoDifference) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3", "0") + FileRow("b", "2", "3", "0")));
    EXPECT_EQ(Check().result, 0);
}

TEST_F(DuplicateIdCheck, IdsAreComparedAsText) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "07") + FileRow("b", "2", "7") + FileRow("c", "2", " 07")));
    EXPECT_EQ(Check(), (Checked{1, 7, 1, {}}));
}

TEST_F(DuplicateIdCheck, EveryLookupFiltersOnTypeAgain) {
    // Unlike the search for a free ID, which forgets the Type after its first hit.
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3") + FileRow("b", "2", "4") + FileRow("c", "6", "3")));
    EXPECT_EQ(Check(), (Checked{1, 3, 1, {}}));
}

TEST_F(DuplicateIdCheck, TheIdIsReadLeniently) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", " -5x")));
    EXPECT_EQ(Check().id, -5);
    OpenWith(Edited("a") + Files(FileRow("a", "2", "none")));
    EXPECT_EQ(Check().id, 0);
    OpenWith(Edited("a") + Files(FileRow("a", "2", "")));
    EXPECT_EQ(Check().id, 0);
}

TEST_F(DuplicateIdCheck, AnIdBeyond32BitsBecomesTheNearestEndOfTheRange) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "99999999999") + FileRow("b", "2", "99999999999")));
    EXPECT_EQ(Check(), (Checked{0, INT32_MAX, 1, "Two of macros have the ID 2147483647."}));
    OpenWith(Edited("a") + Files(FileRow("a", "2", "-99999999999")));
    EXPECT_EQ(Check().id, INT32_MIN);
}

TEST_F(DuplicateIdCheck, TheMessageShowsTheIdAsANumber) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "007") + FileRow("b", "2", "007")));
    EXPECT_EQ(Check().message, "Two of macros have the ID 7.");
    OpenWith(Edited("a") + Files(FileRow("a", "2", "abc") + FileRow("b", "2", "abc")));
    EXPECT_EQ(Check().message, "Two of macros have the ID 0.");
}

TEST_F(DuplicateIdCheck, WithoutAnEditedFileNothingIsChecked) {
    for (const char* property : {"", "<Property/>", "<Property><Item Name='a'/></Property>"}) {
        OpenWith(property + Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")));
        EXPECT_EQ(Check(), (Checked{1, 0, kUntouched, {}})) << property;
    }
}

TEST_F(DuplicateIdCheck, WithoutAnEditedFileAFileOfEmptyFileIdIsMeant) {
    OpenWith(Files(FileRow("", "2", "9")));
    EXPECT_EQ(Check(), (Checked{1, 9, 1, {}}));
    OpenWith(Files(FileRow("", "2", "9") + FileRow("b", "2", "9")));
    EXPECT_EQ(Check(), (Checked{0, 9, 1, "Two of macros have the ID 9."}));
}

TEST_F(DuplicateIdCheck, AnEditedFileThatIsNotListedStandsForItsTypeAndItsId) {
    OpenWith(Edited("2") + Files(FileRow("a", "2", "2") + FileRow("b", "2", "2")));
    EXPECT_EQ(Check(), (Checked{0, 2, 1, "Two of macros have the ID 2."}));
    OpenWith(Edited("2") + Files(FileRow("a", "2", "2") + FileRow("b", "2", "3")));
    EXPECT_EQ(Check(), (Checked{1, 2, 1, {}}));
    OpenWith(Edited("5") + Files(FileRow("a", "1", "5") + FileRow("b", "5", "5")));
    EXPECT_EQ(Check(), (Checked{0, 5, 0, "Two of fonts have the ID 5."}));
    OpenWith(Edited("77") + Files(FileRow("a", "2", "77") + FileRow("b", "2", "77")));
    EXPECT_EQ(Check(), (Checked{1, 77, kUntouched, {}}));
}

TEST_F(DuplicateIdCheck, AnEditedFileWithoutATypeOrAnIdHasItsFileIdInstead) {
    OpenWith(Edited("8") +
             Files("<Item FileID='8' ID='4' LocalPath='l'/>" + FileRow("b", "8", "4") + FileRow("c", "8", "4")));
    EXPECT_EQ(Check(), (Checked{0, 4, 2, "Two of forms have the ID 4."}));
    OpenWith(Edited("6") +
             Files("<Item FileID='6' Type='2' LocalPath='l'/>" + FileRow("b", "2", "6") + FileRow("c", "2", "6")));
    EXPECT_EQ(Check(), (Checked{0, 6, 1, "Two of macros have the ID 6."}));
}

TEST_F(DuplicateIdCheck, AFileWithoutALocalPathIsNotCounted) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3") + "<Item FileID='b' ID='3' Type='2'/>"));
    EXPECT_EQ(Check(), (Checked{1, 3, 1, {}}));
}

TEST_F(DuplicateIdCheck, AFileIdThatIsListedTwiceCountsTwice) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3") + FileRow("a", "6", "4")));
    EXPECT_EQ(Check().result, 0);
}

TEST_F(DuplicateIdCheck, OneFontOfBothTypesCountsTwice) {
    // Its FileID is listed once, and found under either Type.
    OpenWith("<Property><Item FileID='a'/></Property><Files xmlns:p='urn:p'>"
             "<Item FileID='a' ID='3' Type='1' p:Type='5' LocalPath='l'/></Files>");
    EXPECT_EQ(Check(), (Checked{0, 3, 0, "Two of fonts have the ID 3."}));
}

TEST_F(DuplicateIdCheck, FilesBehindACommentAreNotCounted) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3") + "<!-- note -->" + FileRow("b", "2", "3")));
    EXPECT_EQ(Check(), (Checked{1, 3, 1, {}}));
}

TEST_F(DuplicateIdCheck, WithoutAnOpenDocumentNothingIsChecked) {
    InstallStrings("English", Document(ClashStrings().Containers()));
    Open();
    EXPECT_EQ(Check(), (Checked{1, 0, kUntouched, {}}));
}

TEST_F(DuplicateIdCheck, TheResultsAreSetBeforeTheMessageIsShown) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")));
    int32_t id = kUntouched;
    int32_t kind = kUntouched;
    std::pair<int32_t, int32_t> shown;
    const CMessageWatch watch([&] { shown = {id, kind}; });
    EXPECT_EQ(CheckID(&id, &kind, nullptr), 0);
    EXPECT_EQ(shown, std::pair(3, 1));
}

TEST_F(DuplicateIdCheck, NullResultsAreLeftOut) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")));
    int32_t id = kUntouched;
    int32_t kind = kUntouched;
    const CMessageWatch watch;
    EXPECT_EQ(CheckID(nullptr, &kind, nullptr), 0);
    EXPECT_EQ(CheckID(&id, nullptr, nullptr), 0);
    EXPECT_EQ(CheckID(nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(id, 3);
    EXPECT_EQ(kind, 1);
    ASSERT_EQ(watch.Messages().size(), 3u);
    EXPECT_EQ(watch.Messages().back().text, "Two of macros have the ID 3.");
}

TEST_F(DuplicateIdCheck, WindowsAreDisabledWhileTheMessageIsShown) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")));
    ExpectWindowsDisabledAroundTheMessage(
        [](MessageWindows* windows) { EXPECT_EQ(CheckID(nullptr, nullptr, windows), 0); });
}

TEST_F(DuplicateIdCheck, TheWindowsThatWereDisabledAreEnabledAgainWhateverTheRecordSaysByThen) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")));
    ExpectTheDisabledWindowsEnabledAgain(
        [](MessageWindows* windows) { EXPECT_EQ(CheckID(nullptr, nullptr, windows), 0); });
}

TEST_F(DuplicateIdCheck, WindowsBehindANullHandleAreDisabledToo) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")));
    ExpectWindowsBehindANullHandleDisabled([](MessageWindows* windows) { CheckID(nullptr, nullptr, windows); });
}

TEST_F(DuplicateIdCheck, WithoutAClashTheWindowsAreLeftAlone) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3")));
    CTestWindow window;
    MessageWindows windows{};
    windows.owner = window.Slot();
    windows.windows[0] = window.Slot();
    const CMessageWatch watch;
    EXPECT_EQ(CheckID(nullptr, nullptr, &windows), 1);
    EXPECT_TRUE(watch.Messages().empty());
    EXPECT_TRUE(watch.Changes().empty());
}

TEST_F(DuplicateIdCheck, WithoutWindowsTheMessageHasNoOwner) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")));
    MessageWindows windows{};
    const CMessageWatch watch;
    CheckID(nullptr, nullptr, nullptr);
    CheckID(nullptr, nullptr, &windows);
    ASSERT_EQ(watch.Messages().size(), 2u);
    EXPECT_EQ(watch.Messages()[0].owner, nullptr);
    EXPECT_EQ(watch.Messages()[1].owner, nullptr);
    EXPECT_EQ(watch.Messages()[1].flags, kOkButtonAndErrorIcon);
}

TEST_F(DuplicateIdCheck, TheCaptionIsTheTitleOfTheMainStrings) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")));
    const CMessageWatch watch;
    CheckID(nullptr, nullptr, nullptr);
    ASSERT_EQ(watch.Messages().size(), 1u);
    EXPECT_EQ(watch.Messages()[0].caption, "Storage manager");
}

TEST_F(DuplicateIdCheck, AllPlaceholdersAreReplacedWhereverTheyStand) {
    EXPECT_EQ(ClashMessage({.text = "%d is the ID of two %s", .typeTwo = "Macro"}), "12 is the ID of two Macro");
    EXPECT_EQ(ClashMessage({.text = "%d and %d"}), "12 and 12");
    EXPECT_EQ(ClashMessage({.text = "%s%s%s%s%s %d%d%d%d%d"}), "macrosmacrosmacrosmacrosmacros 1212121212");
    EXPECT_EQ(ClashMessage({.text = "nothing to fill in"}), "nothing to fill in");
}

TEST_F(DuplicateIdCheck, APlaceholderInTheKindNameIsReplacedToo) {
    EXPECT_EQ(ClashMessage({.text = "%s have %d", .typeTwo = "%d macros"}), "12 macros have 12");
    EXPECT_EQ(ClashMessage({.text = "%s have %d", .typeTwo = "%s macros"}), "%s macros have 12");
}

TEST_F(DuplicateIdCheck, APlaceholderMadeByTheReplacementIsReplacedToo) {
    EXPECT_EQ(ClashMessage({.text = "%%sd", .typeTwo = ""}), "12");
    EXPECT_EQ(ClashMessage({.text = "%%ss", .typeTwo = ""}), "%s");
}

TEST_F(DuplicateIdCheck, EverythingElseInTheTextStandsAsItIs) {
    EXPECT_EQ(ClashMessage({.text = "100%% of %5d %-3s %n %x %1$s %"}), "100%% of %5d %-3s %n %x %1$s %");
    EXPECT_EQ(ClashMessage({.text = "%D %S % d % s"}), "%D %S % d % s");
}

TEST_F(DuplicateIdCheck, TheMessageMayBeLong) {
    const std::string text(600, 'x');
    EXPECT_EQ(ClashMessage({.text = text + "%d"}), text + "12");
}

TEST_F(DuplicateIdCheck, AMissingKindNameIsTheTypeItself) {
    const std::string strings = "<StringTable><Item DuplicateID_EditingFile_SendingProject='%s: %d'/></StringTable>";
    OpenMain(Edited("a") + Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")), strings);
    EXPECT_EQ(Check().message, "2: 3");
    CloseAll();
    OpenMain(Edited("a") + Files(FileRow("a", "8", "3") + FileRow("b", "8", "3")), strings);
    EXPECT_EQ(Check().message, "8: 3");
}

TEST_F(DuplicateIdCheck, AMissingNameOfTheFontsIsEmpty) {
    OpenMain(Edited("a") + Files(FileRow("a", "5", "3") + FileRow("b", "5", "3")),
             "<StringTable><Item DuplicateID_EditingFile_SendingProject='%s: %d'/></StringTable>");
    EXPECT_EQ(Check().message, ": 3");
}

TEST_F(DuplicateIdCheck, WithoutStringsAnEmptyMessageIsShown) {
    InstallMain(Document(Edited("a") + Files(FileRow("a", "2", "3") + FileRow("b", "2", "3"))));
    EXPECT_EQ(Open("Missing"), nullptr);
    const CMessageWatch watch;
    EXPECT_EQ(CheckID(nullptr, nullptr, nullptr), 0);
    ASSERT_EQ(watch.Messages().size(), 1u);
    EXPECT_EQ(watch.Messages()[0].text, "");
    EXPECT_EQ(watch.Messages()[0].caption, "");
}

TEST_F(DuplicateIdCheck, CheckingSavesNothing) {
    OpenWith(Edited("a") + Files(FileRow("a", "2", "3") + FileRow("b", "2", "3")));
    EXPECT_FALSE(Saves([&] { EXPECT_EQ(Check().result, 0); }));
}
