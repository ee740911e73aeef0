// From bytes to a tree: what is kept, what is refused, and the limits at their edges.

#include "tree_builder.h"

#include "document_source.h"
#include "engine_document.h"
#include "entity_nesting.h"
#include "platform/document_limits.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

constexpr const char* kRefused = "(refused)";

bool Builds(const std::string& xml, BuiltDocument& document, CReason* reason = nullptr) {
    const CMemoryFile file(xml);
    CDocumentSource source;
    return source.Open(file.Path(), reason) && BuildTree(source.Text(), document, reason);
}

bool Builds(const std::string& xml) {
    BuiltDocument document;
    return Builds(xml, document);
}

/// Why a document is refused.
CReason Refusal(const std::string& xml) {
    BuiltDocument document;
    CReason reason;
    EXPECT_FALSE(Builds(xml, document, &reason)) << xml;
    return reason;
}

/// The tree as text without blanks of its own.
std::string Tree(const std::string& xml) {
    BuiltDocument document;
    if (!Builds(xml, document)) {
        return kRefused;
    }
    std::ostringstream text;
    document.m_tree.save(text, "", pugi::format_raw | pugi::format_no_declaration);
    return text.str();
}

std::string Nested(std::size_t depth) {
    std::string xml;
    for (std::size_t level = 0; level < depth; ++level) {
        xml += "<a>";
    }
    for (std::size_t level = 0; level < depth; ++level) {
        xml += "</a>";
    }
    return xml;
}

/// Entities of which each names the next, the innermost first or last.
std::string EntityDeclarations(std::size_t count, bool bForwards) {
    std::string declarations;
    for (std::size_t step = 0; step < count; ++step) {
        const std::size_t number = bForwards ? step : count - 1 - step;
        const std::string text = number + 1 < count ? "&e" + std::to_string(number + 1) + ";" : "end";
        declarations += "<!ENTITY e" + std::to_string(number) + " '" + text + "'>";
    }
    return declarations;
}

std::string EntityChain(std::size_t count, bool bForwards) {
    return "<!DOCTYPE r [" + EntityDeclarations(count, bForwards) + "]>";
}

/// A document whose entity makes many bytes of few.
std::string Amplified(std::size_t entityBytes, std::size_t uses) {
    std::string xml = "<!DOCTYPE a [<!ENTITY e \"" + std::string(entityBytes, 'x') + "\">]><a>";
    for (std::size_t use = 0; use < uses; ++use) {
        xml += "&e;";
    }
    return xml + "</a>";
}

} // namespace

TEST(TreeBuilder, KeepsEveryKindOfNode) {
    const std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><!--before--><?pi data?><!DOCTYPE r><r a=\"1\">"
                            "text<!--in--><?pi2 more?><![CDATA[raw <&>]]><b/></r><!--after-->";
    EXPECT_EQ(Tree(xml), xml);
}

TEST(TreeBuilder, KeepsTextInItsPlaceBesideEveryKindOfNode) {
    const std::string xml = "<r>1<a/>2<!--c-->3<?p d?>4<![CDATA[s]]>5</r>";
    EXPECT_EQ(Tree(xml), xml);
}

TEST(TreeBuilder, DropsTextThatIsOnlyWhiteSpace) {
    EXPECT_EQ(Tree("<r> \t\r\n<a/>\n\n<b> </b>&#32;&#9;</r>"), "<r><a/><b/></r>");
}

TEST(TreeBuilder, KeepsWhiteSpaceWithinText) { EXPECT_EQ(Tree("<r>  a  b </r>"), "<r>  a  b </r>"); }

TEST(TreeBuilder, KeepsWhiteSpaceInCdata) { EXPECT_EQ(Tree("<r><![CDATA[ ]]></r>"), "<r><![CDATA[ ]]></r>"); }

TEST(TreeBuilder, KeepsAnEmptyCdataSection) { EXPECT_EQ(Tree("<r><![CDATA[]]></r>"), "<r><![CDATA[]]></r>"); }

TEST(TreeBuilder, JoinsTextThatReferencesDivide) { EXPECT_EQ(Tree("<r>a&#66;&amp;c</r>"), "<r>aB&amp;c</r>"); }

