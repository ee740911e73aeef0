#include "ids/free_id_search.h"

#include "store/module_state.h"
#include "store/node_readers.h"

#include <string>

namespace {

constexpr int32_t kIdEnd = 0x8000;

} // namespace

CFreeIdSearch::CUsers::CUsers(CXmlObject* document, const FileListNames& names, const char* type)
    : m_pDocument(document), m_names(names), m_strType(type), m_query(names.files, names.fileId) {
    m_query.m_nCount = 2;
}

bool CFreeIdSearch::CUsers::Have(const AnsiString& id) {
    const int32_t count = m_query.m_nCount;
    m_query.m_attrs.Clear();
    m_query.AddPair(m_names.id, id);
    m_query.AddPair(m_names.type, m_strType);
    m_query.m_nCount = count;
    return ReadAttribute(m_pDocument, &m_query) == 0;
}

CFreeIdSearch::CFreeIdSearch(CXmlObject* document, int32_t kind)
    : m_first(document, m_names, kind != 0 ? "2" : "1"), m_second(document, m_names, "5"), m_bFonts(kind == 0) {}

int32_t CFreeIdSearch::Find() {
    for (; m_nNext < kIdEnd; ++m_nNext) {
        const AnsiString id(std::to_string(m_nNext).c_str());
        if (!m_first.Have(id) && (!m_bFonts || !m_second.Have(id))) {
            return m_nNext;
        }
    }
    return -1;
}

int32_t GetValidID(int32_t kind) noexcept { return CFreeIdSearch(State().currentDocument, kind).Find(); }
