#include "store/xml_object.h"

#include "store/document_paths.h"

#include <new>

CXmlObject::CXmlObject() noexcept : m_hSemaphore(platform::NewSemaphore()) {}

CXmlObject::~CXmlObject() { platform::DeleteSemaphore(m_hSemaphore); }

/// Takes the lock and adds a reference to what `load` has loaded or found loaded.
template <class Loader>
int32_t CXmlObject::OpenLocked(CReason* reason, Loader load) {
    if (m_hSemaphore == nullptr) {
        GiveReason(reason, CReason::Of(ReasonKind::CallFailed, "there is no semaphore to be had"));
        return 1;
    }
    // No guard: when the DOM's load call itself fails, the lock is kept on purpose. The host learns of a state that it
    // can only report, and nobody works on the half-made document.
    platform::Wait(m_hSemaphore);
    bool bOpen = false;
    try {
        bOpen = load();
    } catch (const std::bad_alloc&) {
        GiveReason(reason, CReason::Of(ReasonKind::OutOfMemory));
    }
    m_nReferences += bOpen ? 1 : 0;
    platform::Signal(m_hSemaphore);
    return bOpen ? 0 : 1;
}

int32_t CXmlObject::Open(const AnsiString& relativePath, CReason* reason, DomPositions positions) {
    if (relativePath.empty()) {
        GiveReason(reason, CReason::Of(ReasonKind::NoPath));
        return 1;
    }
    return OpenLocked(reason, [&] { return LoadInstalled(relativePath, reason, positions); });
}

int32_t CXmlObject::OpenFile(const AnsiString& path, CReason* reason, DomPositions positions) {
    return OpenLocked(reason, [&] {
        m_file = {LoadState::NotLoaded, path, {}};
        return Load(reason, positions);
    });
}

bool CXmlObject::LoadInstalled(const AnsiString& relativePath, CReason* reason, DomPositions positions) {
    if (!m_strPath.empty() && !IsSamePath(relativePath)) {
        GiveReason(reason, CReason::Of(ReasonKind::NoPath));
        return false;
    }
    if (m_nReferences != 0) {
        return true;
    }
    m_strPath = InstallFolderPath(relativePath);
    m_file = ChooseFile(m_strPath);
    if (m_file.m_nLoadState == LoadState::NotLoaded) {
        GiveReason(reason, m_file.m_whyNotUserCopy);
    } else if (Load(reason, positions)) {
        return true;
    }
    m_strPath = {};
    return false;
}

bool CXmlObject::Load(CReason* reason, DomPositions positions) {
    auto dom = LoadFile(m_file.m_strPath, reason, positions);
    if (dom == nullptr) {
        return false;
    }
    m_pTables = std::make_unique<CDocumentTables>(*dom);
    m_pDom = std::move(dom);
    return true;
}

bool CXmlObject::IsSamePath(const AnsiString& relativePath) const {
    const AnsiString path = InstallFolderPath(relativePath);
    return !path.empty() && path == m_strPath;
}

COutcome CXmlObject::Save() noexcept {
    if (m_hSemaphore == nullptr) {
        return {What::NoDocument, {}};
    }
    const platform::CSemaphoreGuard guard(m_hSemaphore);
    return m_pDom != nullptr ? SaveToUserCopy(*m_pDom, m_strPath) : COutcome{What::NoDocument, {}};
}

int32_t CXmlObject::ReleaseReference() noexcept {
    if (m_hSemaphore == nullptr || m_nReferences <= 0) {
        return 1;
    }
    const platform::CSemaphoreGuard guard(m_hSemaphore);
    if (--m_nReferences == 0) {
        m_pTables.reset();
        m_pDom.reset();
        m_file = {};
    }
    return 0;
}
