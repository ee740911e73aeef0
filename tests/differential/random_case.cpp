#include "random_case.h"

#include "reference_text.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <limits>

namespace {

const char* const kContainers[] = {"List", "Files", "Item", "n:List", "\xC3\x84pfel", "i", "Deep"};
const char* const kRows[] = {"i", "i", "i", "Item", "Item", "List", "Files", "Deep"};
const char* const kAttributes[] = {"A", "B", "C", "ID", "n:A", "m:A", "n:B", "\xC3\x9C", "xmlns:n"};
const char* const kNames[] = {"A", "B", "C", "ID", "\xC3\x9C", "a", "n"};
const char* const kOddNames[] = {"", "1A", "A B", "n:A", "m:A", "<", "xmlns", "A=\"\""};
const char* const kTexts[] = {"",  "1",  "2",     "3",        "01",       " 1",
                              "x", "X",  "a&b<>", "\"'",      "\xC3\xA4", "line\nend\r\tq",
                              "%", "\\", "&amp;", "&#x41;]]>"};
const char* const kOddTexts[] = {"\x01", "\xEF\xBF\xBE", "\xEF\xBF\xBF", "\x1F\x7F", "\xFF",
                                 "\xC3", "a\xE2\x82z",   "\xED\xA0\x80", "a\x0B"};
const int32_t kOddCounts[] = {-1, -2, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max(), 100};

const std::size_t kLargeRanges[] = {4, 12, 100};

using Pairs = std::vector<std::pair<std::string, std::string>>;

class CMaker {
public:
    explicit CMaker(CChoices& choices) : m_choices(choices) {}

    Case Make() {
        Case made;
        made.document.name = m_choices.OneIn(5) ? "List" : "Doc";
        made.document.attributes = {{"xmlns:m", "1"}, {"xmlns:n", "2"}};
        std::size_t steps = 1 + m_choices.Below(40);
        if (m_choices.OneIn(30)) {
            MakeLarge(made.document);
            steps = 150 + m_choices.Below(150);
        } else {
            const std::size_t containers = m_choices.Below(5);
            for (std::size_t index = 0; index < containers; ++index) {
                made.document.children.push_back(Container(0));
            }
            // One that is always there, so that a node of the tree can always be had.
            made.document.children.push_back(Element("Last"));
        }
        if (!AreNamesRight(made.document)) {
            DropDeclarations(made.document.children);
        }
        for (std::size_t index = 0; index < steps && m_choices.HasMore(); ++index) {
            made.steps.push_back(MakeStep());
        }
        return made;
    }

private:
    static void DropDeclarations(std::vector<RefNode>& nodes) {
        for (RefNode& node : nodes) {
            std::erase_if(node.attributes,
                          [](const RefAttribute& attribute) { return attribute.name.rfind("xmlns", 0) == 0; });
            DropDeclarations(node.children);
        }
    }

    static RefNode Element(const std::string& name) {
        RefNode node;
        node.name = name;
        return node;
    }

    std::string Text() { return m_choices.Of(kTexts); }

    RefNode Row(std::size_t depth) {
        RefNode row = Element(m_choices.Of(kRows));
        const std::size_t attributes = m_choices.Below(5);
        for (std::size_t index = 0; index < attributes; ++index) {
            const std::string name = m_choices.Of(kAttributes);
            const bool bThere = std::any_of(row.attributes.begin(), row.attributes.end(),
                                            [&](const RefAttribute& other) { return other.name == name; });
            if (!bThere) {
                row.attributes.push_back({name, Text()});
            }
        }
        if (depth < 3 && m_choices.OneIn(5)) {
            Fill(row, depth + 1);
        }
        Remember(row);
        return row;
    }

    void Remember(const RefNode& row) {
        Pairs pairs;
        for (const RefAttribute& attribute : row.attributes) {
            pairs.emplace_back(BaseName(attribute.name), attribute.text);
        }
        m_rows.push_back(std::move(pairs));
    }

