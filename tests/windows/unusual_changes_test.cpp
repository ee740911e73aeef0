// A change beyond what every DOM is at ease with: the DOM is asked whether it would load the document again, and the
// change is taken back where it would not.

#include "dom_calls_windows.h"

#include "host_test.h"
#include "lacking_system.h"
#include "platform/dom.h"

#include <algorithm>
#include <functional>
#include <memory>

namespace {

constexpr std::size_t kUsualText = std::size_t{1} << 20;
constexpr std::size_t kUsualDepth = 100;

struct Change {
    const char* name;
    /// Makes the change, with that text, in the document's one container and its one row.
    std::function<void(DomDocument& dom, DomView text)> make;
};

DomNode Container(DomDocument& dom) { return dom.FirstElementNamed(L"Files"); }
DomNode Row(DomDocument& dom) { return dom.FirstChild(Container(dom)); }

const Change kChanges[] = {
    {"a text that is set", [](DomDocument& dom, DomView text) { dom.SetAttributeText(Row(dom), 0, text); }},
    {"an attribute that is added",
     [](DomDocument& dom, DomView text) {
         dom.AddAttribute(Row(dom), {L"New", text});
     }},
    {"an element that is appended",
     [](DomDocument& dom, DomView text) {
         dom.AppendElement(Container(dom), L"Item", {{L"ID", text}});
     }},
};

} // namespace

class UnusualChanges : public HostTest {
protected:
    std::unique_ptr<DomDocument> Loaded(const std::string& containers = "<Files><Item ID=\"1\"/></Files>") const {
        WriteFile(UserMainPath(), Document(containers));
        auto dom = DomDocument::Create();
        EXPECT_TRUE(dom->Load(UserMainPath().string().c_str()));
        return dom;
    }

    /// The attributes of all rows.
    static Record Held(DomDocument& dom) {
        Record held;
        for (DomNode row = Row(dom); row; row = dom.NextSibling(row)) {
            std::vector<DomAttribute> attributes;
            dom.ListAttributes(row, attributes);
            for (const DomAttribute& attribute : attributes) {
                const DomView name = attribute.baseName.View();
                const DomView text = attribute.text.View();
                held.emplace_back(std::string(name.begin(), name.end()), std::string(text.begin(), text.end()));
            }
        }
        return held;
    }

    /// Whether the DOM is asked to write the document during the change.
    static bool IsAsked(const std::function<void()>& change) {
        const CDomCallWatch watch;
        change();
        return std::count(watch.Calls().begin(), watch.Calls().end(), "save") != 0;
    }
};

TEST_F(UnusualChanges, AreTextsOfMoreThanAMillionCharacters) {
    for (const Change& change : kChanges) {
        for (const std::size_t more : {0, 1}) {
            const auto dom = Loaded();
            const std::wstring text(kUsualText + more, L't');
            EXPECT_EQ(IsAsked([&] { change.make(*dom, text); }), more != 0) << change.name;
            EXPECT_EQ(Held(*dom).back().second.size(), text.size()) << change.name;
        }
    }
}

TEST_F(UnusualChanges, AreElementsThatLieDeepInEachOther) {
    for (const std::size_t more : {0, 1}) {
        std::string nested = "<Files/>";
        for (std::size_t depth = 2; depth < kUsualDepth + more; ++depth) {
            nested = "<a>" + nested + "</a>";
        }
        const auto dom = Loaded(nested);
        EXPECT_EQ(IsAsked([&] { dom->AppendElement(Container(*dom), L"Item", {}); }), more != 0);
        EXPECT_TRUE(Row(*dom));
    }
}

TEST_F(UnusualChanges, AreTakenBackWhereTheDocumentWouldNotLoadAgain) {
    const std::wstring text(kUsualText + 1, L't');
    for (const Change& change : kChanges) {
        for (const char* const failing : {"save", "CoCreateInstance", "put_async", "load"}) {
            for (const DomAnswer answer : {DomAnswer::Failure, DomAnswer::Success}) {
                if (failing == std::string("put_async") && answer == DomAnswer::Success) {
                    continue; // as if it had been done
                }
                const auto dom = Loaded();
                const Record before = Held(*dom);
                bool bThrown = false;
                {
                    const CDomCallWatch watch([&](std::size_t, const std::string& name) {
                        return name == failing ? answer : DomAnswer::ItsOwn;
                    });
                    try {
                        change.make(*dom, text);
                    } catch (const DomError& error) {
                        bThrown = true;
                        EXPECT_EQ(error.Reason().m_kind,
                                  failing == std::string("save") ? ReasonKind::Refused : ReasonKind::TooLarge);
                    }
                }
                EXPECT_TRUE(bThrown) << change.name << ": " << failing;
                EXPECT_EQ(Held(*dom), before) << change.name << ": " << failing;
            }
        }
    }
}

TEST_F(UnusualChanges, AreLookedAtAsAWhole) {
    // A usual attribute behind an unusual one.
    const auto dom = Loaded();
    const std::wstring text(kUsualText + 1, L't');
    EXPECT_TRUE(IsAsked([&] { dom->AppendElement(Container(*dom), L"Item", {{L"ID", text}, {L"Name", L"n"}}); }));
}

TEST_F(UnusualChanges, GiveBackTheMemoryOfTheLook) {
    const std::wstring text(kUsualText + 1, L't');
    const auto dom = Loaded();
    const int before = ComArrays();
    kChanges[0].make(*dom, text);
    EXPECT_EQ(ComArrays(), before);
    const CLackingSystem lacking({.bArrays = true});
    EXPECT_THROW(kChanges[0].make(*dom, text), DomError);
}

TEST_F(UnusualChanges, ThatMakeTheDocumentTooLargeAreNotSaved) {
    const auto dom = Loaded();
    const std::string path = UserMainPath().string();
    const std::string before = UserMainText();
    GiveSavedBlanks(std::size_t{256} * 1024 * 1024 + 1);
    ReasonKind kind = ReasonKind::None;
    try {
        dom->Save(path.c_str());
    } catch (const DomError& error) {
        kind = error.Reason().m_kind;
    }
    GiveSavedBlanks(0);
    EXPECT_EQ(kind, ReasonKind::TooLarge);
    EXPECT_EQ(UserMainText(), before);
}
