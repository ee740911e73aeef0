#include "catalogue/project_filter.h"

#include "store/module_state.h"
#include "store/node_readers.h"

#include <algorithm>
#include <cstring>

std::vector<AnsiString> ListFilterTexts(CXmlObject* strings, AnsiString element) {
    CXmlQuery query(std::move(element), {});
    ListAllAttributes(strings, &query);
    std::vector<AnsiString> texts;
    for (const CXmlAttribute::Pair* pair = query.m_attrs.Head(); pair != nullptr; pair = pair->next) {
        texts.push_back(pair->value);
    }
    return texts;
}

uint32_t GetFilter(AnsiString element, char* buffer, uint32_t size) noexcept {
    if (buffer == nullptr) {
        return 1;
    }
    std::fill_n(buffer, size, '\0');
    // The size bounds the zero fill only: the contract leaves it to the host to supply a buffer that is large enough.
    const std::vector<AnsiString> texts = ListFilterTexts(State().stringsDocument, std::move(element));
    char* position = buffer;
    for (const AnsiString& text : texts) {
        std::memcpy(position, text.c_str(), text.size());
        position += text.size() + 1;
    }
    return 1;
}
