// Western European 8-bit text: one byte each, of which some have no letter and some letters have no byte.

#include "code_page_test.h"

namespace fs = std::filesystem;

class CodePage1252 : public CodePageTest<1252> {};

TEST_F(CodePage1252, EveryByteAbove127SurvivesASaveAndALoad) {
    std::string bytes;
    for (int character = 0x80; character <= 0xFF; ++character) {
        bytes += static_cast<char>(character);
    }
    OpenMain("<List/>");
    WriteTestFileName("List", "1", bytes.c_str());
    EXPECT_EQ(GetAttrValue("List", "Value"), bytes.c_str());
    Reopen();
    EXPECT_EQ(GetAttrValue("List", "Value"), bytes.c_str());
}

TEST_F(CodePage1252, TheSavedDocumentIsUtf8) {
    OpenMain("<List/>");
    WriteTestFileName("List", "1", "caf\xE9 \x80");
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"ID", "1"}, {"Value", "caf\xC3\xA9 \xE2\x82\xAC"}}}));
}

TEST_F(CodePage1252, ADocumentInAnotherEncodingIsSavedAsUtf8AndSaysSo) {
    for (const std::string encoding : {"ISO-8859-1", "windows-1252"}) {
        const std::string xml = "<?xml version='1.0' encoding='" + encoding +
                                "'?><Cordelbox><List><Item Name='caf\xE9'/></List></Cordelbox>";
        InstallMain(xml);
        CopyMainForUser(xml);
        Open();
        DelAllElem("NoSuchContainer");
        EXPECT_EQ(SavedItems("List"), (Records{Record{{"Name", "caf\xC3\xA9"}}})) << encoding;
        Reopen();
        EXPECT_EQ(GetAttrValue("List", "Name"), "caf\xE9") << encoding;
        CloseAll();
    }
}

TEST_F(CodePage1252, LettersAreFoundByValue) {
    OpenMain("<List><Item Name='&#xE9;' Size='1'/><Item Name='&#xC9;' Size='2'/></List>");
    EXPECT_EQ(GetAttrValue1("List", "Name", "\xC9", "Size"), "2");
}

TEST_F(CodePage1252, NamesMayHaveLettersAbove127) {
    OpenMain("<Gr\xC3\xB6\xC3\x9F"
             "e><Item L\xC3\xA4nge='7'/></Gr\xC3\xB6\xC3\x9F"
             "e>");
    EXPECT_EQ(GetAttrValue("Gr\xF6\xDF"
                           "e",
                           "L\xE4nge"),
              "7");
}

TEST_F(CodePage1252, ACharacterThatTheCodePageLacksReadsAsAQuestionMark) {
    OpenMain("<List><Item Kana='&#x30BD;' Macron='&#x101;' Full='&#xFF21;' Plane='&#x1F600;'/></List>");
    EXPECT_EQ(GetAttrValue("List", "Kana"), "?");
    EXPECT_EQ(GetAttrValue("List", "Macron"), "?") << "not the letter that looks alike";
    EXPECT_EQ(GetAttrValue("List", "Full"), "?");
    EXPECT_EQ(GetAttrValue("List", "Plane"), "??") << "one for each half";
}

TEST_F(CodePage1252, ACharacterThatTheCodePageLacksSurvivesASave) {
    OpenMain("<List><Item Kana='&#x30BD;'/></List>");
    DelAllElem("NoSuchContainer");
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"Kana", "\xE3\x82\xBD"}}}));
}

TEST_F(CodePage1252, AMissOfTheFilteredGetterReturnsTheCallersBytes) {
    OpenMain("<List/>");
    EXPECT_EQ(GetAttrValue1("List", "Name", "\x81\x8D\xFF", "Size"), "\x81\x8D\xFF");
}

TEST_F(CodePage1252, AccentedLettersOfAPathAreFolded) {
    OpenMain("<Files><Item LocalPath='C:\\&#xC9;t&#xE9;\\&#x152;uvre.ttf'/></Files>");
    EXPECT_EQ(IsPathConflict("c:\\\xE9T\xC9\\\x9CUVRE.TTF"), 1u);
    EXPECT_EQ(IsPathConflict("c:\\ete\\\x9CUVRE.TTF"), 0u);
    EXPECT_EQ(IsPathConflict("C:\\\xC9t\xE8\\\x8Cuvre.ttf"), 0u);
}

TEST_F(CodePage1252, BytesThatLookLikeADoubleByteCharacterAreTwoLetters) {
    OpenMain("<Files><Item LocalPath='&#x192;a'/></Files>");
    EXPECT_EQ(IsPathConflict("\x83"
                             "A"),
              1u);
}

TEST_F(CodePage1252, ADocumentMayHaveAnAccentedFileName) {
    OpenMain("");
    const fs::path file = UserMainPath().parent_path() / L"caf\u00E9.xml";
    WriteFile(file, Document("<Info><Item Name='before'/></Info>"));
    ASSERT_NE(OpenPrinter("caf\xE9.xml"), nullptr);
    WriteAttr("Info", "Name", "after");
    EXPECT_NE(ReadFile(file).find("after"), std::string::npos);
}
