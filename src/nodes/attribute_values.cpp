#include "nodes/attribute_values.h"

#include "store/module_state.h"
#include "store/node_readers.h"

AnsiString ReadValue(CXmlObject* document, AnsiString element, AnsiString attribute) {
    CXmlQuery query(std::move(element), std::move(attribute));
    ReadAttribute(document, &query);
    return query.FirstValue();
}

AnsiString ReadFilteredValue(CXmlObject* document, AnsiString element, AnsiString filterName, AnsiString filterValue,
                             AnsiString attribute) {
    CXmlQuery query(std::move(element), std::move(attribute));
    query.AddPair(std::move(filterName), std::move(filterValue));
    ReadAttribute(document, &query);
    return query.FirstValue();
}

AnsiString GetAttrValue(AnsiString element, AnsiString attribute) noexcept {
    return ReadValue(State().currentDocument, std::move(element), std::move(attribute));
}

AnsiString GetAttrValue1(AnsiString element, AnsiString filterName, AnsiString filterValue,
                         AnsiString attribute) noexcept {
    return ReadFilteredValue(State().currentDocument, std::move(element), std::move(filterName), std::move(filterValue),
                             std::move(attribute));
}

AnsiString GetXMLString(AnsiString element, AnsiString attribute) noexcept {
    return ReadValue(State().stringsDocument, std::move(element), std::move(attribute));
}

AnsiString GetXMLString1(AnsiString element, AnsiString filterName, AnsiString filterValue,
                         AnsiString attribute) noexcept {
    return ReadFilteredValue(State().stringsDocument, std::move(element), std::move(filterName), std::move(filterValue),
                             std::move(attribute));
}
