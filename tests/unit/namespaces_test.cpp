// The rules of namespaces, one element after the other.

#include "platform/namespaces.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// What is wrong with one element, or nothing.
std::string WrongWith(DomView element, const std::vector<NamedText>& attributes) {
    CNamespaceScopes scopes;
    const char* const wrong = scopes.Enter(1, element, attributes);
    return wrong != nullptr ? wrong : "";
}

} // namespace

TEST(Namespaces, ConcernNamesWithAColonAndDeclarations) {
    for (const char* const name : {"p:a", ":a", "a:", "xmlns", "xmlns:p"}) {
        EXPECT_TRUE(ConcernsNamespaces(name)) << name;
    }
    for (const char* const name : {"a", "xml", "xmlnsp", "xmln"}) {
        EXPECT_FALSE(ConcernsNamespaces(name)) << name;
    }
    EXPECT_TRUE(DeclaresNamespace("xmlns"));
    EXPECT_TRUE(DeclaresNamespace("xmlns:p"));
    EXPECT_FALSE(DeclaresNamespace("xmlnsp"));
    EXPECT_FALSE(DeclaresNamespace("p:xmlns"));
}

TEST(Namespaces, SayWhatIsWrongWithAName) {
    EXPECT_EQ(WrongWith("r", {{"a", "1"}}), "");
    EXPECT_EQ(WrongWith("p:q:r", {{"xmlns:p", "u"}}), "an element's name is no qualified name");
    EXPECT_EQ(WrongWith("r", {{"xmlns:p", "u"}, {"p:a:b", "1"}}), "an attribute's name is no qualified name");
    EXPECT_EQ(WrongWith("r", {{"xmlns:p:q", "u"}}), "an attribute's name is no qualified name");
    EXPECT_EQ(WrongWith("p:r", {}), "the prefix of an element is not declared");
    EXPECT_EQ(WrongWith("r", {{"p:a", "1"}}), "the prefix of an attribute is not declared");
    EXPECT_EQ(WrongWith("r", {{"xmlns:xml", "u"}}), "a reserved prefix or namespace is declared");
    EXPECT_EQ(WrongWith("r", {{"xmlns:xmlns", "u"}}), "a reserved prefix or namespace is declared");
    EXPECT_EQ(WrongWith("r", {{"xmlns:p", ""}}), "a prefix is declared without a namespace");
}

TEST(Namespaces, HaveEachNameOnceInAnElementWhereverItStands) {
    const char* const kTwice = "two attributes have one name in one namespace";
    EXPECT_EQ(WrongWith("r", {{"xmlns:p", "u"}, {"xmlns:q", "u"}, {"p:a", "1"}, {"q:a", "2"}}), kTwice);
    EXPECT_EQ(WrongWith("r", {{"xmlns:p", "u"}, {"xmlns:q", "u"}, {"p:a", "1"}, {"p:b", "2"}, {"q:a", "3"}}), kTwice);
    EXPECT_EQ(WrongWith("r", {{"xmlns:p", "u"}, {"xmlns:q", "u"}, {"p:b", "1"}, {"p:a", "2"}, {"q:b", "3"}}), kTwice);
    EXPECT_EQ(WrongWith("r", {{"xmlns:p", "u"}, {"xmlns:q", "v"}, {"p:a", "1"}, {"q:a", "2"}, {"a", "3"}}), "");
}

TEST(Namespaces, KnowADefaultOneWhereItIsDeclaredAndNotTakenBack) {
    CNamespaceScopes scopes;
    EXPECT_FALSE(scopes.HasDefaultNamespace());
    ASSERT_EQ(scopes.Enter(1, "r", {{"xmlns:p", "u"}}), nullptr);
    EXPECT_FALSE(scopes.HasDefaultNamespace());
    ASSERT_EQ(scopes.Enter(2, "a", {{"xmlns", "u"}}), nullptr);
    EXPECT_TRUE(scopes.HasDefaultNamespace());
    ASSERT_EQ(scopes.Enter(3, "b", {{"xmlns", ""}}), nullptr);
    EXPECT_FALSE(scopes.HasDefaultNamespace());
    scopes.Leave(3);
    EXPECT_TRUE(scopes.HasDefaultNamespace());
    scopes.Leave(2);
    EXPECT_FALSE(scopes.HasDefaultNamespace());
    EXPECT_EQ(scopes.Enter(2, "p:a", {}), nullptr);
}
