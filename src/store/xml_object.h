// One open document of the pool.
//
// A document's life, from below: document_paths says where its two files are, document_file which of them is read and
// how it is written, an object of this kind holds what was read and who shares it, and document_pool the objects.

#pragma once

#include "cordelbox.h"
#include "platform/dom.h"
#include "platform/semaphore.h"
#include "rows/document_tables.h"
#include "store/document_file.h"

#include <memory>

/// A document with its lock. The pool's lock is always taken before a document's, never after.
struct CXmlObject {
    CXmlObject() noexcept;
    virtual ~CXmlObject();
    CXmlObject(const CXmlObject&) = delete;
    CXmlObject& operator=(const CXmlObject&) = delete;

    /// Loads the document, or shares it when it is loaded. Returns 0, or 1 and is then not open; `reason`, where one is
    /// wanted, says why. A per-user copy that is malformed fails; the installed document does not step in for it. When
    /// the DOM's load call itself fails, its DomError passes and the document stays locked.
    int32_t Open(const AnsiString& relativePath, CReason* reason = nullptr,
                 DomPositions positions = DomPositions::Forgotten);

    /// Loads a file from wherever it lies, into an object that is not open. It belongs to no host and is never saved.
    int32_t OpenFile(const AnsiString& path, CReason* reason = nullptr,
                     DomPositions positions = DomPositions::Forgotten);

    /// True when this document was opened for that path.
    bool IsSamePath(const AnsiString& relativePath) const;

    /// Saves the document over its per-user copy, wherever it was loaded from, under its lock.
    COutcome Save() noexcept;

    /// Drops one reference; the last one drops the tree. Returns 0, or 1 when there is none to drop.
    int32_t ReleaseReference() noexcept;

    int32_t m_nReferences = 0;                  // opens that were not released yet
    AnsiString m_strPath;                       // install-folder path; empty until the first open
    const platform::LockHandle m_hSemaphore;    // guards everything here; null: cannot be opened
    std::unique_ptr<DomDocument> m_pDom;        // null until loaded
    std::unique_ptr<CDocumentTables> m_pTables; // of m_pDom
    FileChoice m_file;                          // which it was loaded from

private:
    template <class Loader>
    int32_t OpenLocked(CReason* reason, Loader load);
    bool LoadInstalled(const AnsiString& relativePath, CReason* reason, DomPositions positions);
    bool Load(CReason* reason, DomPositions positions);
};
