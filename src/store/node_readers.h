// The readers of the node engine. Each makes one pass under the document's lock, changes nothing and returns 0 when it
// delivered something, else 1; `outcome`, where one is wanted, says more. Results are (base name, text) pairs in the
// query's m_attrs, their number in m_nCount. A null document is one that is not open.

#pragma once

#include "cordelbox.h"
#include "store/outcome.h"
#include "store/xml_query.h"

/// The attribute m_strAttr of the first child of the container m_strElement that passes the filter and carries it.
/// On 1 the query is as it was: a caller that does not look finds its first filter pair there.
int32_t ReadAttribute(CXmlObject* document, CXmlQuery* query, COutcome* outcome = nullptr) noexcept;

/// All attributes of all children, child by child. What was gathered before an error stays, with its count.
int32_t ListAllAttributes(CXmlObject* document, CXmlQuery* query, COutcome* outcome = nullptr) noexcept;

/// The attribute m_strAttr of every child. Takes no filter: a count other than 0 gives 1 and leaves the query. What was
/// gathered before an error stays, with its count.
int32_t CollectAttribute(CXmlObject* document, CXmlQuery* query, COutcome* outcome = nullptr) noexcept;

/// All attributes of the first child that passes: the filter, or without one the key m_strAttr = m_strValue.
/// On 1 the query is as it was.
int32_t ReadChild(CXmlObject* document, CXmlQuery* query, COutcome* outcome = nullptr) noexcept;
