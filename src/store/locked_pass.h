// One operation of the node engine: a single pass over a document under its lock.

#pragma once

#include "platform/code_page.h"
#include "platform/semaphore.h"
#include "store/outcome.h"
#include "store/xml_object.h"
#include "store/xml_query.h"

#include <new>

/// Runs `pass`, which says What came of it, on the tables of an open document, holding its lock. Returns the status: 0
/// when it was done, else 1. What was done before the DOM or the memory fails midway stays. `outcome` may be null.
template <class Pass>
int32_t RunLocked(CXmlObject* document, COutcome* outcome, Pass pass) noexcept {
    What what = What::NoDocument;
    CReason reason;
    if (document != nullptr && document->m_hSemaphore != nullptr && document->m_pTables != nullptr) {
        const platform::CSemaphoreGuard guard(document->m_hSemaphore);
        try {
            what = pass(*document->m_pTables);
        } catch (const DomError& error) {
            what = What::Failed;
            reason = error.Reason();
        } catch (const std::bad_alloc&) {
            what = What::Failed;
            reason = CReason::Of(ReasonKind::OutOfMemory);
        }
    }
    if (outcome != nullptr) {
        outcome->m_what = what;
        outcome->m_reason = std::move(reason);
    }
    return what == What::Done ? 0 : 1;
}

/// The same on the rows of a container.
template <class Pass>
int32_t RunOnContainer(CXmlObject* document, const AnsiString& element, COutcome* outcome, Pass pass) noexcept {
    return RunLocked(document, outcome, [&](CDocumentTables& tables) {
        CRowTable* const table = tables.FindTable(platform::CDomArgument(element).View());
        return table != nullptr ? pass(tables, *table) : What::NoContainer;
    });
}

/// The same on the container that a query names. A null query is like no document.
template <class Pass>
int32_t RunOnContainer(CXmlObject* document, const CXmlQuery* query, COutcome* outcome, Pass pass) noexcept {
    return query != nullptr ? RunOnContainer(document, query->m_strElement, outcome, pass)
                            : RunLocked(nullptr, outcome, [](CDocumentTables&) { return What::NoDocument; });
}
