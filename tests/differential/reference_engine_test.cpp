// The comparison would prove nothing if most operations found nothing, or if it could not fail.

#include "comparison.h"
#include "reference_text.h"

#include <gtest/gtest.h>

#include <array>

TEST(RandomCases, MakeEveryOperationSucceedAndFailOften) {
    std::array<std::array<int, 2>, kOperations> outcomes{};
    for (std::uint64_t seed = 1; seed <= 1000; ++seed) {
        CChoices choices(seed);
        const Case made = RandomCase(choices);
        RefNode document = made.document;
        RefQuery query;
        for (const Step& step : made.steps) {
            query = step.query;
            const int32_t status = RunReference(step.operation, document, query);
            ++outcomes[static_cast<std::size_t>(step.operation)][static_cast<std::size_t>(status)];
        }
    }
    for (std::size_t operation = 0; operation < outcomes.size(); ++operation) {
        const auto& [done, failed] = outcomes[operation];
        EXPECT_GT(done, (done + failed) / 20) << NameOf(static_cast<Operation>(operation));
        EXPECT_GT(failed, (done + failed) / 20) << NameOf(static_cast<Operation>(operation));
    }
}

TEST(RandomCases, AreTheSameForTheSameSeed) {
    CChoices first(7);
    CChoices second(7);
    CChoices other(8);
    const std::string description = Describe(RandomCase(first));
    EXPECT_EQ(description, Describe(RandomCase(second)));
    EXPECT_NE(description, Describe(RandomCase(other)));
}

TEST(TheComparison, SeesADifferenceInEveryPartOfATree) {
    RefNode expected;
    expected.name = "r";
    expected.attributes = {{"a", "1"}};
    RefNode child;
    child.kind = RefNode::Kind::Text;
    child.text = "text";
    expected.children = {child};
    const auto differs = [&](const char* xml) {
        pugi::xml_document document;
        document.load_string(xml, pugi::parse_full);
        return !Difference(expected, document.document_element()).empty();
    };
    EXPECT_FALSE(differs("<r a='1'>text</r>"));
    for (const char* const xml :
         {"<s a='1'>text</s>", "<r a='2'>text</r>", "<r b='1'>text</r>", "<r>text</r>", "<r a='1' b='2'>text</r>",
          "<r a='1'>other</r>", "<r a='1'/>", "<r a='1'>text<b/></r>", "<r a='1'><![CDATA[text]]></r>"}) {
        EXPECT_TRUE(differs(xml)) << xml;
    }
}

TEST(TheReference, ReplacesEachMaximalIllFormedPart) {
    EXPECT_EQ(ReferenceText("a\xE2\x82z\xFF\xC3\xA4"), "a\xEF\xBF\xBDz\xEF\xBF\xBD\xC3\xA4");
    EXPECT_EQ(ReferenceText("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(ReferenceText("\xF0\x9F\x96"), "\xEF\xBF\xBD");
}
