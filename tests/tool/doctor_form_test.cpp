// doctor: the form of a document, its encoding and its containers.

#include "doctor_test.h"

#include <chrono>

using ::testing::HasSubstr;

class DoctorForm : public DoctorTest {};

TEST_F(DoctorForm, SaysWhereADocumentIsNotWellFormed) {
    const auto findings = FindingsIn("<Cordelbox>\n  <Files>\n  </Jobs>\n</Cordelbox>\n");
    ExpectIn(findings, "not-well-formed", "error", "");
#ifndef _WIN32 // Wine's DOM does not say where
    EXPECT_EQ(findings[0]["place"]["line"], 3);
    EXPECT_GT(findings[0]["place"]["column"], 1);
#endif
}

TEST_F(DoctorForm, AnEmptyFileIsNoDocument) { ExpectIn(FindingsIn(""), "empty-file", "error", ""); }

TEST_F(DoctorForm, AFileOfZerosIsSaidToBe) {
    ExpectIn(FindingsIn(std::string(500, '\0')), "file-of-zeros", "error", "");
}

TEST_F(DoctorForm, AStrayAmpersandIsFound) {
    const auto findings = FindingsIn("<D>\n  <Jobs><Item Name='Black & White'/></Jobs>\n</D>\n");
    ExpectIn(findings, "stray-ampersand", "error", "");
    EXPECT_EQ(findings[0]["place"]["line"], 2);
    EXPECT_EQ(findings[0]["place"]["column"], 27);
}

TEST_F(DoctorForm, AByteOfAnOldCodePageIsFound) {
    const auto findings = FindingsIn("<D>\n<Jobs><Item Name='Gr\xFC"
                                     "n'/></Jobs></D>\n");
    ExpectIn(findings, "wrong-byte", "error", "");
    EXPECT_EQ(findings[0]["place"]["line"], 2);
    EXPECT_EQ(findings[0]["place"]["column"], 21);
}

TEST_F(DoctorForm, TheMarksOfAMergeAreFound) {
    const auto findings = FindingsIn("<D>\n<<<<<<< mine\n<A/>\n=======\n<B/>\n>>>>>>> yours\n</D>\n");
    ExpectIn(findings, "conflict-marks", "error", "");
    EXPECT_EQ(findings[0]["place"]["line"], 2);
}

TEST_F(DoctorForm, TheOffendingLineIsShownWithAMark) {
    const std::string output = Run({"doctor", UserFile("x.xml", "<D>\n  <A B='1 & 2'/>\n</D>\n")}).output;
    EXPECT_THAT(output, HasSubstr("      |   <A B='1 & 2'/>\n      |           ^\n"));
}

TEST_F(DoctorForm, OfALongLineThePieceIsShownThatIsMeant) {
    std::string document = "<D><Files>";
    for (int i = 1; i <= 5000; ++i) {
        document += "<Item FileID='" + std::to_string(i) + "' Volume='\xC3\xA4'/>";
    }
    const std::string output = Run({"doctor", UserFile("x.xml", document + "<B C='1 & 2'/></Files></D>")}).output;
    EXPECT_THAT(output, HasSubstr("      |  FileID='5000' Volume='\xC3\xA4'/><B C='1 & 2'/></Files></D>\n"
                                  "      | " +
                                  std::string(35, ' ') + "^\n"));
}

TEST_F(DoctorForm, ManyFindingsInOneLongLineAreSaidAtOnce) {
    std::string rows;
    for (int i = 1; i <= 5000; ++i) {
        rows += "<Item FileID='" + std::to_string(i) + "' ID='x' Type='9'/>";
    }
    const std::string file = UserFile("x.xml", "<D><Files>" + rows + "</Files></D>");
    const std::string output = Run({"doctor", file}).output;
    EXPECT_THAT(output, HasSubstr("(FileID \"5000\")"));
}

TEST_F(DoctorForm, ADocumentOfAnotherProgramIsSaidToBe) {
    ExpectIn(FindingsIn("<html><body><p/></body></html>"), "other-document", "warning", "");
}

TEST_F(DoctorForm, ADocumentDeeperThanTheLibraryGoesIsAnError) {
    std::string text;
    for (int i = 0; i < 1001; ++i) {
        text = "<E>" + text + "</E>";
    }
    ExpectIn(FindingsIn(text), "not-well-formed", "error", "");
}

TEST_F(DoctorForm, ADocumentLargerThanTheLibraryLoadsIsSaidToBe) {
    const std::string file = UserFile("large.xml", "");
    std::filesystem::resize_file(file, (std::uintmax_t{256} << 20) + 1);
    const ToolRun run = Run({"doctor", file});
    EXPECT_THAT(run.output, HasSubstr("The document cannot be read: it is larger than 256 MiB."));
    EXPECT_THAT(run.output, Not(HasSubstr("empty")));
}