    RefNode NonElement() {
        RefNode node;
        switch (m_choices.Below(4)) {
        case 0:
            node.kind = RefNode::Kind::Comment;
            node.text = "comment";
            break;
        case 1:
            node.kind = RefNode::Kind::Text;
            node.text = "some text";
            break;
        case 2:
            node.kind = RefNode::Kind::Instruction;
            node.name = "pi";
            node.text = "data";
            break;
        default:
            node.kind = RefNode::Kind::Cdata;
            node.text = "a<b";
        }
        return node;
    }

    void Fill(RefNode& container, std::size_t depth) {
        const std::size_t rows = m_choices.Below(7);
        const bool bBare = m_choices.OneIn(4);
        for (std::size_t index = 0; index < rows; ++index) {
            if (bBare && m_choices.OneIn(4)) {
                RefNode node = NonElement();
                const bool bTextBefore =
                    !container.children.empty() && container.children.back().kind == RefNode::Kind::Text;
                if (!bTextBefore || node.kind != RefNode::Kind::Text) {
                    container.children.push_back(std::move(node));
                }
            } else if (!container.children.empty() && m_choices.OneIn(6)) {
                container.children.push_back(container.children[m_choices.Below(container.children.size())]);
                if (container.children.back().kind != RefNode::Kind::Element) {
                    container.children.pop_back();
                }
            } else {
                container.children.push_back(Row(depth));
            }
        }
    }

    RefNode Container(std::size_t depth) {
        RefNode container = Element(m_choices.Of(kContainers));
        m_containers.push_back(container.name);
        if (m_choices.OneIn(4)) {
            container.attributes.push_back({"A", Text()});
        }
        Fill(container, depth);
        if (depth < 2 && m_choices.OneIn(3)) {
            container.children.push_back(Container(depth + 1));
        }
        return container;
    }

    void MakeLarge(RefNode& document) {
        const bool bManyContainers = m_choices.OneIn(2);
        const bool bRepeats = m_choices.OneIn(2); // base names that rows have twice
        const bool bGaps = m_choices.OneIn(2);    // attributes that rows lack
        const std::size_t containers = bManyContainers ? 100 : 2;
        for (std::size_t index = 0; index < containers; ++index) {
            RefNode container = Element("L" + std::to_string(index));
            m_containers.push_back(container.name);
            const std::size_t rows = bManyContainers ? m_choices.Below(4) : 80 + m_choices.Below(100);
            for (std::size_t row = 0; row < rows; ++row) {
                RefNode item = Element("i");
                for (std::size_t attribute = 0; attribute < std::size(kLargeRanges); ++attribute) {
                    if (!bGaps || !m_choices.OneIn(6)) {
                        item.attributes.push_back({"T" + std::to_string(attribute), LargeText()});
                    }
                    if (bRepeats && m_choices.OneIn(3)) {
                        item.attributes.push_back({"n:T" + std::to_string(attribute), LargeText()});
                    }
                    if (bRepeats && m_choices.OneIn(6)) {
                        item.attributes.push_back({"m:T" + std::to_string(attribute), LargeText()});
                    }
                }
                Remember(item);
                container.children.push_back(std::move(item));
            }
            document.children.push_back(std::move(container));
        }
        document.children.push_back(Element("Last"));
        m_bLarge = true;
    }

    /// Texts that few, some or many rows share.
    std::string LargeText() { return std::to_string(m_choices.Below(m_choices.Of(kLargeRanges))); }

    std::string ElementName() {
        if (!m_containers.empty() && !m_choices.OneIn(6)) {
            return m_choices.Of(m_containers);
        }
        if (m_choices.OneIn(10)) {
            return m_choices.OneIn(4) ? m_choices.Of(kOddTexts) : m_choices.Of(kOddNames);
        }
        return m_choices.Of(kContainers);
    }

    std::string AttributeName() {
        if (m_bLarge && !m_choices.OneIn(8)) {
            return "T" + std::to_string(m_choices.Below(std::size(kLargeRanges)));
        }
        return m_choices.OneIn(20) ? m_choices.Of(kOddNames) : m_choices.Of(kNames);
    }

    std::string AnyText() {
        if (m_bLarge && !m_choices.OneIn(4)) {
            return LargeText();
        }
        return m_choices.OneIn(15) ? m_choices.Of(kOddTexts) : Text();
    }

