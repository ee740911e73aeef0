// What is found in the bytes of a document that the DOM has taken.

#include "markup_check.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// What is wrong, or nothing.
std::string FaultOf(std::string_view bytes) {
    const MarkupFindings findings = CheckMarkup(bytes);
    return findings.m_pFault != nullptr ? findings.m_pFault : "";
}

/// UTF-16 of the text, with or without a mark.
std::string Utf16(std::wstring_view text, bool bBigEndian, bool bMarked) {
    std::string bytes;
    for (const wchar_t unit : (bMarked ? L"\xFEFF" : L"") + std::wstring(text)) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        bytes += bBigEndian ? high : low;
        bytes += bBigEndian ? low : high;
    }
    return bytes;
}

const char* const kUndeclaredElement = "the prefix of an element is not declared";
const char* const kUndeclaredAttribute = "the prefix of an attribute is not declared";
const char* const kUnread = "reference to an entity that is not read";

} // namespace

TEST(Markup, OfADocumentWithoutPrefixesHasNoFault) {
    const MarkupFindings findings = CheckMarkup("<?xml version='1.0'?><r a='1' b=\"2\"><i/>text<j></j></r>");
    EXPECT_EQ(findings.m_pFault, nullptr);
    EXPECT_FALSE(findings.m_bDeclaresAttributes);
}

TEST(Markup, WithAPrefixThatIsNotDeclaredIsMalformed) {
    EXPECT_EQ(CheckMarkup("<p:r/>").m_kind, ReasonKind::Malformed);
    EXPECT_EQ(FaultOf("<p:r/>"), kUndeclaredElement);
    EXPECT_EQ(FaultOf("<r p:a='1'/>"), kUndeclaredAttribute);
    EXPECT_EQ(FaultOf("<r\tp:a='1'/>"), kUndeclaredAttribute);
    EXPECT_EQ(FaultOf("<r\n b = '1'\r\n p:a\n=\n'1' c='2'>"), kUndeclaredAttribute);
    EXPECT_EQ(FaultOf("<r><i></i><p:i/></r>"), kUndeclaredElement);
}

TEST(Markup, KnowsAPrefixWithinTheElementThatDeclaresItAndNotBehind) {
    for (const char* const xml :
         {"<p:r xmlns:p='u'/>", "<r xmlns:p=\"u\"><i><p:i p:a='1'/></i></r>", "<r><i xmlns:p='u'><b/><p:b/></i></r>",
          "<r><i xmlns:p='u'><b></b><p:b/></i></r>", "<r><a/><i xmlns:p='u'><b c='1'/><p:b/></i></r>",
          "<r><i xmlns:p='u'/><i xmlns:p='v'><p:b/></i></r>"}) {
        EXPECT_EQ(FaultOf(xml), "") << xml;
    }
    for (const char* const xml :
         {"<r><i xmlns:p='u'/><p:b/></r>", "<r><i xmlns:p='u'></i><p:b/></r>", "<r><i xmlns:p='u'><b/></i><p:b/></r>",
          "<r><i xmlns:p='u'><b></b></i><p:b/></r>", "<r><i><b xmlns:p='u'/><p:b/></i></r>",
          "<r><a></a><i xmlns:p='u'/><c><p:b/></c></r>"}) {
        EXPECT_EQ(FaultOf(xml), kUndeclaredElement) << xml;
    }
}

TEST(Markup, IsNotTakenFromWhatHoldsText) {
    for (const char* const xml :
         {"<r><!-- <p:a/> --></r>", "<r><![CDATA[<p:a/>]]></r>", "<r><?p <p:a/>?></r>", "<r a='<p:a/>'/>",
          "<r a=\"'\" b='> p:c=\"1\"'/>", "<!-- <p:a/> --><r/>", "<!DOCTYPE r [<!-- ]> <p:a/> -->]><r/>",
          "<!DOCTYPE r [<?p ]> <p:a/>?>]><r/>", "<!DOCTYPE r [<!ENTITY e ']> <p:a/>'>]><r/>",
          "<!DOCTYPE r [<!ENTITY e \"]> <p:a/>\">]><r/>", "<!DOCTYPE r [<!ELEMENT p:r EMPTY>]><r/>"}) {
        EXPECT_EQ(FaultOf(xml), "") << xml;
    }
    for (const char* const xml :
         {"<r><!-- --><p:a/></r>", "<r><![CDATA[ ]]><p:a/></r>", "<r><?p ?><p:a/></r>", "<!DOCTYPE r []><p:a/>",
          "<!DOCTYPE r><p:a/>", "<!DOCTYPE r [<!-- --><?p ?><!ENTITY e 'f'>]><p:a/>",
          "<!DOCTYPE r SYSTEM '>'><p:a/>"}) {
        EXPECT_EQ(FaultOf(xml), kUndeclaredElement) << xml;
    }
}

TEST(Markup, WithMoreEndsThanBeginningsIsReadOn) {
    EXPECT_EQ(FaultOf("</r></r><p:r/>"), kUndeclaredElement);
    EXPECT_EQ(FaultOf("</r></r><r xmlns:p='u'><p:i/></r>"), "");
}

TEST(Markup, EndsWithTheBytesWhereverTheyAreCut) {
    const std::string whole = "<!DOCTYPE r SYSTEM 'x' [<!ENTITY % e 'f'> %e; <!ENTITY g \"h\"><!-- c --><?p q?>]>"
                              "<r a='1'><!-- c --><![CDATA[d]]><?p q?><i b = \"&amp;&g;\" /></r>";
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const std::string fault = FaultOf(whole.substr(0, size));
        EXPECT_TRUE(fault.empty() || fault == kUnread) << size << ": " << fault;
    }
}

