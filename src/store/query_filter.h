// What a query asks of a container's rows.

#pragma once

#include "rows/row_filter.h"
#include "store/xml_query.h"

/// The filter of a query: its first m_nCount pairs. The query must outlive it. Throws std::bad_alloc.
CRowFilter FilterOf(const CRowTable& table, const CXmlQuery& query);

/// The filter of the query's key: m_strAttr = m_strValue.
CRowFilter KeyFilterOf(const CRowTable& table, const CXmlQuery& query);

/// The attribute that a query means: m_strAttr of the first child that passes the filter and carries it. Throws
/// DomError when a row without attributes stands before it, std::bad_alloc.
CellPlace FindQueriedCell(CRowTable& table, const CXmlQuery& query);
