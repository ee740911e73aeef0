// Writing without any knowledge of what a document holds.

#include "cordelbox.h"
#include "nodes/node_writers.h"
#include "store/current_document.h"

uint32_t WriteAttr(AnsiString element, AnsiString attribute, AnsiString value) noexcept {
    const CXmlQuery query(std::move(element), std::move(attribute), std::move(value));
    WriteAttribute(&query);
    SaveCurrentDocument();
    return 1;
}

uint32_t DelAllElem(AnsiString element) noexcept {
    const CXmlQuery query(std::move(element), {});
    const int32_t status = RemoveItems(&query);
    SaveCurrentDocument();
    return status == 1 ? 0 : 1;
}
