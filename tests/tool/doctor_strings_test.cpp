// doctor: the texts that the library shows.

#include "doctor_test.h"

class DoctorStrings : public DoctorTest {
protected:
    static std::string Texts(const std::string& clash, const std::string& font = "font") {
        return "<Main><Item Title='T'/></Main><StringTable><Item DuplicateID_EditingFile_SendingProject='" + clash +
               "'/><Item FontFile_SPFTTF='" + font +
               "'/></StringTable><ProjectFilter><Item ID='1' Value='b'/><Item ID='2' Value='m'/><Item ID='5' "
               "Value='t'/>"
               "<Item ID='6' Value='i'/><Item ID='8' Value='o'/></ProjectFilter>";
    }
};

TEST_F(DoctorStrings, TextsThatAreAllThereGiveNoFinding) {
    EXPECT_EQ(FindingsIn(Document(Texts("%s %d"))).size(), 0u);
    EXPECT_EQ(FindingsIn(Document(Texts("%s %d %s %d"))).size(), 0u);
}

TEST_F(DoctorStrings, AMissingContainerIsAWarning) {
    ExpectFinding("<StringTable/>", "container-missing", "warning", "Main");
}

TEST_F(DoctorStrings, MissingTextsAreAWarning) {
    ExpectFinding("<StringTable/><Main/>", "text-missing", "warning", "Main");
    ExpectFinding(Texts(""), "text-missing", "warning", "StringTable");
    ExpectFinding(Texts("%s %d", ""), "text-missing", "warning", "StringTable");
}

TEST_F(DoctorStrings, AKindThatTheLibraryShowsIsAWarningAnyOtherANote) {
    std::string texts = Texts("%s %d");
    texts.replace(texts.find("ID='8'"), 6, "ID='9'");
    ExpectFinding(texts, "text-missing", "warning", "ProjectFilter");
    texts = Texts("%s %d");
    texts.replace(texts.find("ID='5'"), 6, "ID='9'");
    ExpectFinding(texts, "text-missing", "note", "ProjectFilter");
}

TEST_F(DoctorStrings, ATemplateThatNamesTheIDFirstIsAWarning) {
    for (const char* const text : {"%d %s", "%s %s %d %d", "%s", "%s %d %s %d %s %d"}) {
        ExpectFinding(Texts(text), "template-order", "warning", "StringTable");
    }
}

TEST_F(DoctorStrings, OtherPerCentSignsAreAWarning) {
    for (const char* const text : {"%s %d %%", "%s %5d", "%s %d %"}) {
        ExpectFinding(Texts(text), "template-has-other-marks", "warning", "StringTable");
    }
}

TEST_F(DoctorStrings, ATemplateWithoutMarksIsANote) {
    ExpectFinding(Texts("clash"), "template-without-marks", "note", "StringTable");
}

TEST_F(DoctorStrings, AMessageThatStopsTheHostIsAnError) {
    const auto padding = [](std::size_t length) { return "%s%d" + std::string(length, 'x'); };
    ExpectFinding(Texts(padding(251)), "message-too-long", "error", "StringTable");
    ExpectNoFinding(Texts(padding(250)), "message-too-long"); // with "font" and five digits 259 bytes
}

TEST_F(DoctorStrings, ALanguageIsLookedAtByItsName) {
    const auto path = InstallFolder() / "Cordelbox/language/German/Strings.xml";
    WriteBytes(path, Document("<StringTable/>"));
    const auto document = Run({"--json", "doctor", "German"}).Json()["documents"][0];
    EXPECT_EQ(document["loaded"], path.string());
    ExpectIn(document["findings"], "text-missing", "warning", "Main");
}
