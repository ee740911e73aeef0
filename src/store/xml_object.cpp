#include "store/xml_object.h"

#include "store/document_paths.h"

#include <new>

CXmlObject::CXmlObject() noexcept : m_hSemaphore(platform::NewSemaphore()) {}

CXmlObject::~CXmlObject() { platform::DeleteSemaphore(m_hSemaphore); }

int32_t CXmlObject::Open(const AnsiString& relativePath, CReason* reason) {
    if (m_hSemaphore == nullptr || relativePath.empty()) {
        GiveReason(reason, CReason::Of(m_hSemaphore == nullptr ? ReasonKind::CallFailed : ReasonKind::NoPath));
        return 1;
    }
    // No guard: when the DOM's load call itself fails, the lock is kept on purpose. The host learns of a state that it
    // can only report, and nobody works on the half-made document.
    platform::Wait(m_hSemaphore);
    int32_t status = 1;
    try {
        status = OpenLocked(relativePath, reason);
    } catch (const std::bad_alloc&) {
        GiveReason(reason, CReason::Of(ReasonKind::OutOfMemory));
    }
    platform::Signal(m_hSemaphore);
    return status;
}

int32_t CXmlObject::OpenLocked(const AnsiString& relativePath, CReason* reason) {
    if (!m_strPath.empty() && !IsSamePath(relativePath)) {
        GiveReason(reason, CReason::Of(ReasonKind::NoPath));
        return 1;
    }
    if (m_nReferences == 0) {
        m_strPath = InstallFolderPath(relativePath);
        if (!Load(reason)) {
            m_strPath = {};
            return 1;
        }
    }
    ++m_nReferences;
    return 0;
}

bool CXmlObject::Load(CReason* reason) {
    m_file = ChooseFile(m_strPath);
    if (m_file.m_nLoadState == LoadState::NotLoaded) {
        GiveReason(reason, m_file.m_whyNotUserCopy);
        return false;
    }
    auto dom = LoadFile(m_file.m_strPath, reason);
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
