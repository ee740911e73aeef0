// The bytes of a document on disk, as UTF-8.

#pragma once

#include "file_rights.h"
#include "platform/reason.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// Holds what one reading of the file gave, whatever becomes of the file afterwards. UTF-8 is passed on as it is; any
/// other encoding that the document declares, or shows by a byte order mark, is converted.
class CDocumentSource {
public:
    CDocumentSource() = default;
    CDocumentSource(const CDocumentSource&) = delete;
    CDocumentSource& operator=(const CDocumentSource&) = delete;

    /// False: no regular file that can be read, larger than kMaxDocumentBytes (on disk or as UTF-8), not in the
    /// encoding that it declares, or rewritten by another program each time it was read; `reason`, where one is wanted,
    /// says which. Throws std::bad_alloc.
    bool Open(const char* path, CReason* reason = nullptr);

    std::string_view Text() const noexcept { return m_text; }

    /// What the file let whom do.
    const std::optional<platform::FileRights>& Rights() const noexcept { return m_rights; }

private:
    bool Read(int file, CReason* reason);
    bool Decode(CReason* reason);

    std::unique_ptr<char[]> m_pBytes;
    std::string m_strConverted;
    std::string_view m_text; // of one of the two
    std::optional<platform::FileRights> m_rights;
};
