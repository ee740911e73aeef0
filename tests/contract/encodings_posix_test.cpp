// Documents in other encodings, and bytes above 127: what they read as depends on the code page, which is UTF-8 off
// Windows.

#include "host_test.h"

#include <ostream>
#include <string>

namespace {

struct EncodedDocument {
    const char* name;
    std::string bytes;
    const char* read; // the value as UTF-8
};

void PrintTo(const EncodedDocument& document, std::ostream* stream) { *stream << document.name; }

std::string Declared(const std::string& encoding, const std::string& value) {
    return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?><Cordelbox><Info><Item Name=\"" + value +
           "\"/></Info></Cordelbox>";
}

/// UTF-16 of a document whose value is given in code units, with a byte order mark.
std::string Utf16(bool bBigEndian, const std::u16string& value, const std::string& declaration = "") {
    std::u16string text = u"\uFEFF";
    text.append(declaration.begin(), declaration.end());
    text += u"<Cordelbox><Info><Item Name=\"" + value + u"\"/></Info></Cordelbox>";
    std::string bytes;
    for (const char16_t unit : text) {
        const char high = static_cast<char>(unit >> 8);
        const char low = static_cast<char>(unit & 0xFF);
        bytes += bBigEndian ? high : low;
        bytes += bBigEndian ? low : high;
    }
    return bytes;
}

const EncodedDocument kEncodedDocuments[] = {
    {"Utf8", Declared("UTF-8", "D\xC3\xBCsseldorf \xF0\x9F\x96\xA8"), "D\xC3\xBCsseldorf \xF0\x9F\x96\xA8"},
    {"Utf8InSmallLetters", Declared("utf-8", "\xE2\x82\xAC"), "\xE2\x82\xAC"},
    {"Utf8Undeclared", "<Cordelbox><Info><Item Name=\"\xE2\x82\xAC\"/></Info></Cordelbox>", "\xE2\x82\xAC"},
    {"Ascii", Declared("US-ASCII", "Duesseldorf"), "Duesseldorf"},
    {"Utf16LittleEndian", Utf16(false, u"D\u00FCsseldorf \u65E5\u672C"), "D\xC3\xBCsseldorf \xE6\x97\xA5\xE6\x9C\xAC"},
    {"Utf16BigEndian", Utf16(true, u"D\u00FCsseldorf \u65E5\u672C"), "D\xC3\xBCsseldorf \xE6\x97\xA5\xE6\x9C\xAC"},
    {"Utf16Declared", Utf16(false, u"\u20AC", "<?xml version=\"1.0\" encoding=\"UTF-16\"?>"), "\xE2\x82\xAC"},
    {"Utf16BeyondTheFirstPlane", Utf16(false, u"\xD83D\xDDA8"), "\xF0\x9F\x96\xA8"},
    {"Iso88591", Declared("ISO-8859-1", "D\xFCsseldorf"), "D\xC3\xBCsseldorf"},
    {"Iso88592", Declared("ISO-8859-2", "\xA3\xF3\x64\xBC"), "\xC5\x81\xC3\xB3\x64\xC5\xBA"},
    {"Iso885915", Declared("ISO-8859-15", "\xA4"), "\xE2\x82\xAC"},
    {"Windows1252", Declared("windows-1252", "\x80 D\xFCsseldorf"), "\xE2\x82\xAC D\xC3\xBCsseldorf"},
    {"Windows1251", Declared("windows-1251", "\xCC\xEE\xF1\xEA\xE2\xE0"),
     "\xD0\x9C\xD0\xBE\xD1\x81\xD0\xBA\xD0\xB2\xD0\xB0"},
    {"ShiftJis", Declared("Shift_JIS", "\x93\xFA\x96\x7B \xB6"), "\xE6\x97\xA5\xE6\x9C\xAC \xEF\xBD\xB6"},
    {"ShiftJisWithASecondByteOfAscii", Declared("Shift_JIS", "\x95\x5C\x83\x5E"), "\xE8\xA1\xA8\xE3\x82\xBF"},
};

} // namespace

class EncodedDocuments : public HostTest, public ::testing::WithParamInterface<EncodedDocument> {};

TEST_P(EncodedDocuments, ReadInTheCodePage) {
    InstallMain(GetParam().bytes);
    Open();
    EXPECT_EQ(GetAttrValue("Info", "Name"), GetParam().read);
}

TEST_P(EncodedDocuments, AreSavedAsUtf8AndLoadAgain) {
    InstallMain(GetParam().bytes);
    CopyMainForUser(GetParam().bytes);
    Open();
    WriteAttr("Info", "Missing", "");
    EXPECT_EQ(SavedItems("Info"), (Records{Record{{"Name", GetParam().read}}}));
    CloseAll();
    Open();
    EXPECT_EQ(GetAttrValue("Info", "Name"), GetParam().read);
}

INSTANTIATE_TEST_SUITE_P(Each, EncodedDocuments, ::testing::ValuesIn(kEncodedDocuments),
                         [](const auto& document) { return std::string(document.param.name); });

class Utf8CodePage : public HostTest {
protected:
    /// Writes the value over an attribute and returns what is read back, from memory and from the saved document.
    std::string WrittenAndRead(const AnsiString& value) {
        WriteAttr("Info", "Name", value);
        const std::string inMemory = GetAttrValue("Info", "Name").c_str();
        EXPECT_EQ(SavedItems("Info"), (Records{Record{{"Name", inMemory}}}));
        CloseAll();
        Open();
        EXPECT_EQ(GetAttrValue("Info", "Name"), inMemory.c_str());
        return inMemory;
    }