TEST(Markup, HasUnreadReferencesWhereDeclarationsAreNotRead) {
    for (const char* const type :
         {"<!DOCTYPE r SYSTEM 'r.dtd'>", "<!DOCTYPE r PUBLIC \"p\" \"r.dtd\">", "<!DOCTYPE r SYSTEM 'r.dtd' []>",
          "<!DOCTYPE r [<!ENTITY % p SYSTEM 'p'> %p; <!ELEMENT r EMPTY>]>"}) {
        EXPECT_EQ(FaultOf(std::string(type) + "<r a='&e;'/>"), kUnread) << type;
        EXPECT_EQ(FaultOf(std::string(type) + "<r a='&lt;b&e;'/>"), kUnread) << type;
        EXPECT_EQ(FaultOf(std::string(type) + "<r a='1'>&e;</r>"), "") << type;
        EXPECT_EQ(FaultOf(std::string(type) + "<r a='&amp;&lt;&gt;&quot;&apos;&#65;&#x41;'/>"), "") << type;
    }
    for (const char* const type :
         {"<!DOCTYPE r [<!ENTITY e 'f'>]>", "<!DOCTYPE r [<!ENTITY % p 'q'>]>", "<!DOCTYPE r [<!ENTITY %\tp 'q'>]>",
          "<!DOCTYPE r [<!ENTITY f \"%\">]>", "<!DOCTYPE r>", ""}) {
        EXPECT_EQ(FaultOf(std::string(type) + "<r a='&e;'/>"), "") << type << ": the DOM has read all declarations";
    }
    for (const char* const entity :
         {"<!ENTITY e 'f'>", "<!ENTITY\n\te\t'f'>", "<!ENTITY d 'f'><!ENTITY e SYSTEM 'e'>"}) {
        const std::string type = "<!DOCTYPE r SYSTEM 'r.dtd' [" + std::string(entity) + "]>";
        EXPECT_EQ(FaultOf(type + "<r a='&e;'/>"), "") << entity << ": declared in the document itself";
        EXPECT_EQ(FaultOf(type + "<r a='&g;'/>"), kUnread) << entity;
    }
}

TEST(Markup, SaysWhetherAttributesAreDeclared) {
    EXPECT_TRUE(CheckMarkup("<!DOCTYPE r [<!ATTLIST r a NMTOKENS #IMPLIED>]><r/>").m_bDeclaresAttributes);
    EXPECT_FALSE(CheckMarkup("<!DOCTYPE r [<!ELEMENT r EMPTY>]><r/>").m_bDeclaresAttributes);
    EXPECT_FALSE(CheckMarkup("<!DOCTYPE r [<!-- <!ATTLIST r a ID #IMPLIED> -->]><r/>").m_bDeclaresAttributes);
    EXPECT_FALSE(CheckMarkup("<!DOCTYPE r []><r><![CDATA[<!ATTLIST>]]></r>").m_bDeclaresAttributes);
}

TEST(Markup, OfUtf16IsReadInEitherOrderOfBytes) {
    for (const bool bBigEndian : {false, true}) {
        for (const bool bMarked : {false, true}) {
            const std::wstring declaration = L"<?xml version='1.0' encoding='UTF-16'?>";
            EXPECT_EQ(FaultOf(Utf16(declaration + L"<r xmlns:p='u' p:a='1'><p:i/></r>", bBigEndian, bMarked)), "");
            EXPECT_EQ(FaultOf(Utf16(declaration + L"<r><p:i/></r>", bBigEndian, bMarked)), kUndeclaredElement);
            // A letter whose low byte is that of a mark.
            EXPECT_EQ(FaultOf(Utf16(declaration + L"<r a='\u0127\u0122\u013C\u013E'><i/></r>", bBigEndian, bMarked)),
                      "");
            EXPECT_EQ(FaultOf(Utf16(declaration + L"<p\u013Ai/>", bBigEndian, bMarked)), "") << "no colon";
            EXPECT_EQ(FaultOf(Utf16(declaration + L"<\u4E01:i xmlns:\u4E01='u'/>", bBigEndian, bMarked)), "");
            EXPECT_EQ(FaultOf(Utf16(declaration + L"<\u4E01:i xmlns:\u4D01='u'/>", bBigEndian, bMarked)),
                      kUndeclaredElement);
        }
    }
}

TEST(Markup, OfUtf16EndsWithItsLastWholeCharacter) {
    EXPECT_EQ(FaultOf(Utf16(L"<r/>", false, true) + "<"), "");
    EXPECT_EQ(FaultOf(Utf16(L"<r/>", true, true) + '\0'), "");
}

TEST(Markup, TellsNamesBeyondAsciiApart) {
    EXPECT_EQ(FaultOf("<\xE4:r xmlns:\xE4='u'/>"), "");
    EXPECT_EQ(FaultOf("<\xE4:r xmlns:\xE5='u'/>"), kUndeclaredElement);
    EXPECT_EQ(FaultOf("\xEF\xBB\xBF<\xC3\xA4:r xmlns:\xC3\xA4='u'/>"), "");
    EXPECT_EQ(FaultOf("\xEF\xBB\xBF<r><p:i/></r>"), kUndeclaredElement);
    EXPECT_EQ(FaultOf("<\x80:r xmlns:\x80='u'/>"), "");
}

TEST(Markup, UnderAMarkThatContradictsTheDeclarationIsOfAWrongEncoding) {
    const MarkupFindings findings = CheckMarkup("\xEF\xBB\xBF<?xml version='1.0' encoding='windows-1252'?><r/>");
    EXPECT_STREQ(findings.m_pFault, "the byte order mark contradicts the declared encoding");
    EXPECT_EQ(findings.m_kind, ReasonKind::Encoding);
    EXPECT_FALSE(findings.m_bDeclaresAttributes);
}
