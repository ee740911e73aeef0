// One operation of the node engine: a single pass over a document under its lock.

#pragma once

#include "platform/semaphore.h"
#include "store/xml_object.h"
#include "store/xml_query.h"

#include <new>

/// Runs `pass` on the tables of an open document, holding its lock, and returns its status. 1 when there is no open
/// document or no query, and when the DOM or the memory fails midway; what was done until then stays.
template <class Pass>
int32_t RunLocked(CXmlObject* document, const CXmlQuery* query, Pass pass) noexcept {
    if (document == nullptr || document->m_hSemaphore == nullptr || query == nullptr ||
        document->m_pTables == nullptr) {
        return 1;
    }
    const platform::CSemaphoreGuard guard(document->m_hSemaphore);
    try {
        return pass(*document->m_pTables);
    } catch (const DomError&) {
        return 1;
    } catch (const std::bad_alloc&) {
        return 1;
    }
}

/// The same on the container that the query names. 1 when there is none.
template <class Pass>
int32_t RunOnContainer(CXmlObject* document, const CXmlQuery* query, Pass pass) noexcept {
    return RunLocked(document, query, [&](CDocumentTables& tables) {
        CRowTable* const table = tables.FindContainer(platform::CDomArgument(query->m_strElement).View());
        return table != nullptr ? pass(tables, *table) : 1;
    });
}