    void SetUp() override {
        HostTest::SetUp();
        OpenMain("<Info><Item Name=\"unchanged\"/></Info>");
    }
};

TEST_F(Utf8CodePage, EveryLengthOfCharacterSurvives) {
    const char* const value = "a \xC3\xA9 \xE2\x82\xAC \xF0\x9F\x96\xA8 \xF4\x8F\xBF\xBD \xC2\x85 \xE2\x80\xA8";
    EXPECT_EQ(WrittenAndRead(value), value);
}

TEST_F(Utf8CodePage, NamesMayHoldAnyLetters) {
    CopyPrinterForUser("printer.xml", Document("<B\xC3\xBCro><Item Gr\xC3\xB6\xC3\x9F"
                                               "e=\"12\"/></B\xC3\xBCro>"));
    OpenPrinter("printer.xml");
    EXPECT_EQ(GetAttrValue("B\xC3\xBCro", "Gr\xC3\xB6\xC3\x9F"
                                          "e"),
              "12");
    WriteAttr("B\xC3\xBCro",
              "Gr\xC3\xB6\xC3\x9F"
              "e",
              "14");
    EXPECT_EQ(SavedPrinterItems("printer.xml", "B\xC3\xBCro"), (Records{Record{{"Gr\xC3\xB6\xC3\x9F"
                                                                                "e",
                                                                                "14"}}}));
}

TEST_F(Utf8CodePage, FileNamesMayHoldAnyLetters) {
    InstallPrinter("B\xC3\xBCro.xml", Document("<Info><Item Name=\"office\"/></Info>"));
    EXPECT_NE(OpenPrinter("B\xC3\xBCro.xml"), nullptr);
    EXPECT_EQ(GetAttrValue("Info", "Name"), "office");
}

TEST_F(Utf8CodePage, EachIllFormedPartIsStoredAsOneReplacementCharacter) {
    struct Case {
        const char* written;
        const char* read;
    };
    const Case cases[] = {
        {"a\x80z", "a\xEF\xBF\xBDz"},                                             // a following byte alone
        {"a\xC3", "a\xEF\xBF\xBD"},                                               // cut at the end
        {"a\xC3z", "a\xEF\xBF\xBDz"},                                             // cut in the middle
        {"\xE2\x82z", "\xEF\xBF\xBDz"},                                           // two of three bytes
        {"\xF0\x9F\x96z", "\xEF\xBF\xBDz"},                                       // three of four bytes
        {"\xF0\x9F\x96\xC3\xA9", "\xEF\xBF\xBD\xC3\xA9"},                         // a character follows at once
        {"\xFF\xFE", "\xEF\xBF\xBD\xEF\xBF\xBD"},                                 // never in UTF-8
        {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},                                 // overlong, two bytes
        {"\xE0\x80\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},                 // overlong, three bytes
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},                 // half a surrogate pair
        {"\xF4\x90\x80\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"}, // beyond the last character
        {"\xF5z", "\xEF\xBF\xBDz"},                                               // never a first byte
    };
    for (const Case& text : cases) {
        EXPECT_EQ(WrittenAndRead(text.written), text.read);
    }
}

TEST_F(Utf8CodePage, CharactersThatXmlCannotHoldAreRefused) {
    for (const char* const value : {"a\xEF\xBF\xBEz", "a\xEF\xBF\xBFz"}) { // U+FFFE, U+FFFF
        EXPECT_EQ(WrittenAndRead(value), "unchanged");
    }
}

TEST_F(Utf8CodePage, AnItemWithIllFormedBytesIsNotAddedTwice) {
    OpenPrinterWith("printer.xml", "<List/>");
    WriteTestFileName("List", "1", "a\xFF");
    WriteTestFileName("List", "1", "a\xFF");
    EXPECT_EQ(SavedPrinterItems("printer.xml", "List"), (Records{Record{{"ID", "1"}, {"Value", "a\xEF\xBF\xBD"}}}));
}

TEST_F(Utf8CodePage, IllFormedBytesFindWhatTheyWereStoredAs) {
    WriteAttr("Info", "Name", "a\xFF");
    EXPECT_EQ(GetAttrValue1("Info", "Name", "a\xFF", "Name"), "a\xEF\xBF\xBD");
}

TEST_F(Utf8CodePage, APathOfIllFormedBytesIsInConflictWithWhatItWasStoredAs) {
    OpenPrinterWith("printer.xml", "<Files><Item LocalPath=\"\"/></Files>");
    WriteAttr("Files", "LocalPath", "c:\xFF\xC3");
    EXPECT_EQ(IsPathConflict("C:\xFF\xC3"), 1u);
    EXPECT_EQ(IsPathConflict("C:\xFF"), 0u);
}

TEST_F(Utf8CodePage, AMissOfTheFilteredGetterReturnsTheCallersIllFormedBytes) {
    EXPECT_EQ(GetAttrValue1("Info", "Name", "a\xFF\xC3", "Name"), "a\xFF\xC3");
    EXPECT_EQ(GetXMLString1("Info", "Name", "a\xFF\xC3", "Name"), "a\xFF\xC3");
}

TEST_F(Utf8CodePage, IllFormedNamesFindNothing) {
    EXPECT_EQ(GetAttrValue("In\xFFo", "Name"), "");
    EXPECT_EQ(GetAttrValue("Info", "N\xFFme"), "");
    EXPECT_EQ(GetAttrValue1("Info", "N\xFFme", "unchanged", "Name"), "unchanged");
    EXPECT_EQ(WriteAttr("Info", "N\xFFme", "changed"), 1u);
    EXPECT_EQ(GetAttrValue("Info", "Name"), "unchanged");
}