TEST(TreeBuilder, KeepsAttributesInTheirOrder) {
    EXPECT_EQ(Tree("<r z='1' a='2' p:m='3' xmlns:p='u'/>"), "<r z=\"1\" a=\"2\" p:m=\"3\" xmlns:p=\"u\"/>");
}

TEST(TreeBuilder, AddsTheDefaultsThatTheDeclarationGives) {
    EXPECT_EQ(Tree("<!DOCTYPE r [<!ATTLIST r a CDATA 'd'>]><r/>"),
              "<!DOCTYPE r [<!ATTLIST r a CDATA 'd'>]><r a=\"d\"/>");
}

TEST(TreeBuilder, KeepsTheDeclarationWithItsCommentsAndInstructions) {
    const std::string xml = "<!DOCTYPE r [\n<!--c--><?pi d?><!ENTITY e \"<x/>\"> ]><r/>";
    EXPECT_EQ(Tree(xml), xml);
}

TEST(TreeBuilder, KeepsTheDeclarationWhateverStandsBeforeIt) {
    EXPECT_EQ(Tree("<!--<!DOCTYPE no>--><?pi <!DOCTYPE no>?>\n <!DOCTYPE r  SYSTEM 'x.dtd' ><r/>"),
              "<!--<!DOCTYPE no>--><?pi <!DOCTYPE no>?><!DOCTYPE r  SYSTEM 'x.dtd' ><r/>");
}

TEST(TreeBuilder, KeepsADeclarationThatSpeaksOfAnotherOne) {
    const std::string declaration = "<!DOCTYPE r [<!--<!DOCTYPE no>-->]><r/>";
    for (const char* const before : {"", "<!--<!DOCTYPE no>-->", "<?pi <!DOCTYPE no>?>", "<?pi d?><!--<!DOCTYPE no>-->",
                                     "<!--c--><?pi <!DOCTYPE no>?>"}) {
        EXPECT_EQ(Tree(before + declaration), before + declaration);
    }
}

TEST(TreeBuilder, MakesEveryLineEndOfTheDeclarationALineFeed) {
    EXPECT_EQ(Tree("<!DOCTYPE r\r\n[\r<!ENTITY e 'x'>\n\r]\r><r/>"), "<!DOCTYPE r\n[\n<!ENTITY e 'x'>\n\n]\n><r/>");
    EXPECT_EQ(Tree("<!DOCTYPE r\r><r/>"), "<!DOCTYPE r\n><r/>");
}

TEST(TreeBuilder, TakesAnyNumberOfNames) {
    std::string xml = "<r>";
    for (int number = 0; number < 600; ++number) {
        const std::string name = "N" + std::to_string(number);
        xml += "<i " + name + "=\"" + name + "\"/>";
    }
    xml += "</r>";
    EXPECT_EQ(Tree(xml), xml);
}

