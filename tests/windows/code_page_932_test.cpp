// Japanese 8-bit text: one byte or two each. The second byte of a character may be that of an ASCII letter or of a
// backslash.

#include "code_page_test.h"

#include <process.h>

namespace fs = std::filesystem;

namespace {

const char* const kSo = "\x83\x5C";         // katakana; its second byte is a backslash
const char* const kA = "\x83\x41";          // katakana; its second byte is an upper case letter
const char* const kLetterCase = "\x83\x61"; // another one; its second byte is the same letter in lower case

} // namespace

class CodePage932 : public CodePageTest<932> {};

TEST_F(CodePage932, DoubleByteTextSurvivesASaveAndALoad) {
    // Kanji, katakana of two bytes and of one, and a second byte that is a backslash.
    const char* const text = "\x93\xFA\x96\x7B\x8C\xEA \x83\x76\x83\x8A \xB1\xB2 \x95\x5C";
    OpenMain("<List/>");
    WriteTestFileName("List", kSo, text);
    EXPECT_EQ(GetAttrValue1("List", "ID", kSo, "Value"), text);
    Reopen();
    EXPECT_EQ(GetAttrValue1("List", "ID", kSo, "Value"), text);
    EXPECT_EQ(SavedItems("List")[0][0].second, "\xE3\x82\xBD");
}

TEST_F(CodePage932, KatakanaOfOneByteSurviveASaveAndALoad) {
    std::string bytes;
    for (int character = 0xA1; character <= 0xDF; ++character) {
        bytes += static_cast<char>(character);
    }
    OpenMain("<List/>");
    WriteTestFileName("List", "1", bytes.c_str());
    Reopen();
    EXPECT_EQ(GetAttrValue("List", "Value"), bytes.c_str());
}

TEST_F(CodePage932, ACharacterThatTheCodePageLacksReadsAsAQuestionMark) {
    OpenMain("<List><Item Accent='&#xE9;' Euro='&#x20AC;' Plane='&#x1F600;'/></List>");
    EXPECT_EQ(GetAttrValue("List", "Accent"), "?") << "not the letter without its accent";
    EXPECT_EQ(GetAttrValue("List", "Euro"), "?");
    EXPECT_EQ(GetAttrValue("List", "Plane"), "??") << "one for each half";
}

TEST_F(CodePage932, AFirstByteWithoutASecondBecomesThePlatformsDefaultCharacter) {
    OpenMain("<List/>");
    WriteTestFileName("List", "1", "end\x83");
    const std::string value = GetAttrValue("List", "Value").c_str();
    EXPECT_EQ(value.substr(0, 3), "end");
    EXPECT_NE(value, "end\x83") << "never into the document as it is";
    Reopen();
    EXPECT_EQ(GetAttrValue("List", "Value"), value.c_str());
}

TEST_F(CodePage932, TheSecondByteOfACharacterOfAPathIsNotFolded) {
    OpenMain("<Files><Item LocalPath='C:\\&#x30A2;.ttf'/></Files>");
    EXPECT_EQ(IsPathConflict((std::string("c:\\") + kA + ".TTF").c_str()), 1u);
    EXPECT_EQ(IsPathConflict((std::string("c:\\") + kLetterCase + ".TTF").c_str()), 0u);
}

TEST_F(CodePage932, LettersBehindADoubleByteCharacterAreFolded) {
    OpenMain("<Files><Item LocalPath='&#x30BD;abc'/></Files>");
    EXPECT_EQ(IsPathConflict((std::string(kSo) + "ABC").c_str()), 1u);
    EXPECT_EQ(IsPathConflict((std::string(kSo) + "ABD").c_str()), 0u);
}

TEST_F(CodePage932, LettersOfFullWidthAreFolded) {
    OpenMain("<Files><Item LocalPath='&#xFF21;&#xFF42;'/></Files>"); // full-width A, b
    EXPECT_EQ(IsPathConflict("\x82\x81\x82\x61"), 1u);               // full-width a, B
    EXPECT_EQ(IsPathConflict("ab"), 0u) << "full-width letters are letters of their own";
}

