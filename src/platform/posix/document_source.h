// The bytes of a document on disk, as UTF-8.

#pragma once

#include "file_opening.h"
#include "platform/reason.h"

#include <cstddef>
#include <string>

/// Reads a document in pieces. UTF-8 is passed on as it is; any other encoding that the document declares, or shows by
/// a byte order mark, is converted whole when the source is opened.
class CDocumentSource {
public:
    /// False: no regular file that can be read, larger than kMaxDocumentBytes (on disk or as UTF-8), or not in the
    /// encoding that it declares; `reason`, where one is wanted, says which.
    bool Open(const char* path, CReason* reason = nullptr);

    /// Number of bytes as UTF-8.
    std::size_t Size() const noexcept { return m_nSize; }

    /// Reads `size` bytes from `offset` on into `buffer`. False when they cannot be had.
    bool Read(std::size_t offset, char* buffer, std::size_t size) const noexcept;

private:
    bool Convert(const char* encoding);

    platform::CFile m_file;
    std::size_t m_nSize = 0;
    bool m_bConverted = false;
    std::string m_strConverted;
};