TEST_F(DoctorForm, AnotherEncodingIsANote) {
    const std::string text = "<?xml version='1.0' encoding='iso-8859-1'?><Cordelbox><Jobs/></Cordelbox>";
    const auto document = Run({"--json", "doctor", UserFile("x.xml", text)}).Json()["documents"][0];
    EXPECT_EQ(document["encoding"], "ISO-8859-1");
    ExpectIn(document["findings"], "other-encoding", "note", "");
}

TEST_F(DoctorForm, Utf16IsRead) {
    std::string text = "\xFF\xFE";
    for (const char c : std::string("<Cordelbox><Jobs><Item ID='1'/></Jobs></Cordelbox>")) {
        text += {c, '\0'};
    }
    const auto findings = FindingsIn(text);
    ExpectIn(findings, "other-encoding", "note", "");
    ExpectIn(findings, "job-order", "error", "Jobs", "item 1 (ID \"1\")");
}

TEST_F(DoctorForm, BytesThatAreNotInTheEncodingAreAnError) {
    ExpectIn(FindingsIn("<?xml version='1.0' encoding='no-such'?><Cordelbox/>"), "not-well-formed", "error", "");
}

TEST_F(DoctorForm, AMissingContainerIsAWarningInTheMainDocument) {
    WriteBytes(UserPath(), Document("<Files/>"));
    ExpectIn(MainFindings()["findings"], "container-missing", "warning", "Storage");
}

TEST_F(DoctorForm, AMissingContainerIsANoteInAPrinterDocument) {
    ExpectFinding("<Files/>", "container-missing", "note", "Storage");
}

TEST_F(DoctorForm, ARepeatedContainerIsAWarning) {
    ExpectFinding("<Jobs/><Jobs/>", "container-repeated", "warning", "Jobs");
    ExpectFinding("<Other/><Group><Jobs/></Group><Jobs/>", "container-repeated", "warning", "Jobs");
    ExpectFinding("<Mine/><Mine/>", "container-repeated", "warning", "Mine");
}

TEST_F(DoctorForm, ADocumentElementIsNoContainer) {
    ExpectIn(FindingsIn("<Files/>"), "container-is-document-element", "error", "Files");
}

TEST_F(DoctorForm, ACommentBeforeAnItemIsAnError) {
    ExpectFinding("<Mine><!-- x --><Item A='1'/></Mine>", "stray-node", "error", "Mine", "before the first item");
}

TEST_F(DoctorForm, ACommentBehindTheLastItemIsAWarning) {
    ExpectFinding("<Mine><Item A='1'/><!-- x --></Mine>", "stray-node", "warning", "Mine", "behind item 1");
}

TEST_F(DoctorForm, TextACDataSectionAndAnInstructionStopReadsToo) {
    for (const char* const node : {"text", "<![CDATA[]]>", "<?x y?>"}) {
        ExpectFinding("<Mine>" + std::string(node) + "<Item A='1'/></Mine>", "stray-node", "error", "Mine",
                      "before the first item");
    }
}

TEST_F(DoctorForm, CommentsBetweenContainersAreFine) {
    ExpectNoFinding("<!-- x --><Mine> <Item A='1'/> </Mine><!-- y -->", "stray-node");
}

TEST_F(DoctorForm, AnAttributeThatIsRepeatedButForItsPrefixIsAWarning) {
    ExpectFinding("<Mine><Item xmlns:p='u' A='1' p:A='2'/></Mine>", "attribute-repeated", "warning", "Mine", "item 1");
}

TEST_F(DoctorForm, AReplacementCharacterIsAWarning) {
    ExpectFinding("<Mine><Item A='a\xEF\xBF\xBD'/></Mine>", "replacement-character", "warning", "Mine", "item 1");
}

TEST_F(DoctorForm, AValueThatNoFieldHoldsIsAWarning) {
    ExpectFinding("<Mine><Item A='" + std::string(256, 'a') + "'/></Mine>", "value-too-long", "warning", "Mine",
                  "item 1");
    ExpectNoFinding("<Mine><Item A='" + std::string(255, 'a') + "'/></Mine>", "value-too-long");
}

TEST_F(DoctorForm, HundredsOfThousandsOfLineEndsAreReadInTheirNumbersTime) {
    const auto start = std::chrono::steady_clock::now();
    const std::string ends(200000, '\n');
    ExpectNoFinding(ends + "<Mine><Item A='1'/></Mine>" + ends, "stray-node");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20)); // it took a minute
}