TEST_F(CodePage932, AnIllFormedPathIsComparedAsWhatItWouldBeStoredAs) {
    OpenMain("<Files><Item LocalPath=''/></Files>");
    WriteAttr("Files", "LocalPath", "C:\\end\x83");
    EXPECT_EQ(IsPathConflict("c:\\END\x83"), 1u);
    EXPECT_EQ(IsPathConflict(GetAttrValue("Files", "LocalPath")), 1u);
    EXPECT_EQ(IsPathConflict("c:\\END"), 0u);
}

TEST_F(CodePage932, TwoCodesOfOneCharacterAreTwo) {
    OpenMain("<Files><Item LocalPath='&#x2252;'/></Files>");
    EXPECT_EQ(IsPathConflict("\x81\xE0"), 1u);
    EXPECT_EQ(IsPathConflict("\x87\x90"), 0u);
}

TEST_F(CodePage932, TheSearchForAFreeSlotStepsOverDoubleByteCharacters) {
    OpenMain("<RGBSource><Item IDArray='&#x30BD;2&#x8868;1'/></RGBSource>");
    EXPECT_EQ(GetAvailICMID(0), 6) << "slots are counted in bytes";
}

TEST_F(CodePage932, AMarkInTheMiddleOfACharacterDoesNotHideTheNextSlot) {
    // The slot of ID 2 is the second byte of the character: with the mark it is still no slot of its own.
    OpenMain("<RGBSource><Item IDArray='&#x30BD;1'/></RGBSource>"
             "<Files><Item FileID='a' Type='6' ID='2' ProfileType='0'/></Files>");
    EXPECT_EQ(GetAvailICMID(0), 3);
}

TEST_F(CodePage932, AFileNameMayHaveABackslashForASecondByte) {
    OpenMain("");
    const fs::path file = UserMainPath().parent_path() / L"\u30BD\u8868.xml";
    WriteFile(file, Document("<Info><Item Name='before'/></Info>"));
    ASSERT_NE(OpenPrinter("\x83\x5C\x95\x5C.xml"), nullptr);
    WriteAttr("Info", "Name", "after");
    EXPECT_NE(ReadFile(file).find("after"), std::string::npos);
    EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), fs::directory_iterator()), 2);
}

TEST_F(CodePage932, ALanguageMayHaveABackslashForASecondByte) {
    const fs::path folder = InstallFolder() / "Cordelbox" / "language" / L"\u30BD";
    WriteFile(folder / "Strings.xml", Document("<Main><Item Title='&#x30BD;'/></Main>"));
    ASSERT_NE(Open(kSo), nullptr);
    EXPECT_EQ(GetXMLString("Main", "Title"), kSo);
}

// The folder's name ends in a byte that is also a backslash. A host of its own runs there.
TEST_F(CodePage932, DocumentsLieInAFolderWhoseLastByteIsABackslash) {
    const fs::path folder = InstallFolder() / L"\u8868";
    const fs::path copies = PerUserRoot() / "Marvane" / "Hollivet" / "Cordelbox" / "xml";
    WriteFile(folder / "Cordelbox" / "xml" / "Cordelbox.xml", Document("<Counter><Item Value='5'/></Counter>"));
    WriteFile(folder / "Cordelbox" / "xml" / L"\u30BD.xml", Document("<Info><Item Name='printer'/></Info>"));
    WriteFile(folder / "Cordelbox" / "language" / "English" / "Strings.xml", Document(""));
    WriteFile(copies / "Cordelbox.xml", Document("<Counter><Item Value='7'/></Counter>"));
    fs::copy_file(InstallFolder() / "folder_host.exe", folder / "folder_host.exe",
                  fs::copy_options::overwrite_existing);

    EXPECT_EQ(::_wspawnl(_P_WAIT, (folder / "folder_host.exe").c_str(), L"folder_host", nullptr), 0);
    EXPECT_NE(ReadFile(copies / "Cordelbox.xml").find("\"8\""), std::string::npos);
    fs::remove_all(folder);
}

TEST_F(CodePage932, AMissOfTheFilteredGetterReturnsTheCallersBytes) {
    OpenMain("<List/>");
    EXPECT_EQ(GetAttrValue1("List", "Name", "\x83", "Size"), "\x83");
}
