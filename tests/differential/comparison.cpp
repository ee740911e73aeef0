#include "comparison.h"

#include "engine_document.h"
#include "nodes/node_writers.h"
#include "store/node_readers.h"

#include <fstream>
#include <utility>

namespace {

AnsiString Text(const std::string& text) { return AnsiString(text.data(), text.size()); }

std::string SaveDifference(RefNode expected, DomDocument& document, const char* path) {
    std::ofstream(path).close();
    document.Save(path);
    const auto loaded = DomDocument::Create();
    if (!loaded->Load(path)) {
        return "what was saved does not load";
    }
    JoinTexts(expected);
    DeclareOutsideNamespace(expected);
    return Difference(expected, loaded->FirstElementNamed("Last").parent());
}

/// Leaves out parts of a case as long as it still differs.
class CShrinker {
public:
    CShrinker(Case failed, const char* savedTo) : m_case(std::move(failed)), m_pSavedTo(savedTo) {}

    Case Shrink() {
        while (LeaveOutSteps() || LeaveOutNodes(m_case.document)) {
        }
        return std::move(m_case);
    }

private:
    bool Differs() const { return !FindDifference(m_case, m_pSavedTo).empty(); }

    /// Leaves out one element of a list unless that makes the difference go.
    template <class List>
    bool LeaveOut(List& list, std::size_t index) {
        const auto position = static_cast<std::ptrdiff_t>(index);
        auto part = std::move(list[index]);
        list.erase(list.begin() + position);
        if (Differs()) {
            return true;
        }
        list.insert(list.begin() + position, std::move(part));
        return false;
    }

    bool LeaveOutSteps() {
        bool bSmaller = false;
        for (std::size_t length = m_case.steps.size() / 2; length > 1; length /= 2) {
            for (std::size_t first = 0; first + length <= m_case.steps.size();) {
                const std::vector<Step> before = m_case.steps;
                const auto position = m_case.steps.begin() + static_cast<std::ptrdiff_t>(first);
                m_case.steps.erase(position, position + static_cast<std::ptrdiff_t>(length));
                if (Differs()) {
                    bSmaller = true;
                } else {
                    m_case.steps = before;
                    first += length;
                }
            }
        }
        for (std::size_t index = m_case.steps.size(); index > 0; --index) {
            bSmaller = LeaveOut(m_case.steps, index - 1) || bSmaller;
        }
        return bSmaller;
    }

    bool LeaveOutNodes(RefNode& node) {
        bool bSmaller = false;
        for (std::size_t index = node.children.size(); index > 0; --index) {
            if (node.children[index - 1].name == "Last") {
                continue; // the comparison finds the tree by it
            }
            if (LeaveOut(node.children, index - 1)) {
                bSmaller = true;
            } else {
                bSmaller = LeaveOutNodes(node.children[index - 1]) || bSmaller;
            }
        }
        for (std::size_t index = node.attributes.size(); index > 0; --index) {
            bSmaller = LeaveOut(node.attributes, index - 1) || bSmaller;
        }
        return bSmaller;
    }

    Case m_case;
    const char* const m_pSavedTo;
};

} // namespace

int32_t RunEngine(Operation operation, CXmlObject& document, CXmlQuery& query) {
    switch (operation) {
    case Operation::ReadAttribute:
        return ReadAttribute(&document, &query);
    case Operation::ListAllAttributes:
        return ListAllAttributes(&document, &query);
    case Operation::CollectAttribute:
        return CollectAttribute(&document, &query);
    case Operation::ReadChild:
        return ReadChild(&document, &query);
    case Operation::WriteItem:
        return WriteItem(&document, &query);
    case Operation::WriteAttribute:
        return WriteAttribute(&document, &query);
    case Operation::RemoveItems:
        return RemoveItems(&document, &query);
    case Operation::UpdateItem:
        return UpdateItem(&document, &query);
    }
    return 1;
}

void PrepareQuery(const Step& step, RefQuery& query) {
    query.element = step.query.element;
    query.attribute = step.query.attribute;
    query.value = step.query.value;
    if (!step.bReuse) {
        query.count = step.query.count;
        query.pairs = step.query.pairs;
    }
}

void PrepareQuery(const Step& step, CXmlQuery& query) {
    query.m_strElement = Text(step.query.element);
    query.m_strAttr = Text(step.query.attribute);
    query.m_strValue = Text(step.query.value);
    if (!step.bReuse) {
        query.m_attrs.Clear();
        for (const auto& [name, value] : step.query.pairs) {
            query.m_attrs.Add(Text(name), Text(value));
        }
        query.m_nCount = step.query.count;
    }
}

std::string QueryDifference(const RefQuery& expected, const CXmlQuery& actual) {
    if (actual.m_nCount != expected.count) {
        return "m_nCount is " + std::to_string(actual.m_nCount) + " and should be " + std::to_string(expected.count);
    }
    if (actual.m_strElement != Text(expected.element) || actual.m_strAttr != Text(expected.attribute) ||
        actual.m_strValue != Text(expected.value)) {
        return "a text of the query was changed";
    }
    const TextPairs pairs = PairsOf(actual);
    if (pairs != expected.pairs || actual.m_attrs.Count() != static_cast<int32_t>(expected.pairs.size())) {
        std::string text = "the pairs are";
        for (const auto& [name, value] : pairs) {
            text += " " + name + "=\"" + value + "\"";
        }
        text += " and should be";
        for (const auto& [name, value] : expected.pairs) {
            text += " " + name + "=\"" + value + "\"";
        }
        return text;
    }
    return {};
}

std::string FindDifference(const Case& wanted, const char* savedTo) {
    if (!AreNamesRight(wanted.document)) {
        return {}; // no document
    }
    CEngineDocument document(WriteXml(wanted.document));
    RefNode reference = wanted.document;
    RefQuery expected;
    CXmlQuery actual;
    for (std::size_t index = 0; index < wanted.steps.size(); ++index) {
        const Step& step = wanted.steps[index];
        PrepareQuery(step, expected);
        PrepareQuery(step, actual);
        const std::string place = "step " + std::to_string(index + 1) + " (" + NameOf(step.operation) + "): ";
        const int32_t expectedStatus = RunReference(step.operation, reference, expected);
        const int32_t actualStatus = RunEngine(step.operation, document.Object(), actual);
        if (actualStatus != expectedStatus) {
            return place + "status " + std::to_string(actualStatus) + " and should be " +
                   std::to_string(expectedStatus);
        }
        std::string difference = QueryDifference(expected, actual);
        if (difference.empty()) {
            difference = Difference(reference, document.Root("Last"));
        }
        if (!difference.empty()) {
            return place + difference;
        }
    }
    return savedTo != nullptr ? SaveDifference(reference, *document.Object().m_pDom, savedTo) : std::string();
}

Case Shrink(Case failed, const char* savedTo) { return CShrinker(std::move(failed), savedTo).Shrink(); }
