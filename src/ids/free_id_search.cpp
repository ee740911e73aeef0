// The lowest ID that no file of a kind uses.

#include "cordelbox.h"
#include "ids/file_list_names.h"
#include "store/module_state.h"
#include "store/node_readers.h"

#include <string>

namespace {

constexpr int32_t kIdEnd = 0x8000;

/// Looks for files with a certain ID and Type, until the first hit: from then on for files with that ID of any Type. A
/// read that finds something leaves its own count of one in the query, and only that many pairs count in the next.
/// Hosts rely on it.
class CIdSearch {
public:
    CIdSearch(const FileListNames& names, const char* type)
        : m_names(names), m_strType(type), m_query(names.files, names.fileId) {
        m_query.m_nCount = 2;
    }

    bool IsTaken(const AnsiString& id) {
        const int32_t count = m_query.m_nCount;
        m_query.m_attrs.Clear();
        m_query.AddPair(m_names.id, id);
        m_query.AddPair(m_names.type, m_strType);
        m_query.m_nCount = count;
        return ReadAttribute(State().currentDocument, &m_query) == 0;
    }

private:
    const FileListNames& m_names;
    const AnsiString m_strType;
    CXmlQuery m_query;
};

} // namespace

int32_t GetValidID(int32_t kind) noexcept {
    const FileListNames names;
    CIdSearch first(names, kind != 0 ? "2" : "1");
    CIdSearch second(names, "5"); // fonts only
    for (int32_t number = 0; number < kIdEnd; ++number) {
        const AnsiString id(std::to_string(number).c_str());
        if (!first.IsTaken(id) && (kind != 0 || !second.IsTaken(id))) {
            return number;
        }
    }
    return -1;
}
