#include "store/document_file.h"

#include "platform/folders.h"
#include "store/document_paths.h"

#include <exception>

FileChoice ChooseFile(const AnsiString& installFolderPath) {
    FileChoice choice;
    const AnsiString userCopy = UserCopyPath(installFolderPath);
    if (userCopy.empty()) {
        choice.m_whyNotUserCopy = CReason::Of(ReasonKind::NoPath);
        return choice;
    }
    const bool bUserCopy = platform::IsPresentAndWritable(userCopy.c_str(), &choice.m_whyNotUserCopy);
    choice.m_nLoadState = bUserCopy ? LoadState::FromUserCopy : LoadState::FromInstallFolder;
    choice.m_strPath = bUserCopy ? userCopy : installFolderPath;
    return choice;
}

std::unique_ptr<DomDocument> LoadFile(const AnsiString& path, CReason* reason, DomPositions positions) {
    auto dom = DomDocument::Create();
    if (dom == nullptr) {
        GiveReason(reason, CReason::Of(ReasonKind::CallFailed, "there is no DOM to be had"));
        return nullptr;
    }
    return dom->Load(path.c_str(), reason, positions) ? std::move(dom) : nullptr;
}

COutcome SaveToUserCopy(DomDocument& dom, const AnsiString& installFolderPath) noexcept {
    try {
        const AnsiString userCopy = UserCopyPath(installFolderPath);
        CReason reason = CReason::Of(ReasonKind::NoPath);
        if (userCopy.empty() || !platform::IsPresentAndWritable(userCopy.c_str(), &reason)) {
            return {What::NoUserCopy, std::move(reason)};
        }
        dom.Save(userCopy.c_str());
        return {};
    } catch (const DomError& error) {
        return {What::Failed, error.Reason()};
    } catch (const std::exception&) {
        return {What::Failed, CReason::Of(ReasonKind::OutOfMemory)};
    }
}
