#include "catalogue/path_conflict.h"

#include "platform/code_page.h"
#include "store/collected_values.h"
#include "store/module_state.h"

bool IsPathListed(CXmlObject* document, const AnsiString& localPath) {
    for (const AnsiString& listed : CCollectedValues(document, "Files", "LocalPath")) {
        if (platform::EqualIgnoringCase({listed.c_str(), listed.size()}, {localPath.c_str(), localPath.size()})) {
            return true;
        }
    }
    return false;
}

uint32_t IsPathConflict(AnsiString localPath) noexcept {
    return IsPathListed(State().currentDocument, localPath) ? 1 : 0;
}