TEST(TreeBuilder, SaysThatTheDocumentIsUtf8WhenItSaidAnything) {
    EXPECT_EQ(Tree("<?xml version='1.0' encoding='ISO-8859-1'?><r a='\xE4'/>"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><r a=\"\xC3\xA4\"/>");
    EXPECT_EQ(Tree("<?xml version='1.0'?><r/>"), "<?xml version=\"1.0\"?><r/>");
    EXPECT_EQ(Tree("<?xml version='1.0' standalone='yes'?><r/>"), "<?xml version=\"1.0\" standalone=\"yes\"?><r/>");
    EXPECT_EQ(Tree("<?xml version='1.0' standalone='no'?><r/>"), "<?xml version=\"1.0\" standalone=\"no\"?><r/>");
    EXPECT_EQ(Tree("\xEF\xBB\xBF<r/>"), "<r/>");
}

TEST(TreeBuilder, ExpandsInternalEntities) {
    EXPECT_EQ(Tree("<!DOCTYPE r [<!ENTITY e 'v'>]><r a='&e;'>&e;</r>"),
              "<!DOCTYPE r [<!ENTITY e 'v'>]><r a=\"v\">v</r>");
}

TEST(TreeBuilder, RefusesWhatIsNotWellFormed) {
    for (const char* const xml : {"text",
                                  "<a>",
                                  "</a>",
                                  "<a></b>",
                                  "<a/><b/>",
                                  "<a b='1' b='2'/>",
                                  "<a b=1/>",
                                  "<a b/>",
                                  "<a><</a>",
                                  "<a>&</a>",
                                  "<a>&undefined;</a>",
                                  "<a>&#0;</a>",
                                  "<a>&#xFFFE;</a>",
                                  "<a>\x01</a>",
                                  "<a>\xFF</a>",
                                  "<a>\xC3</a>",
                                  "<a>]]></a>",
                                  "<!-- -- --><a/>",
                                  "<a/>trailing",
                                  " <?xml version='1.0'?><a/>",
                                  "<?xml version='2'?><a>",
                                  "<?xml version='1.0' encoding?><a/>",
                                  "<?xml version='1.0' encoding='{|}~'?><a/>",
                                  "<?xml version='1.0' encoding='ASCII//IGNORE'?><a/>",
                                  "<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>",
                                  "<1a/>",
                                  "<a 1b=''/>",
                                  "<a b='<'/>",
                                  "<?XML v?><a/>"}) {
        EXPECT_EQ(Tree(xml), kRefused) << xml;
    }
}

TEST(TreeBuilder, RefusesAZeroByteWhereverItStands) {
    const std::string xml = "<a b='1'>t</a>";
    for (std::size_t position = 0; position <= xml.size(); ++position) {
        std::string with = xml;
        with.insert(position, 1, '\0');
        EXPECT_EQ(Tree(with), kRefused) << position;
    }
}

TEST(TreeBuilder, NeverReadsAnythingExternal) {
    const std::string external = "<!DOCTYPE r SYSTEM '/etc/hostname' [<!ENTITY e SYSTEM '/etc/hostname'>"
                                 "<!ENTITY % p SYSTEM '/etc/hostname'> %p;]><r/>";
    EXPECT_EQ(Tree(external), external);
}

TEST(TreeBuilder, RefusesAReferenceToAnExternalEntity) {
    const std::string declaration = "<!DOCTYPE r [<!ENTITY e SYSTEM 'x.xml'><!ENTITY in '&e;'>]>";
    for (const char* const element : {"<r>&e;</r>", "<r>&in;</r>", "<r a='&e;'/>", "<r a='&in;'/>"}) {
        EXPECT_EQ(Tree(declaration + element), kRefused) << element;
    }
    EXPECT_STREQ(Refusal(declaration + "<r>&e;</r>").m_strWords.c_str(), "reference to an entity that is not read");
}

TEST(TreeBuilder, RefusesAReferenceToWhatMayBeDeclaredWhereNothingIsRead) {
    for (const std::string declaration :
         {"<!DOCTYPE r SYSTEM 'x.dtd'>", "<!DOCTYPE r PUBLIC 'x' 'x.dtd'>",
          "<!DOCTYPE r SYSTEM 'x.dtd' [<!ENTITY i 'i'>]>",
          "<!DOCTYPE r [<!ENTITY % p SYSTEM 'x.dtd'> %p; <!ENTITY e 'behind'>]>",
          "<!DOCTYPE r [<!ENTITY % p '<!ENTITY e \"in\">'> %p;]>", "<!DOCTYPE r [%p;]>"}) {
        EXPECT_NE(Tree(declaration + "<r a='&amp;&lt;&#38;'>&gt;</r>"), kRefused) << declaration;
        for (const char* const element :
             {"<r>&e;</r>", "<r>a&e;b</r>", "<r a='&e;'/>", "<r><i a='1' b='x&amp;&e;'/></r>"}) {
            EXPECT_EQ(Tree(declaration + element), kRefused) << declaration << element;
        }
    }
}

TEST(TreeBuilder, TakesAmpersandsThatBeginNoReferenceWhereNotEverythingIsRead) {
    for (const char* const comment : {"a & b", "a & b & c", "&;", "a && b"}) {
        const std::string xml = "<!DOCTYPE r SYSTEM 'x.dtd' [<!--" + std::string(comment) + "-->]><r/>";
        EXPECT_EQ(Tree(xml), xml);
    }
}

TEST(TreeBuilder, RefusesSuchAReferenceInAnEntityAndInADefault) {
    EXPECT_EQ(Tree("<!DOCTYPE r SYSTEM 'x.dtd' [<!ENTITY i \"<b a='&e;'/>\">]><r>&i;</r>"), kRefused);
    EXPECT_EQ(Tree("<!DOCTYPE r SYSTEM 'x.dtd' [<!ENTITY i \"<b a='&#38;e;'/>\">]><r>&i;</r>"), kRefused);
    EXPECT_EQ(Tree("<!DOCTYPE r SYSTEM 'x.dtd' [<!ATTLIST r a CDATA '1&e;2'>]><r/>"), kRefused);
    EXPECT_EQ(Tree("<!DOCTYPE r SYSTEM 'x.dtd' [<!ENTITY i 'v'><!ATTLIST r a CDATA '1&i;2'>]><r b='&i;'>&i;</r>"),
              "<!DOCTYPE r SYSTEM 'x.dtd' [<!ENTITY i 'v'><!ATTLIST r a CDATA '1&i;2'>]><r b=\"v\" a=\"1v2\">v</r>");
}

TEST(TreeBuilder, KeepsCarriageReturnsOfEntitiesWhereTheyCanBeWritten) {
    BuiltDocument document;
    ASSERT_TRUE(Builds("<!DOCTYPE r [<!ENTITY e '<![CDATA[a&#13;b]]>c<![CDATA[&#13;]]><!--a&#13;b&#13;&#10;c--><?p "
                       "a&#13;b&#13;&#10;c?>'>]>"
                       "<r>&e;</r>",
                       document));
    const pugi::xml_node text = document.m_tree.document_element().first_child();
    EXPECT_EQ(text.type(), pugi::node_pcdata);
    EXPECT_STREQ(text.value(), "a\rb");
    EXPECT_STREQ(text.next_sibling().value(), "c");
    const pugi::xml_node section = text.next_sibling().next_sibling();
    EXPECT_EQ(section.type(), pugi::node_cdata);
    EXPECT_STREQ(section.value(), "\n");
    EXPECT_STREQ(section.next_sibling().value(), "a\nb\nc");
    EXPECT_STREQ(section.next_sibling().next_sibling().value(), "a\nb\nc");
}

TEST(TreeBuilder, TakesPrefixesThatAreDeclared) {
    for (const char* const xml :
         {"<p:r xmlns:p=\"u\" p:a=\"1\"/>", "<r xmlns:p=\"u\"><i p:a=\"1\"/></r>", "<r xml:lang=\"en\"/>",
          "<r xmlns=\"u\" a=\"1\"/>", "<r xmlns=\"\"/>", "<r xmlns:p=\"u\" xmlns=\"u\" p:a=\"1\" a=\"2\"/>",
          "<r xmlns:p=\"u\" xmlns:q=\"v\" p:a=\"1\" q:a=\"2\"/>",
          "<r xmlns:xml=\"http://www.w3.org/XML/1998/namespace\"/>"}) {
        EXPECT_EQ(Tree(xml), xml);
    }
    EXPECT_NE(Tree("<!DOCTYPE r [<!ATTLIST r xmlns:p CDATA 'u'>]><r p:a='1'/>"), kRefused);
}

TEST(TreeBuilder, RefusesNamesThatBreakTheRulesOfNamespaces) {
    for (const char* const xml : {
             "<p:r/>",                                               // not declared
             "<r p:a='1'/>",                                         //
             "<r><i xmlns:p='u'/><i p:a='1'/></r>",                  // no longer declared
             "<r><i xmlns:p='u'><b/></i><p:i/></r>",                 //
             "<r xmlns:p='u' p:a:b='1'/>",                           // two colons
             "<p:r:s xmlns:p='u'/>",                                 //
             "<:r/>",                                                // half a name
             "<r :a='1'/>",                                          //
             "<r xmlns:p='u' p:='1'/>",                              //
             "<p:1 xmlns:p='u'/>",                                   //
             "<r xmlns:p='u' xmlns:q='u' p:a='1' q:a='2'/>",         // one expanded name
             "<r xmlns:p='u'><i xmlns:q='u' p:a='1' q:a='2'/></r>",  //
             "<r xmlns:p=''/>",                                      // declarations that are not allowed
             "<r xmlns:='u'/>",                                      //
             "<r xmlns:xml='u'/>",                                   //
             "<r xmlns:xmlns='u'/>",                                 //
             "<xmlns:r/>",                                           //
             "<r xmlns:p='http://www.w3.org/XML/1998/namespace'/>",  //
             "<r xmlns='http://www.w3.org/2000/xmlns/'/>",           //
             "<!DOCTYPE r [<!ATTLIST i p:a CDATA 'd'>]><r><i/></r>", // by default
         }) {
        EXPECT_EQ(Tree(xml), kRefused) << xml;
    }
}

TEST(TreeBuilder, TakesManyPrefixesWithoutLookingThroughThem) {
    std::string xml = "<r";
    for (int number = 0; number < 20000; ++number) {
        xml += " xmlns:p" + std::to_string(number) + "=\"u" + std::to_string(number) + "\"";
    }
    for (int number = 0; number < 20000; ++number) {
        xml += " p" + std::to_string(number) + ":a=\"1\"";
    }
    EXPECT_EQ(Tree(xml + "/>"), xml + "/>");
}

TEST(TreeBuilder, SaysWhereAndWhyADocumentIsRefused) {
    const CReason reason = Refusal("<r>\n  <p:a/>\n</r>");
    EXPECT_EQ(reason.m_kind, ReasonKind::Malformed);
    EXPECT_EQ(reason.m_nLine, 2u);
    EXPECT_EQ(reason.m_nColumn, 3u);
    EXPECT_STREQ(reason.m_strWords.c_str(), "the prefix of an element is not declared");
    const CReason crossed = Refusal("<r>\n<a></b></r>");
    EXPECT_EQ(crossed.m_kind, ReasonKind::Malformed);
    EXPECT_EQ(crossed.m_nLine, 2u);
    EXPECT_STREQ(crossed.m_strWords.c_str(), "mismatched tag");
    EXPECT_EQ(Refusal(Nested(kMaxElementDepth + 1)).m_kind, ReasonKind::TooDeep);
    std::string undeclared = Nested(kMaxElementDepth);
    undeclared.insert(undeclared.find("</a>"), "<p:a/>");
    EXPECT_EQ(Refusal(undeclared).m_kind, ReasonKind::TooDeep) << "the first reason of two";
    EXPECT_EQ(Refusal("<?xml version='1.0' encoding='no-such'?><r/>").m_kind, ReasonKind::Encoding);
    EXPECT_EQ(Refusal("\xFF\xFE").m_kind, ReasonKind::Malformed);
}

TEST(TreeBuilder, TakesEntitiesUpToTheGreatestNesting) {
    ASSERT_EQ(kMaxEntityNesting, 20u);
    for (const bool bForwards : {true, false}) {
        EXPECT_TRUE(Builds(EntityChain(kMaxEntityNesting, bForwards) + "<r a='&e0;'>&e0;</r>"));
        const std::string tooDeep = EntityChain(kMaxEntityNesting + 1, bForwards);
        for (const char* const element : {"<r>&e0;</r>", "<r a='&e0;'/>", "<r/>"}) {
            EXPECT_FALSE(Builds(tooDeep + element)) << element;
        }
    }
    EXPECT_STREQ(Refusal(EntityChain(kMaxEntityNesting + 1, true) + "<r/>").m_strWords.c_str(),
                 "entities lie too deep within each other");
}

TEST(TreeBuilder, CountsTheNestingOfEntitiesAndNotTheirNumber) {
    std::string declarations;
    std::string uses;
    for (int number = 0; number < 1000; ++number) {
        const std::string name = std::to_string(number);
        declarations += "<!ENTITY i" + name + " 'x'><!ENTITY o" + name + " '&i" + name + ";&i0;&i0;'>";
        uses += "&o" + name + ";";
    }
    EXPECT_TRUE(Builds("<!DOCTYPE r [" + declarations + "]><r>" + uses + "</r>"));
}

TEST(TreeBuilder, CountsTheDeepestOfTheEntitiesThatOneNames) {
    // "both" names the chain, and an entity that is declared behind it and lies less deep.
    const std::string declarations =
        EntityDeclarations(kMaxEntityNesting - 1, true) + "<!ENTITY both '&e0;&late;'><!ENTITY late 'x'>";
    EXPECT_TRUE(Builds("<!DOCTYPE r [" + declarations + "]><r>&both;</r>"));
    EXPECT_FALSE(Builds("<!DOCTYPE r [" + declarations + "<!ENTITY outer '&both;'>]><r>&outer;</r>"));
}

TEST(TreeBuilder, TakesAnEntityThatNamesAnUnknownOneAsLongAsNobodyUsesIt) {
    EXPECT_TRUE(Builds("<!DOCTYPE r [<!ENTITY e '&unknown;'>]><r/>"));
    EXPECT_FALSE(Builds("<!DOCTYPE r [<!ENTITY e '&unknown;'>]><r>&e;</r>"));
}

TEST(TreeBuilder, TakesNoParameterEntityForOneOfTheContent) {
    EXPECT_TRUE(Builds("<!DOCTYPE r SYSTEM 'x.dtd' [<!ENTITY % e 'v'>]><r/>"));
    EXPECT_FALSE(Builds("<!DOCTYPE r SYSTEM 'x.dtd' [<!ENTITY % e 'v'>]><r a='&e;'/>"));
}

TEST(TreeBuilder, TakesTheFirstDeclarationOfAnEntity) {
    const std::string chain = EntityDeclarations(kMaxEntityNesting, true);
    EXPECT_EQ(Tree("<!DOCTYPE r [<!ENTITY e 'first'><!ENTITY e 'second'>]><r>&e;</r>"),
              "<!DOCTYPE r [<!ENTITY e 'first'><!ENTITY e 'second'>]><r>first</r>");
    EXPECT_TRUE(Builds("<!DOCTYPE r [<!ENTITY e 'first'>" + chain + "<!ENTITY e '&e0;'>]><r>&e;</r>"));
    EXPECT_EQ(Tree("<!DOCTYPE r SYSTEM 'x.dtd' [<!ENTITY e 'a'><!ENTITY e 'b'><!ENTITY f '&g;'>]><r>&e;</r>"), kRefused)
        << "an entity that is declared twice stands for no other";
}

TEST(TreeBuilder, RefusesADeepChainOfEntitiesInADefault) {
    EXPECT_FALSE(Builds("<!DOCTYPE r [" + EntityDeclarations(kMaxEntityNesting + 1, false) +
                        "<!ATTLIST r a CDATA '&e0;'>]><r/>"));
}

TEST(TreeBuilder, TakesDefaultsUpToTheLargestTreeAndRefusesOneMore) {
    constexpr std::size_t kBytes = std::size_t{1} << 20; // of one, with its name
    std::string xml = "<!DOCTYPE r [<!ATTLIST i a CDATA '" + std::string(kBytes - 1, 'd') + "'>]><r>";
    for (std::size_t count = 0; count < kMaxDocumentBytes / kBytes; ++count) {
        xml += "<i/>";
    }
    EXPECT_TRUE(Builds(xml + "</r>"));
    EXPECT_EQ(Refusal(xml + "<i/></r>").m_kind, ReasonKind::TooLarge);
}

TEST(TreeBuilder, CountsTheBytesOfDefaultsOnly) {
    BuiltDocument document;
    ASSERT_TRUE(Builds("<!DOCTYPE r [<!ATTLIST i d CDATA 'xy' e CDATA 'z'>]>"
                       "<r f='1'><i/><i a='1' b='2' c='3'/><i d='xy'/><i d='xy' e='z'/></r>",
                       document));
    EXPECT_EQ(document.m_nDefaultBytes, 3u + 2u + 3u + 2u + 2u);
}

TEST(TreeBuilder, RefusesExpansionInTheDeclarationThatASmallerDocumentCouldNotHave) {
    // Large enough for the expansion in the content; but what stands in the declaration stays there when rows go.
    const std::string declaration =
        "<!DOCTYPE r [<!ENTITY e '" + std::string(64 << 10, 'x') + "'><!ATTLIST r a CDATA '";
    std::string uses;
    for (int use = 0; use < 200; ++use) {
        uses += "&e;";
    }
    EXPECT_FALSE(Builds(declaration + uses + "'>]><r>" + std::string(1 << 20, 'y') + "</r>"));
    EXPECT_TRUE(Builds(declaration + uses.substr(0, 300) + "'>]><r/>"));
}

TEST(TreeBuilder, RefusesExpansionInTheDeclarationBeyondTheThresholdHoweverLittleItMultiplies) {
    const std::string large(std::size_t{1} << 20, 'x');
    const auto withUses = [&](const std::string& uses) {
        return "<!DOCTYPE r [<!ENTITY e '" + large + "'><!ATTLIST r a CDATA '" + uses + "'>]><r a=''/>";
    };
    EXPECT_TRUE(Builds(withUses("&e;&e;&e;&e;")));
    EXPECT_FALSE(Builds(withUses("&e;&e;&e;&e;&e;&e;&e;&e;")));
}

TEST(TreeBuilder, TakesElementsUpToTheGreatestDepth) {
    ASSERT_EQ(kMaxElementDepth, 1000u);
    EXPECT_TRUE(Builds(Nested(kMaxElementDepth)));
}

TEST(TreeBuilder, RefusesElementsOneLevelDeeper) { EXPECT_FALSE(Builds(Nested(kMaxElementDepth + 1))); }

TEST(TreeBuilder, CountsDepthAndNotElements) {
    std::string xml = "<r>";
    for (std::size_t count = 0; count < 3 * kMaxElementDepth; ++count) {
        xml += "<a><b/></a>";
    }
    EXPECT_TRUE(Builds(xml + "</r>"));
}

TEST(TreeBuilder, TakesEntitiesThatStayBelowTheThreshold) {
    ASSERT_EQ(kEntityExpansionThreshold, 8ULL << 20);
    // 64 KiB used 120 times: much more than a hundredfold of each use, and still less than the threshold.
    EXPECT_TRUE(Builds(Amplified(64 << 10, 120)));
    EXPECT_TRUE(Builds(Amplified(1 << 10, (8 << 10) - 100)));
}

TEST(TreeBuilder, RefusesEntitiesThatMultiplyADocumentBeyondTheThreshold) {
    // 64 KiB used 9,000 times make 562 MiB of less than 100 KiB.
    EXPECT_FALSE(Builds(Amplified(64 << 10, 9000)));
}

TEST(TreeBuilder, TakesEntitiesBeyondTheThresholdWhenTheyMultiplyLittle) {
    // 128 KiB used 90 times make 11 MiB of 128 KiB: not a hundredfold.
    EXPECT_TRUE(Builds(Amplified(128 << 10, 90)));
}

TEST(TreeBuilder, RefusesEntitiesWithinEntities) {
    std::string xml = "<!DOCTYPE r [<!ENTITY e0 \"0123456789\">";
    for (int level = 1; level <= 9; ++level) {
        const std::string use = "&e" + std::to_string(level - 1) + ";";
        xml += "<!ENTITY e" + std::to_string(level) + " \"";
        for (int count = 0; count < 10; ++count) {
            xml += use;
        }
        xml += "\">";
    }
    EXPECT_FALSE(Builds(xml + "]><r>&e9;</r>"));
    EXPECT_FALSE(Builds(xml + "]><r a=\"&e9;\"/>")) << "in an attribute";
}

TEST(TreeBuilder, TakesADocumentWhoseTokensSpanManyPieces) {
    const std::string value(3 << 20, 'v');
    BuiltDocument document;
    ASSERT_TRUE(Builds("<r a=\"" + value + "\"><!--" + value + "-->" + value + "</r>", document));
    EXPECT_EQ(document.m_tree.document_element().attribute("a").value(), value);
    EXPECT_EQ(document.m_tree.document_element().first_child().value(), value);
    EXPECT_EQ(document.m_tree.document_element().last_child().value(), value);
}

TEST(TreeBuilder, TakesCharactersThatLieAcrossAPieceBoundary) {
    for (std::size_t shift = 0; shift < 4; ++shift) {
        const std::string padding((256 << 10) - 10 - shift, 'p');
        const std::string value = padding + "\xF0\x9F\x96\xA8\xE2\x82\xAC";
        BuiltDocument document;
        ASSERT_TRUE(Builds("<r a=\"" + value + "\"/>", document));
        EXPECT_EQ(document.m_tree.document_element().attribute("a").value(), value);
    }
}
