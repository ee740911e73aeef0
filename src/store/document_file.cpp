#include "store/document_file.h"

#include "platform/folders.h"
#include "store/document_paths.h"
#include "store/xml_object.h"

#include <exception>

int32_t LoadDocument(CXmlObject& document) {
    if (document.m_strPath.empty()) {
        return 1;
    }
    const AnsiString userCopy = UserCopyPath(document.m_strPath);
    if (userCopy.empty()) {
        return 1; // not even from the install folder: such a document could never be saved
    }
    const bool bUserCopy = platform::IsPresentAndWritable(userCopy.c_str());
    document.m_nLoadState = bUserCopy ? LoadState::FromUserCopy : LoadState::FromInstallFolder;
    auto dom = DomDocument::Create();
    if (dom == nullptr || !dom->Load((bUserCopy ? userCopy : document.m_strPath).c_str())) {
        return 1;
    }
    document.m_pTables = std::make_unique<CDocumentTables>(*dom);
    document.m_pDom = std::move(dom);
    return 0;
}

int32_t SaveDocument(CXmlObject& document) noexcept {
    try {
        if (document.m_strPath.empty() || document.m_pDom == nullptr) {
            return 1;
        }
        const AnsiString userCopy = UserCopyPath(document.m_strPath);
        if (userCopy.empty() || !platform::IsPresentAndWritable(userCopy.c_str())) {
            return 1;
        }
        document.m_pDom->Save(userCopy.c_str());
        return 0;
    } catch (const std::exception&) {
        return 1;
    }
}
