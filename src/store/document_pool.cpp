#include "store/document_pool.h"

#include "platform/semaphore.h"
#include "store/xml_object.h"

#include <new>

namespace {

/// The link that leads to the document of that path, or to the end of the list.
PoolNode** FindLink(PoolOwner& owner, const AnsiString& relativePath) {
    PoolNode** link = &owner.head;
    while (*link != nullptr && !(*link)->document->IsSamePath(relativePath)) {
        link = &(*link)->next;
    }
    return link;
}

void RemoveNode(PoolNode** link) noexcept {
    PoolNode* const node = *link;
    *link = node->next;
    delete node->document;
    delete node;
}

CXmlObject* OpenLocked(PoolOwner& owner, const AnsiString& relativePath) {
    PoolNode** const link = FindLink(owner, relativePath);
    if (*link != nullptr) {
        return (*link)->document->Open(relativePath) == 0 ? (*link)->document : nullptr;
    }
    auto* const document = new (std::nothrow) CXmlObject;
    if (document == nullptr) {
        return nullptr;
    }
    *link = new (std::nothrow) PoolNode{nullptr, document};
    if (*link == nullptr) {
        delete document;
        return nullptr;
    }
    if (document->Open(relativePath) != 0) {
        RemoveNode(link);
        return nullptr;
    }
    return document;
}

bool CanServe(const PoolOwner* owner, const AnsiString& relativePath) noexcept {
    return owner != nullptr && owner->semaphore != nullptr && !relativePath.empty();
}

} // namespace

CXmlObject* OpenDocument(PoolOwner* owner, const AnsiString& relativePath) {
    if (!CanServe(owner, relativePath)) {
        return nullptr;
    }
    // No guard: the lock is kept on purpose when the DOM's load call itself fails (see CXmlObject::Open). The document
    // then stays in the list, locked too.
    platform::Wait(owner->semaphore);
    CXmlObject* document = nullptr;
    try {
        document = OpenLocked(*owner, relativePath);
    } catch (const std::bad_alloc&) {
        document = nullptr;
    }
    platform::Signal(owner->semaphore);
    return document;
}

int32_t ReleaseDocument(PoolOwner* owner, const AnsiString& relativePath) noexcept {
    if (!CanServe(owner, relativePath)) {
        return 1;
    }
    const platform::CSemaphoreGuard guard(owner->semaphore);
    PoolNode** const link = FindLink(*owner, relativePath);
    if (*link != nullptr) {
        (*link)->document->ReleaseReference();
        if ((*link)->document->m_nReferences == 0) {
            RemoveNode(link);
        }
    }
    return 0;
}
