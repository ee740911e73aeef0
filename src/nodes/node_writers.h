// The writers of the node engine. Each makes one pass over a document under its lock, never saves, leaves the query as
// it was, and returns 0 when it did something, else 1; `outcome`, where one is wanted, says more. An error of the DOM
// midway gives 1; what was done until then stays. A null document is one that is not open.

#pragma once

#include "cordelbox.h"
#include "store/outcome.h"
#include "store/xml_query.h"

/// Appends an item with the first m_nCount pairs to the container m_strElement, unless a child carries them all already
/// (by the filter rule): then 1. With a count of 0 it removes every child instead; an empty container gives 0 too.
int32_t WriteItem(CXmlObject* document, const CXmlQuery* query, COutcome* outcome = nullptr) noexcept;

/// Overwrites the attribute m_strAttr, with m_strValue, of the first child that passes the filter and carries it.
/// Creates nothing.
int32_t WriteAttribute(CXmlObject* document, const CXmlQuery* query, COutcome* outcome = nullptr) noexcept;

/// Removes the first child that passes the filter; without one every child. 1 when there was none.
int32_t RemoveItems(CXmlObject* document, const CXmlQuery* query, COutcome* outcome = nullptr) noexcept;

/// Overwrites attributes of the first child whose attribute m_strAttr is m_strValue: each takes the value of the first
/// among the first m_nCount pairs that has its name. Creates nothing; 0 also when no pair names an attribute of that
/// child.
int32_t UpdateItem(CXmlObject* document, const CXmlQuery* query, COutcome* outcome = nullptr) noexcept;
