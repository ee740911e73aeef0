#include "nodes/copy_operations.h"

#include "nodes/attribute_values.h"
#include "nodes/generic_writers.h"
#include "nodes/node_writers.h"
#include "store/collected_values.h"
#include "store/module_state.h"

namespace {

constexpr int32_t kCopiedAttributes = 4;

} // namespace

COutcome CopyValue(CXmlObject* document, const AnsiString& sourceElement, const AnsiString& targetElement,
                   const AnsiString& attribute) {
    return WriteValue(document, targetElement, attribute, ReadValue(document, sourceElement, attribute));
}

COutcome CopyRow(CXmlObject* document, const AnsiString& sourceElement, const AnsiString& targetElement,
                 const AnsiString& keyAttribute, const AnsiString& key) {
    CXmlQuery row(sourceElement, keyAttribute, key);
    ReadChild(document, &row);
    row.m_strElement = targetElement;
    row.m_nCount = kCopiedAttributes;
    COutcome outcome;
    UpdateItem(document, &row, &outcome);
    return outcome;
}

uint32_t CopyProperty(const char* sourceElement, const char* targetElement, const char* attribute) noexcept {
    CopyValue(State().currentDocument, sourceElement, targetElement, attribute);
    SaveCurrentDocument();
    return 1;
}

uint32_t CopyElement(const char* sourceElement, const char* targetElement, const char* keyAttribute) noexcept {
    CXmlObject* const document = State().currentDocument;
    for (const AnsiString& key : CCollectedValues(document, sourceElement, keyAttribute)) {
        CopyRow(document, sourceElement, targetElement, keyAttribute, key);
        SaveCurrentDocument(); // after every row: hosts rely on it
    }
    return 1;
}
