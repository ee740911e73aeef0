// Copying attributes between two containers of the current document.

#include "cordelbox.h"
#include "nodes/node_writers.h"
#include "store/collected_values.h"
#include "store/current_document.h"

namespace {

/// Only so many attributes of a source child are copied, in its own order: hosts rely on it.
constexpr int32_t kCopiedAttributes = 4;

} // namespace

uint32_t CopyProperty(const char* sourceElement, const char* targetElement, const char* attribute) noexcept {
    // A source that does not exist reads as the empty string, which blanks the target: hosts rely on it.
    const CXmlQuery target(targetElement, attribute, GetAttrValue(sourceElement, attribute));
    WriteAttribute(&target);
    SaveCurrentDocument();
    return 1;
}

uint32_t CopyElement(const char* sourceElement, const char* targetElement, const char* keyAttribute) noexcept {
    for (const AnsiString& value : CCollectedValues(sourceElement, keyAttribute)) {
        CXmlQuery child(sourceElement, keyAttribute, value);
        ReadChild(&child);
        child.m_strElement = targetElement;
        child.m_nCount = kCopiedAttributes;
        UpdateItem(&child);
        SaveCurrentDocument();
    }
    return 1;
}
