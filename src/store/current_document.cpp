#include "store/current_document.h"

#include "platform/semaphore.h"
#include "store/document_file.h"
#include "store/module_state.h"
#include "store/xml_object.h"

void SaveCurrentDocument() noexcept {
    CXmlObject* const document = State().currentDocument;
    if (document != nullptr && document->m_hSemaphore != nullptr) {
        const platform::CSemaphoreGuard guard(document->m_hSemaphore);
        SaveDocument(*document);
    }
}
