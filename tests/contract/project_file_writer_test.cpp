// Files added to a project with the details of their kind, and the items that name a file for a test.

#include "record_fields.h"
#include "saving_host_test.h"

#include <cstring>
#include <iterator>

namespace {

/// A file whose fields hold their own names in lower case.
FileItem File(const char* type, const void* detail = nullptr) {
    FileItem file{};
    SetField(file.FileID, "fileid");
    SetField(file.Component, "component");
    SetField(file.ID, "id");
    SetField(file.Type, type);
    SetField(file.Volume, "volume");
    SetField(file.Path, "path");
    SetField(file.LocalPath, "localpath");
    SetField(file.Size, "size");
    SetField(file.CreateDate, "createdate");
    file.detail = detail;
    return file;
}

/// The ten attributes that every file has.
Record FileRecord(const char* type) {
    return {{"FileID", "fileid"},
            {"Component", "component"},
            {"ID", "id"},
            {"Type", type},
            {"Volume", "volume"},
            {"Path", "path"},
            {"LocalPath", "localpath"},
            {"Size", "size"},
            {"CreateDate", "createdate"},
            {"checked", "0"}};
}

Record operator+(Record left, const Record& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

TrueTypeDetail TrueType() {
    TrueTypeDetail detail{};
    SetField(detail.fontFamilyName, "family");
    SetField(detail.trueTypeFontName, "name");
    SetField(detail.fontStyle, "style");
    SetField(detail.copyright, "copyright");
    SetField(detail.postScriptName, "postscript");
    SetField(detail.symbolSet, "symbols");
    return detail;
}

/// An ICM profile with a comment of any length.
class IcmProfile {
public:
    explicit IcmProfile(const std::string& comment) : m_bytes(sizeof(IcmProfileDetail) + comment.size()) {
        IcmProfileDetail* const detail = new (m_bytes.data()) IcmProfileDetail{};
        SetField(detail->description, "description");
        SetField(detail->colorSpace, "RGB ");
        SetField(detail->deviceClass, "prtr");
        SetField(detail->copyright, "copyright");
        SetField(detail->icmType, "icm");
        SetField(detail->profileType, "2");
        std::memcpy(m_bytes.data() + offsetof(IcmProfileDetail, comment), comment.c_str(), comment.size() + 1);
    }
    const void* Detail() const { return m_bytes.data(); }

private:
    std::vector<unsigned char> m_bytes;
};

uint32_t Write(const FileItem& file) { return WritePrjFile(&file); }

class ProjectFileWriter : public SavingHostTest {};

class TestFileNames : public SavingHostTest {};

} // namespace

TEST_F(ProjectFileWriter, AFileOfAnotherKindGetsTheTenCommonAttributesInOrder) {
    OpenMain("<Files/>");
    EXPECT_EQ(Write(File("2")), 1u);
    EXPECT_EQ(SavedItems("Files"), (Items{{{"FileID", "fileid"},
                                           {"Component", "component"},
                                           {"ID", "id"},
                                           {"Type", "2"},
                                           {"Volume", "volume"},
                                           {"Path", "path"},
                                           {"LocalPath", "localpath"},
                                           {"Size", "size"},
                                           {"CreateDate", "createdate"},
                                           {"checked", "0"}}}));
}

TEST_F(ProjectFileWriter, ATrueTypeFontGetsSixMore) {
    OpenMain("<Files/>");
    const TrueTypeDetail detail = TrueType();
    EXPECT_EQ(Write(File("5", &detail)), 1u);
    const Items saved = SavedItems("Files");
    EXPECT_EQ(saved, (Items{FileRecord("5") + Record{{"FontFamilyName", "family"},
                                                     {"TrueTypeTontName", "name"},
                                                     {"FontStyle", "style"},
                                                     {"Copyright", "copyright"},
                                                     {"PostScriptName", "postscript"},
                                                     {"SymbolSet", "symbols"}}}));
    ASSERT_EQ(saved.size(), 1u);
    EXPECT_EQ(saved[0].size(), 16u);
}

TEST_F(ProjectFileWriter, ABitmapFontGetsThirteenMore) {
    OpenMain("<Files/>");
    BitmapFontDetail detail{};
    SetField(detail.bitMapFontName, "name");
    SetField(detail.format, "format");
    SetField(detail.xResolution, "x");
    SetField(detail.yResolution, "y");
    SetField(detail.fontType, "type");
    SetField(detail.symbolSet, "symbols");
    SetField(detail.proportional, "proportional");
    SetField(detail.pitchWidth, "pitch");
    SetField(detail.height, "height");
    SetField(detail.style, "style");
    SetField(detail.strokeWeight, "weight");
    SetField(detail.typeFace, "face");
    SetField(detail.escapeSequence, "escape");
    EXPECT_EQ(Write(File("1", &detail)), 1u);
    const Items saved = SavedItems("Files");
    EXPECT_EQ(saved, (Items{FileRecord("1") + Record{{"BitMapFontName", "name"},
                                                     {"Format", "format"},
                                                     {"Xresolution", "x"},
                                                     {"Yresolution", "y"},
                                                     {"FontType", "type"},
                                                     {"SymbolSet", "symbols"},
                                                     {"Proportional", "proportional"},
                                                     {"PitchWidth", "pitch"},
                                                     {"Height", "height"},
                                                     {"Style", "style"},
                                                     {"StrokeWeight", "weight"},
                                                     {"TypeFace", "face"},
                                                     {"EscapeSequence", "escape"}}}));
    ASSERT_EQ(saved.size(), 1u);
    EXPECT_EQ(saved[0].size(), 23u);
}

TEST_F(ProjectFileWriter, AnIcmProfileGetsSevenMoreInAnOrderOfTheirOwn) {
    OpenMain("<Files/>");
    const IcmProfile profile("comment");
    EXPECT_EQ(Write(File("6", profile.Detail())), 1u);
    const Items saved = SavedItems("Files");
    EXPECT_EQ(saved, (Items{FileRecord("6") + Record{{"ICMType", "icm"},
                                                     {"ProfileType", "2"},
                                                     {"ColorSpace", "RGB "},
                                                     {"Description", "description"},
                                                     {"DeviceClass", "prtr"},
                                                     {"Copyright", "copyright"},
                                                     {"Comment", "comment"}}}));
    ASSERT_EQ(saved.size(), 1u);
    EXPECT_EQ(saved[0].size(), 17u);
}

TEST_F(ProjectFileWriter, TheCommentOfAnIcmProfileMayHaveAnyLength) {
    OpenMain("<Files/>");
    const std::string comment(20000, 'c');
    const IcmProfile profile(comment);
    Write(File("6", profile.Detail()));
    EXPECT_EQ(GetAttrValue("Files", "Comment"), comment.c_str());
}

TEST_F(ProjectFileWriter, AnEmptyCommentIsAnEmptyValue) {
    OpenMain("<Files/>");
    const IcmProfile profile("");
    Write(File("6", profile.Detail()));
    const Items saved = SavedItems("Files");
    ASSERT_EQ(saved.size(), 1u);
    EXPECT_EQ(saved[0].back(), (std::pair<std::string, std::string>("Comment", "")));
}

TEST_F(ProjectFileWriter, TheTypeIsComparedWhole) {
    OpenMain("<Files/>");
    const TrueTypeDetail detail = TrueType();
    Items expected;
    for (const char* type : {"55", "5 ", " 5", "05", "", "8", "15", "66"}) {
        Write(File(type, &detail));
        expected.push_back(FileRecord(type));
    }
    EXPECT_EQ(SavedItems("Files"), expected);
}

TEST_F(ProjectFileWriter, TheDetailOfAnotherKindIsNotRead) {
    OpenMain("<Files/>");
    EXPECT_EQ(Write(File("2", reinterpret_cast<const void*>(1))), 1u);
    EXPECT_EQ(SavedItems("Files"), (Items{FileRecord("2")}));
}

TEST_F(ProjectFileWriter, WithoutADetailItsValuesAreEmpty) {
    OpenMain("<Files/>");
    Write(File("5"));
    Write(File("1"));
    Write(File("6"));
    const Items saved = SavedItems("Files");
    ASSERT_EQ(saved.size(), 3u);
    EXPECT_EQ(saved[0], FileRecord("5") + (Record{{"FontFamilyName", ""},
                                                  {"TrueTypeTontName", ""},
                                                  {"FontStyle", ""},
                                                  {"Copyright", ""},
                                                  {"PostScriptName", ""},
                                                  {"SymbolSet", ""}}));
    EXPECT_EQ(saved[1].size(), 23u);
    EXPECT_EQ(saved[1].back(), (std::pair<std::string, std::string>("EscapeSequence", "")));
    EXPECT_EQ(saved[2].size(), 17u);
    EXPECT_EQ(saved[2].back(), (std::pair<std::string, std::string>("Comment", "")));
}

TEST_F(ProjectFileWriter, EmptyFieldsAreWrittenAsEmptyValues) {
    OpenMain("<Files/>");
    EXPECT_EQ(Write(FileItem{}), 1u);
    EXPECT_EQ(SavedItems("Files"), (Items{{{"FileID", ""},
                                           {"Component", ""},
                                           {"ID", ""},
                                           {"Type", ""},
                                           {"Volume", ""},
                                           {"Path", ""},
                                           {"LocalPath", ""},
                                           {"Size", ""},
                                           {"CreateDate", ""},
                                           {"checked", "0"}}}));
}

TEST_F(ProjectFileWriter, AFieldOf255BytesIsWrittenWhole) {
    OpenMain("<Files/>");
    const std::string longest(255, 'x');
    FileItem file = File("5");
    TrueTypeDetail detail{};
    SetField(file.CreateDate, longest);
    SetField(detail.symbolSet, longest);
    file.detail = &detail;
    Write(file);
    EXPECT_EQ(GetAttrValue("Files", "CreateDate"), longest.c_str());
    EXPECT_EQ(GetAttrValue("Files", "SymbolSet"), longest.c_str());
}

TEST_F(ProjectFileWriter, TheSameFileIsNotAddedTwice) {
    OpenMain("<Files/>");
    const TrueTypeDetail detail = TrueType();
    Write(File("5", &detail));
    uint32_t result = 0;
    EXPECT_TRUE(Saves([&] { result = Write(File("5", &detail)); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(SavedItems("Files").size(), 1u);
}

TEST_F(ProjectFileWriter, AFileWithAnotherDetailIsAnotherFile) {
    OpenMain("<Files/>");
    TrueTypeDetail detail = TrueType();
    Write(File("5", &detail));
    SetField(detail.symbolSet, "others");
    Write(File("5", &detail));
    EXPECT_EQ(SavedItems("Files").size(), 2u);
}

TEST_F(ProjectFileWriter, AFileThatWasTickedSinceIsAddedAgainUnticked) {
    OpenMain("<Files/>");
    Write(File("2"));
    WriteAttr("Files", "checked", "1");
    Write(File("2"));
    Record ticked = FileRecord("2");
    ticked.back().second = "1";
    EXPECT_EQ(SavedItems("Files"), (Items{ticked, FileRecord("2")}));
}

TEST_F(ProjectFileWriter, NothingElseChanges) {
    OpenMain("<Jobs><Item Name='n'/></Jobs><Files/><More><Files><Item FileID='second'/></Files></More>");
    Write(File("2"));
    EXPECT_EQ(SavedItems("Jobs"), (Items{{{"Name", "n"}}}));
    const std::string saved = UserMainText();
    EXPECT_NE(saved.find("second"), std::string::npos) << saved;
    EXPECT_EQ(saved.find("localpath"), saved.rfind("localpath")) << "the second list was written as well";
}

TEST_F(ProjectFileWriter, FilesAreAppendedInTheOrderOfTheCalls) {
    OpenMain("<Files><Item FileID='old'/></Files>");
    Write(File("8"));
    Write(File("2"));
    EXPECT_EQ(SavedItems("Files"), (Items{{{"FileID", "old"}}, FileRecord("8"), FileRecord("2")}));
}

TEST_F(ProjectFileWriter, AWrittenFileComesBackOnceItIsTicked) {
    OpenMain("<Files/>");
    const TrueTypeDetail detail = TrueType();
    Write(File("5", &detail));
    FileItem first{};
    EXPECT_EQ(GetFiles(&first), 0);
    WriteAttr("Files", "checked", "1");
    ASSERT_EQ(GetFiles(&first), 1);
    EXPECT_STREQ(first.FileID, "fileid");
    EXPECT_STREQ(first.Component, "component");
    EXPECT_STREQ(first.ID, "id");
    EXPECT_STREQ(first.Type, "5");
    EXPECT_STREQ(first.Volume, "volume");
    EXPECT_STREQ(first.Path, "path");
    EXPECT_STREQ(first.LocalPath, "localpath");
    EXPECT_EQ(first.next, nullptr);
}

TEST_F(ProjectFileWriter, AFileThatXmlCannotHoldIsNotWrittenAndTheDocumentIsSaved) {
    OpenMain("<Files/>");
    FileItem file = File("2");
    SetField(file.Path, "a\x1f"
                        "b");
    uint32_t result = 0;
    EXPECT_TRUE(Saves([&] { result = Write(file); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(SavedItems("Files"), Items{});
}

TEST_F(ProjectFileWriter, ACommentAmongTheFilesKeepsNewOnesOut) {
    OpenMain("<Files><!-- note --><Item FileID='old'/></Files>");
    uint32_t result = 0;
    EXPECT_TRUE(Saves([&] { result = Write(File("2")); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(SavedItems("Files"), (Items{{{"FileID", "old"}}}));
}

TEST_F(ProjectFileWriter, NullDoesNothingAtAll) {
    OpenMain("<Files/>");
    uint32_t result = 0;
    EXPECT_FALSE(Saves([&] { result = WritePrjFile(nullptr); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(GetAttrValue("Files", "checked"), "");
}

TEST_F(ProjectFileWriter, WithoutTheContainerTheDocumentIsSavedUnchanged) {
    OpenMain("<Jobs><Item Name='n'/></Jobs>");
    uint32_t result = 0;
    EXPECT_TRUE(Saves([&] { result = Write(File("2")); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(SavedItems("Jobs"), (Items{{{"Name", "n"}}}));
    EXPECT_EQ(UserMainText().find("Files"), std::string::npos) << UserMainText();
}

TEST_F(ProjectFileWriter, WithoutAPerUserCopyTheFileStaysInMemory) {
    InstallMain(Document("<Files/>"));
    const std::string installed = ReadFile(InstalledMainPath());
    Open();
    EXPECT_EQ(Write(File("2")), 1u);
    EXPECT_EQ(GetAttrValue("Files", "FileID"), "fileid");
    EXPECT_FALSE(std::filesystem::exists(UserMainPath()));
    EXPECT_EQ(ReadFile(InstalledMainPath()), installed);
}

TEST_F(ProjectFileWriter, WithoutAnOpenDocumentTheResultIsStillOne) {
    Open();
    EXPECT_EQ(Write(File("2")), 1u);
    EXPECT_FALSE(std::filesystem::exists(UserMainPath()));
}

TEST_F(TestFileNames, AnItemGetsItsIdThenItsValue) {
    OpenMain("<Names/><Files/>");
    WriteTestFileName("Names", "7", "test.prn");
    EXPECT_EQ(SavedItems("Names"), (Items{{{"ID", "7"}, {"Value", "test.prn"}}}));
    EXPECT_EQ(SavedItems("Files"), Items{});
}

TEST_F(TestFileNames, TheHostNamesTheContainer) {
    OpenMain("<A/><B><C/></B>");
    WriteTestFileName("A", "1", "a");
    WriteTestFileName("C", "2", "c");
    EXPECT_EQ(SavedItems("A"), (Items{{{"ID", "1"}, {"Value", "a"}}}));
    EXPECT_EQ(SavedItems("C"), (Items{{{"ID", "2"}, {"Value", "c"}}}));
}

TEST_F(TestFileNames, AnEqualItemIsNotAddedAndTheDocumentIsSaved) {
    OpenMain("<Names/>");
    WriteTestFileName("Names", "7", "test.prn");
    EXPECT_TRUE(Saves([] { WriteTestFileName("Names", "7", "test.prn"); }));
    EXPECT_EQ(SavedItems("Names").size(), 1u);
}

TEST_F(TestFileNames, AnotherValueOfAnIdIsAddedBesideTheFirst) {
    OpenMain("<Names/>");
    WriteTestFileName("Names", "7", "a");
    WriteTestFileName("Names", "7", "A");
    EXPECT_EQ(SavedItems("Names"), (Items{{{"ID", "7"}, {"Value", "a"}}, {{"ID", "7"}, {"Value", "A"}}}));
}

TEST_F(TestFileNames, AnItemThatHasTheIdTwiceCountsAsEqualWhateverItsValue) {
    // As many of its attributes match as there are pairs, although one of the pairs matches none.
    OpenMain("<Names xmlns:p='urn:p'><Item p:ID='7' ID='7'/></Names>");
    WriteTestFileName("Names", "7", "v");
    EXPECT_EQ(GetAttrValue("Names", "Value"), "");
}

TEST_F(TestFileNames, EmptyTextsAreWrittenAsEmptyValues) {
    OpenMain("<Names/>");
    WriteTestFileName("Names", "", "");
    EXPECT_EQ(SavedItems("Names"), (Items{{{"ID", ""}, {"Value", ""}}}));
}

TEST_F(TestFileNames, AMissingContainerLeavesTheDocumentAsItIsAndSavesIt) {
    OpenMain("<Names/>");
    for (const char* element : {"Missing", "names", "", "*", "Names ", "Cordelbox", "a b", "<"}) {
        EXPECT_TRUE(Saves([&] { WriteTestFileName(element, "1", "v"); })) << element;
        EXPECT_EQ(SavedItems("Names"), Items{}) << element;
        EXPECT_EQ(UserMainText().find("Value"), std::string::npos) << element;
    }
}

TEST_F(TestFileNames, AValueThatXmlCannotHoldIsNotWrittenAndTheDocumentIsSaved) {
    OpenMain("<Names/>");
    EXPECT_TRUE(Saves([] { WriteTestFileName("Names", "1", "\x07"); }));
    EXPECT_EQ(SavedItems("Names"), Items{});
}

TEST_F(TestFileNames, WithoutAPerUserCopyTheItemStaysInMemory) {
    InstallMain(Document("<Names/>"));
    Open();
    WriteTestFileName("Names", "7", "test.prn");
    EXPECT_EQ(GetAttrValue1("Names", "ID", "7", "Value"), "test.prn");
    EXPECT_FALSE(std::filesystem::exists(UserMainPath()));
}

TEST_F(TestFileNames, WithoutAnOpenDocumentNothingHappens) {
    Open();
    WriteTestFileName("Names", "7", "test.prn");
    EXPECT_FALSE(std::filesystem::exists(UserMainPath()));
}
