#include "nodes/generic_writers.h"

#include "nodes/node_writers.h"
#include "store/module_state.h"

COutcome WriteValue(CXmlObject* document, AnsiString element, AnsiString attribute, AnsiString value) {
    const CXmlQuery query(std::move(element), std::move(attribute), std::move(value));
    COutcome outcome;
    WriteAttribute(document, &query, &outcome);
    return outcome;
}

COutcome ClearContainer(CXmlObject* document, AnsiString element) {
    const CXmlQuery query(std::move(element), {});
    COutcome outcome;
    RemoveItems(document, &query, &outcome);
    return outcome;
}

uint32_t WriteAttr(AnsiString element, AnsiString attribute, AnsiString value) noexcept {
    WriteValue(State().currentDocument, std::move(element), std::move(attribute), std::move(value));
    SaveCurrentDocument();
    return 1;
}

uint32_t DelAllElem(AnsiString element) noexcept {
    const COutcome outcome = ClearContainer(State().currentDocument, std::move(element));
    SaveCurrentDocument();
    return outcome ? 1 : 0;
}
