// The filter lists of the strings document.

#include "cordelbox.h"
#include "store/module_state.h"
#include "store/node_readers.h"

#include <algorithm>
#include <cstring>

uint32_t GetFilter(AnsiString element, char* buffer, uint32_t size) noexcept {
    if (buffer == nullptr) {
        return 1;
    }
    std::fill_n(buffer, size, '\0');
    CXmlQuery query(std::move(element), {});
    ListAllAttributes(State().stringsDocument, &query);
    // The size bounds the zero fill only: the contract leaves it to the host to supply a buffer that is large enough.
    char* position = buffer;
    for (const CXmlAttribute::Pair* pair = query.m_attrs.Head(); pair != nullptr; pair = pair->next) {
        std::memcpy(position, pair->value.c_str(), pair->value.size());
        position += pair->value.size() + 1;
    }
    return 1;
}
