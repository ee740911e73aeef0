// How the encoding of a document shows in its first bytes.

#include "platform/document_encoding.h"

#include "utf16_bytes.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Declared(const std::string& head) { return FindEncoding(head).m_strDeclared; }

bool IsContradictory(const std::string& head) { return FindEncoding(head).IsContradictory(); }

} // namespace

TEST(DocumentEncoding, IsTheOneOfTheDeclarationInUpperCase) {
    EXPECT_EQ(Declared("<?xml version='1.0' encoding='iso-8859-1'?>"), "ISO-8859-1");
    EXPECT_EQ(Declared("<?xml version=\"1.0\" encoding = \"azAZ09\" ?>"), "AZAZ09");
    EXPECT_EQ(Declared("<?xml\tencoding='x'?>"), "X");
    EXPECT_EQ(Declared("<?xml\r\nencoding='x'?>"), "X");
    EXPECT_EQ(Declared("<?xml version='1.0'?>"), "");
}

TEST(DocumentEncoding, IsNotTakenFromWhatIsNoDeclaration) {
    for (const char* const head :
         {"<?xml", "<?xml ", "<?xml~encoding='x'?>", "<?xmlish encoding='x'?>", " <?xml encoding='x'?>",
          "<?xml version='1.0'?><a encoding='x'?>", "<?xml encoding='x?>", "<?xml encoding=x?>", "<?xml encoding?>",
          "<a encoding='x'/>"}) {
        EXPECT_EQ(Declared(head), "") << head;
    }
}

TEST(DocumentEncoding, IsLookedForInTheFirstKibibyte) {
    const std::string declaration = "<?xml version='1.0' encoding='x'";
    const std::string blanks(1024 - declaration.size(), ' ');
    EXPECT_EQ(Declared("<?xml" + blanks + declaration.substr(5) + "?>"), "X");
    EXPECT_EQ(Declared("<?xml " + blanks + declaration.substr(5) + "?>"), "");
}

TEST(DocumentEncoding, OfUtf16ShowsInItsBytes) {
    for (const bool bBigEndian : {false, true}) {
        const EncodingForm form = bBigEndian ? EncodingForm::Utf16BigEndian : EncodingForm::Utf16LittleEndian;
        const std::string text = Utf16("<?xml encoding='utf-16'?>", bBigEndian);
        const DocumentEncoding plain = FindEncoding(text);
        EXPECT_EQ(plain.m_form, form);
        EXPECT_EQ(plain.m_nMarkBytes, 0u);
        EXPECT_EQ(plain.m_strDeclared, "UTF-16");
        const DocumentEncoding marked = FindEncoding((bBigEndian ? "\xFE\xFF" : "\xFF\xFE") + text);
        EXPECT_EQ(marked.m_form, form);
        EXPECT_EQ(marked.m_nMarkBytes, 2u);
        EXPECT_EQ(marked.m_strDeclared, "UTF-16");
        EXPECT_TRUE(marked.IsUtf16());
    }
    const DocumentEncoding utf8 = FindEncoding("\xEF\xBB\xBF<?xml encoding='utf-8'?>");
    EXPECT_EQ(utf8.m_form, EncodingForm::MarkedUtf8);
    EXPECT_EQ(utf8.m_nMarkBytes, 3u);
    EXPECT_EQ(utf8.m_strDeclared, "UTF-8");
    EXPECT_FALSE(utf8.IsUtf16());
    EXPECT_EQ(FindEncoding("<a/>").m_form, EncodingForm::OneByteUnits);
}

TEST(DocumentEncoding, ContradictsItselfWhereTheBytesShowAnotherOne) {
    const auto declaring = [](const char* name) { return "<?xml encoding='" + std::string(name) + "'?>"; };
    for (const char* const name : {"UTF-16", "UTF16", "UCS-2", "ISO-10646-UCS-2"}) {
        EXPECT_TRUE(IsContradictory(declaring(name))) << name;
        EXPECT_TRUE(IsContradictory("\xEF\xBB\xBF" + declaring(name))) << name;
        EXPECT_FALSE(IsContradictory("\xFF\xFE" + Utf16(declaring(name), false))) << name;
        EXPECT_FALSE(IsContradictory("\xFE\xFF" + Utf16(declaring(name), true))) << name;
    }
    for (const char* const name : {"UTF-16LE", "UNICODE"}) {
        EXPECT_TRUE(IsContradictory(declaring(name))) << name;
        EXPECT_FALSE(IsContradictory("\xFF\xFE" + Utf16(declaring(name), false))) << name;
        EXPECT_TRUE(IsContradictory("\xFE\xFF" + Utf16(declaring(name), true))) << name;
    }
    for (const char* const name : {"UTF-16BE", "UNICODEFFFE"}) {
        EXPECT_TRUE(IsContradictory(declaring(name))) << name;
        EXPECT_TRUE(IsContradictory("\xFF\xFE" + Utf16(declaring(name), false))) << name;
        EXPECT_FALSE(IsContradictory("\xFE\xFF" + Utf16(declaring(name), true))) << name;
    }
    for (const char* const name : {"UTF-8", "UTF8"}) {
        EXPECT_FALSE(IsContradictory(declaring(name))) << name;
        EXPECT_FALSE(IsContradictory("\xEF\xBB\xBF" + declaring(name))) << name;
        EXPECT_TRUE(IsContradictory("\xFF\xFE" + Utf16(declaring(name), false))) << name;
    }
    EXPECT_FALSE(IsContradictory(declaring("windows-1252")));
    EXPECT_TRUE(IsContradictory("\xEF\xBB\xBF" + declaring("windows-1252")));
    EXPECT_FALSE(IsContradictory("\xEF\xBB\xBF<a/>")) << "nothing is declared";
}
