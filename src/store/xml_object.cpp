#include "store/xml_object.h"

#include "store/document_file.h"
#include "store/document_paths.h"

#include <new>

CXmlObject::CXmlObject() noexcept : m_hSemaphore(platform::NewSemaphore()) {}

CXmlObject::~CXmlObject() { platform::DeleteSemaphore(m_hSemaphore); }

int32_t CXmlObject::Open(const AnsiString& relativePath) {
    if (m_hSemaphore == nullptr || relativePath.empty()) {
        return 1;
    }
    // No guard: when the DOM's load call itself fails, the lock is kept on purpose. The host learns of a state that it
    // can only report, and nobody works on the half-made document.
    platform::Wait(m_hSemaphore);
    int32_t status = 1;
    try {
        status = OpenLocked(relativePath);
    } catch (const std::bad_alloc&) {
        status = 1;
    }
    platform::Signal(m_hSemaphore);
    return status;
}

int32_t CXmlObject::OpenLocked(const AnsiString& relativePath) {
    if (!m_strPath.empty() && !IsSamePath(relativePath)) {
        return 1;
    }
    if (m_nReferences == 0) {
        m_strPath = InstallFolderPath(relativePath);
        if (LoadDocument(*this) != 0) {
            m_strPath = {};
            return 1;
        }
    }
    ++m_nReferences;
    return 0;
}

bool CXmlObject::IsSamePath(const AnsiString& relativePath) const {
    const AnsiString path = InstallFolderPath(relativePath);
    return !path.empty() && path == m_strPath;
}

int32_t CXmlObject::ReleaseReference() noexcept {
    if (m_hSemaphore == nullptr || m_nReferences <= 0) {
        return 1;
    }
    const platform::CSemaphoreGuard guard(m_hSemaphore);
    if (--m_nReferences == 0) {
        m_pTables.reset();
        m_pDom.reset();
        m_nLoadState = LoadState::NotLoaded;
    }
    return 0;
}