    /// Pairs of a row that the document had in the beginning, in any order, or any others.
    Pairs SomePairs() {
        Pairs pairs;
        const std::size_t count = m_choices.Below(m_bLarge ? 3 : 5);
        const bool bFromRow = !m_rows.empty() && !m_choices.OneIn(4);
        const Pairs none;
        const Pairs& row = bFromRow ? m_choices.Of(m_rows) : none;
        for (std::size_t index = 0; index < count; ++index) {
            if (!row.empty() && !m_choices.OneIn(8)) {
                pairs.push_back(m_choices.Of(row));
            } else {
                pairs.emplace_back(AttributeName(), AnyText());
            }
        }
        // Mostly without repetitions, which only rarely match.
        if (!m_choices.OneIn(4)) {
            Pairs unique;
            for (const auto& pair : pairs) {
                if (std::none_of(unique.begin(), unique.end(),
                                 [&](const auto& other) { return other.first == pair.first; })) {
                    unique.push_back(pair);
                }
            }
            return unique;
        }
        return pairs;
    }

    Step MakeStep() {
        Step step;
        step.operation = static_cast<Operation>(m_choices.Below(kOperations));
        step.bReuse = m_choices.OneIn(10);
        step.query.element = ElementName();
        step.query.attribute = AttributeName();
        step.query.value = AnyText();
        if (!m_rows.empty() && !m_choices.OneIn(3)) {
            const Pairs& row = m_choices.Of(m_rows);
            if (!row.empty()) {
                const auto& key = m_choices.Of(row);
                step.query.attribute = key.first;
                step.query.value = key.second;
            }
        }
        step.query.pairs = SomePairs();
        step.query.count = static_cast<int32_t>(step.query.pairs.size());
        const bool bEmpties = step.query.count == 0 &&
                              (step.operation == Operation::RemoveItems || step.operation == Operation::WriteItem);
        if (bEmpties && !m_choices.OneIn(m_bLarge ? 50 : 3)) {
            step.query.pairs.emplace_back(AttributeName(), AnyText());
            step.query.count = 1;
        }
        if (step.operation == Operation::CollectAttribute && !m_choices.OneIn(4)) {
            step.query.count = 0;
        }
        if (m_choices.OneIn(12)) {
            step.query.count = m_choices.OneIn(2) ? m_choices.Of(kOddCounts)
                                                  : static_cast<int32_t>(m_choices.Below(step.query.pairs.size() + 3));
        }
        return step;
    }

    CChoices& m_choices;
    std::vector<std::string> m_containers;
    std::vector<Pairs> m_rows;
    bool m_bLarge = false;
};

std::string Literal(const std::string& text) {
    std::string literal = "\"";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            literal += '\\';
            literal += character;
        } else if (byte < 0x20 || byte >= 0x7F) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02X", byte);
            literal += escape;
        } else {
            literal += character;
        }
    }
    return literal + "\"";
}

} // namespace

std::size_t CChoices::Below(std::size_t count) {
    if (m_pBytes == nullptr) {
        return m_random() % count;
    }
    std::size_t number = 0;
    for (std::size_t range = 1; range < count && m_nLeft > 0; range *= 256) {
        number = number * 256 + *m_pBytes++;
        --m_nLeft;
    }
    return number % count;
}

Case RandomCase(CChoices& choices) { return CMaker(choices).Make(); }

std::string Describe(const Case& failed) {
    std::string text = "document: " + WriteXml(failed.document) + "\n";
    for (const Step& step : failed.steps) {
        text += std::string("  ") + NameOf(step.operation) + " element " + Literal(step.query.element) + " attribute " +
                Literal(step.query.attribute) + " value " + Literal(step.query.value);
        if (step.bReuse) {
            text += " with what the query holds";
        } else {
            text += " count " + std::to_string(step.query.count) + " pairs";
            for (const auto& [name, value] : step.query.pairs) {
                text += " " + Literal(name) + "=" + Literal(value);
            }
        }
        text += "\n";
    }
    return text;
}
