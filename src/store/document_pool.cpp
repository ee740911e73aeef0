#include "store/document_pool.h"

#include "platform/semaphore.h"
#include "store/xml_object.h"

#include <memory>
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
    std::unique_ptr<PoolNode> node(new (std::nothrow) PoolNode{nullptr, nullptr});
    std::unique_ptr<CXmlObject> document(node != nullptr ? new (std::nothrow) CXmlObject : nullptr);
    if (document == nullptr || document->Open(relativePath) != 0) {
        return nullptr;
    }
    node->document = document.release();
    *link = node.release();
    return (*link)->document;
}

bool CanServe(const PoolOwner* owner, const AnsiString& relativePath) noexcept {
    return owner != nullptr && owner->semaphore != nullptr && !relativePath.empty();
}

} // namespace

CXmlObject* OpenDocument(PoolOwner* owner, const AnsiString& relativePath) {
    if (!CanServe(owner, relativePath)) {
        return nullptr;
    }
    // No guard: the lock is kept on purpose when the DOM's load call itself fails (see CXmlObject::Open). A new
    // document is not in the list then.
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
