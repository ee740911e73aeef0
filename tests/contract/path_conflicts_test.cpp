// Whether a local path is in the file list already, without regard to letter case.

#include "saving_host_test.h"

namespace {

std::string FilesWithPath(const std::string& path) { return "<Files><Item LocalPath='" + path + "'/></Files>"; }

class PathConflicts : public SavingHostTest {};

} // namespace

TEST_F(PathConflicts, LetterCaseDoesNotMatter) {
    OpenMain(FilesWithPath("D:\\Fonts\\A.TTF"));
    EXPECT_EQ(IsPathConflict("d:\\fonts\\a.ttf"), 1u);
    EXPECT_EQ(IsPathConflict("D:\\Fonts\\A.TTF"), 1u);
    EXPECT_EQ(IsPathConflict("D:\\FONTS\\a.TTF"), 1u);
}

TEST_F(PathConflicts, SeparatorsAreComparedAsTheyStand) {
    OpenMain(FilesWithPath("D:\\Fonts\\A.TTF"));
    EXPECT_EQ(IsPathConflict("D:/Fonts/A.TTF"), 0u);
    EXPECT_EQ(IsPathConflict("D:\\Fonts\\A.TTF\\"), 0u);
    EXPECT_EQ(IsPathConflict("D:\\Fonts\\\\A.TTF"), 0u);
    EXPECT_EQ(IsPathConflict("D:\\Fonts\\.\\A.TTF"), 0u);
}

TEST_F(PathConflicts, TheWholePathIsCompared) {
    OpenMain(FilesWithPath("D:\\Fonts\\A.TTF"));
    EXPECT_EQ(IsPathConflict("D:\\Fonts\\A.TT"), 0u);
    EXPECT_EQ(IsPathConflict("D:\\Fonts\\A.TTFF"), 0u);
    EXPECT_EQ(IsPathConflict("A.TTF"), 0u);
    EXPECT_EQ(IsPathConflict(" D:\\Fonts\\A.TTF"), 0u);
}

TEST_F(PathConflicts, CharactersBetweenTheCasesOfTheAlphabetAreNotFolded) {
    OpenMain(FilesWithPath("[@`{"));
    EXPECT_EQ(IsPathConflict("[@`{"), 1u);
    EXPECT_EQ(IsPathConflict("{@`{"), 0u);
    EXPECT_EQ(IsPathConflict("[`@{"), 0u);
}

TEST_F(PathConflicts, LettersBeyondAsciiAreFoldedToo) {
    // The 8-bit text of the other case comes from the document, since it depends on the code page.
    OpenMain(FilesWithPath("&#xC4;pfel.ttf") + "<Asked><Item Path='&#xE4;PFEL.TTF'/></Asked>");
    EXPECT_EQ(IsPathConflict(GetAttrValue("Asked", "Path")), 1u);
}

TEST_F(PathConflicts, EveryFileIsLookedAt) {
    OpenMain("<Files><Item LocalPath='a'/><Item FileID='2'/><Item LocalPath='b'/><Item LocalPath='C'/></Files>");
    EXPECT_EQ(IsPathConflict("A"), 1u);
    EXPECT_EQ(IsPathConflict("B"), 1u);
    EXPECT_EQ(IsPathConflict("c"), 1u);
    EXPECT_EQ(IsPathConflict("d"), 0u);
}

TEST_F(PathConflicts, AnEmptyListHasNone) {
    OpenMain("<Files/>");
    EXPECT_EQ(IsPathConflict("a"), 0u);
    EXPECT_EQ(IsPathConflict(""), 0u);
}

TEST_F(PathConflicts, AMissingListHasNone) {
    OpenMain("<Jobs><Item LocalPath='a'/></Jobs>");
    EXPECT_EQ(IsPathConflict("a"), 0u);
    EXPECT_EQ(IsPathConflict(""), 0u);
}

TEST_F(PathConflicts, AnEmptyPathMatchesOnlyAListedEmptyPath) {
    OpenMain("<Files><Item LocalPath=''/></Files>");
    EXPECT_EQ(IsPathConflict(""), 1u);
    EXPECT_EQ(IsPathConflict("a"), 0u);
}

TEST_F(PathConflicts, AListedEmptyPathDoesNotEndTheList) {
    OpenMain("<Files><Item LocalPath='a'/><Item LocalPath=''/><Item LocalPath='b'/></Files>");
    EXPECT_EQ(IsPathConflict("b"), 1u);
    EXPECT_EQ(IsPathConflict(""), 1u);
}

TEST_F(PathConflicts, AFileWithoutALocalPathContributesNothing) {
    OpenMain("<Files><Item FileID='1' Path='a'/></Files>");
    EXPECT_EQ(IsPathConflict(""), 0u);
    EXPECT_EQ(IsPathConflict("a"), 0u);
}

TEST_F(PathConflicts, OnlyTheLocalPathCounts) {
    OpenMain("<Files><Item localpath='a' Path='b' FileID='c' LocalPath='d'/></Files>");
    EXPECT_EQ(IsPathConflict("a"), 0u);
    EXPECT_EQ(IsPathConflict("b"), 0u);
    EXPECT_EQ(IsPathConflict("c"), 0u);
    EXPECT_EQ(IsPathConflict("d"), 1u);
}

TEST_F(PathConflicts, APrefixOfTheAttributeIsIgnored) {
    OpenMain("<Files xmlns:p='urn:p'><Item p:LocalPath='a'/></Files>");
    EXPECT_EQ(IsPathConflict("a"), 1u);
}

TEST_F(PathConflicts, OfTwoListsTheFirstIsRead) {
    OpenMain(FilesWithPath("a") + FilesWithPath("b"));
    EXPECT_EQ(IsPathConflict("a"), 1u);
    EXPECT_EQ(IsPathConflict("b"), 0u);
}

TEST_F(PathConflicts, FilesBehindACommentAreNotSeen) {
    OpenMain("<Files><Item LocalPath='a'/><!-- note --><Item LocalPath='b'/></Files>");
    EXPECT_EQ(IsPathConflict("a"), 1u);
    EXPECT_EQ(IsPathConflict("b"), 0u);
}

TEST_F(PathConflicts, AskingSavesNothing) {
    OpenMain(FilesWithPath("a"));
    EXPECT_FALSE(Saves([] { IsPathConflict("a"); }));
}

TEST_F(PathConflicts, WithoutAnOpenDocumentThereIsNone) {
    Open();
    EXPECT_EQ(IsPathConflict("a"), 0u);
    EXPECT_EQ(IsPathConflict(""), 0u);
}
