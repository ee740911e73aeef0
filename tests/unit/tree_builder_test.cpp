// From bytes to a tree: what is kept, what is refused, and the limits at their edges.

#include "tree_builder.h"

#include "document_source.h"
#include "engine_document.h"
#include "platform/document_limits.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

constexpr const char* kRefused = "(refused)";

bool Builds(const std::string& xml, pugi::xml_document& tree) {
    const CMemoryFile file(xml);
    CDocumentSource source;
    return source.Open(file.Path()) && BuildTree(source, tree);
}

bool Builds(const std::string& xml) {
    pugi::xml_document tree;
    return Builds(xml, tree);
}

/// The tree as text without blanks of its own.
std::string Tree(const std::string& xml) {
    pugi::xml_document tree;
    if (!Builds(xml, tree)) {
        return kRefused;
    }
    std::ostringstream text;
    tree.save(text, "", pugi::format_raw | pugi::format_no_declaration);
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
    EXPECT_EQ(Tree("<!DOCTYPE r [<!ENTITY e SYSTEM '/etc/hostname'>]><r>&e;</r>"),
              "<!DOCTYPE r [<!ENTITY e SYSTEM '/etc/hostname'>]><r/>");
    EXPECT_EQ(Tree("<!DOCTYPE r SYSTEM '/etc/hostname'><r/>"), "<!DOCTYPE r SYSTEM '/etc/hostname'><r/>");
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
    pugi::xml_document tree;
    ASSERT_TRUE(Builds("<r a=\"" + value + "\"><!--" + value + "-->" + value + "</r>", tree));
    EXPECT_EQ(tree.document_element().attribute("a").value(), value);
    EXPECT_EQ(tree.document_element().first_child().value(), value);
    EXPECT_EQ(tree.document_element().last_child().value(), value);
}

TEST(TreeBuilder, TakesCharactersThatLieAcrossAPieceBoundary) {
    for (std::size_t shift = 0; shift < 4; ++shift) {
        const std::string padding((256 << 10) - 10 - shift, 'p');
        const std::string value = padding + "\xF0\x9F\x96\xA8\xE2\x82\xAC";
        pugi::xml_document tree;
        ASSERT_TRUE(Builds("<r a=\"" + value + "\"/>", tree));
        EXPECT_EQ(tree.document_element().attribute("a").value(), value);
    }
}
