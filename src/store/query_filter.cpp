#include "store/query_filter.h"

#include <algorithm>

CRowFilter FilterOf(const CRowTable& table, const CXmlQuery& query) {
    const auto pairs = static_cast<std::size_t>(std::clamp(query.m_nCount, 0, query.m_attrs.Count()));
    CRowFilter filter(query.m_nCount, pairs);
    const CXmlAttribute::Pair* pair = query.m_attrs.Head();
    for (std::size_t index = 0; index < pairs; ++index, pair = pair->next) {
        filter.AddPair(table, pair->name, pair->value);
    }
    return filter;
}

CRowFilter KeyFilterOf(const CRowTable& table, const CXmlQuery& query) {
    CRowFilter filter(1, 1);
    filter.AddPair(table, query.m_strAttr, query.m_strValue);
    return filter;
}

CellPlace FindQueriedCell(CRowTable& table, const CXmlQuery& query) {
    const NameNumber wanted = table.FindName(platform::CDomArgument(query.m_strAttr).View());
    return wanted != kNoName ? FilterOf(table, query).FindFirstCell(table, wanted) : CellPlace();
}
