// Single attributes of the current document, and the same of the strings document.

#include "cordelbox.h"
#include "store/module_state.h"
#include "store/node_readers.h"

namespace {

AnsiString ReadFirst(CXmlObject* document, AnsiString element, AnsiString attribute) {
    CXmlQuery query(std::move(element), std::move(attribute));
    ReadAttribute(document, &query);
    return query.FirstValue();
}

/// On a miss the filter pair is still the query's first one, and its value is the result: hosts rely on it.
AnsiString ReadFiltered(CXmlObject* document, AnsiString element, AnsiString filterName, AnsiString filterValue,
                        AnsiString attribute) {
    CXmlQuery query(std::move(element), std::move(attribute));
    query.AddPair(std::move(filterName), std::move(filterValue));
    ReadAttribute(document, &query);
    return query.FirstValue();
}

} // namespace

AnsiString GetAttrValue(AnsiString element, AnsiString attribute) noexcept {
    return ReadFirst(State().currentDocument, std::move(element), std::move(attribute));
}

AnsiString GetAttrValue1(AnsiString element, AnsiString filterName, AnsiString filterValue,
                         AnsiString attribute) noexcept {
    return ReadFiltered(State().currentDocument, std::move(element), std::move(filterName), std::move(filterValue),
                        std::move(attribute));
}

AnsiString GetXMLString(AnsiString element, AnsiString attribute) noexcept {
    return ReadFirst(State().stringsDocument, std::move(element), std::move(attribute));
}

AnsiString GetXMLString1(AnsiString element, AnsiString filterName, AnsiString filterValue,
                         AnsiString attribute) noexcept {
    return ReadFiltered(State().stringsDocument, std::move(element), std::move(filterName), std::move(filterValue),
                        std::move(attribute));
}
