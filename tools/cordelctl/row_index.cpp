// Finds the rows of a container that the library cannot enumerate.

#include "row_index.h"

#include "failure.h"
#include "lookup.h"

#include <algorithm>

namespace {

std::string IndexOf(const std::string& container) { return "Index." + container; }

} // namespace

std::vector<RowKey> ReadIndex(const std::string& container) {
    std::vector<RowKey> keys;
    for (;;) {
        const std::string number = std::to_string(keys.size() + 1);
        const std::string text = ToText(GetAttrValue1(ToAnsi(IndexOf(container)), "ID", ToAnsi(number), "Value"));
        const auto separator = text.find('=');
        if (separator == std::string::npos) { // the number itself: a miss
            return keys;
        }
        keys.push_back({text.substr(0, separator), text.substr(separator + 1)});
    }
}

void AddToIndex(const std::string& container, const RowKey& key) {
    const auto keys = ReadIndex(container);
    if (std::find(keys.begin(), keys.end(), key) != keys.end()) {
        return;
    }
    WriteTestFileName(ToAnsi(IndexOf(container)), ToAnsi(std::to_string(keys.size() + 1)),
                      ToAnsi(key.attribute + "=" + key.value));
    if (ReadIndex(container).size() == keys.size()) {
        throw CFailure(ExitCode::Missing,
                       "the document has no container \"" + IndexOf(container) + "\": what was added to " + container +
                           " cannot be listed",
                       "add the empty container; the installed documents show where");
    }
}

void ClearIndex(const std::string& container) { DelAllElem(ToAnsi(IndexOf(container))); }
