// Whether a local path is listed already.

#include "cordelbox.h"
#include "platform/code_page.h"
#include "store/collected_values.h"

uint32_t IsPathConflict(AnsiString localPath) noexcept {
    for (const AnsiString& listed : CCollectedValues("Files", "LocalPath")) {
        if (platform::EqualIgnoringCase({listed.c_str(), listed.size()}, {localPath.c_str(), localPath.size()})) {
            return 1;
        }
    }
    return 0;
}
