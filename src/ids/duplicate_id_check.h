// Whether the file being edited shares its ID with another one of its kind.

#pragma once

#include "ids/file_kinds.h"

#include <optional>

struct EditedIdCheck {
    AnsiString m_strId;             // as it is listed
    int32_t m_nId = 0;              // as a number
    std::optional<FileKind> m_kind; // none: files of that Type are not checked
    int32_t m_nUsers = 0;           // files of the kind with this ID, the edited one among them

    bool IsClash() const noexcept { return m_nUsers > 1; }
};

/// Checks the file that "Property" names.
EditedIdCheck CheckEditedId(CXmlObject* document);
