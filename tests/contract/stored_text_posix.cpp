// The code page is UTF-8, and so is the document.

#include "reference_text.h"
#include "stored_text.h"

std::optional<StoredText> StoreText(const std::string& bytes) {
    const std::string text = ReferenceText(bytes);
    return IsDocumentText(text) ? std::optional(StoredText{text, text}) : std::nullopt;
}
