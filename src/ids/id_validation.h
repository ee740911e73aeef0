// Whether two files ticked for sending would be stored under the same ID.

#pragma once

#include "ids/file_kinds.h"

#include <optional>
#include <string>

/// An ID that two ticked files of one kind share.
struct IdClash {
    FileKind m_kind;
    std::string m_strId; // as it is listed
};

/// The first clash: of Type "2", or else of fonts. Files of Type "8" are never checked: hosts rely on two such files
/// with one ID passing.
std::optional<IdClash> FindTickedClash(CXmlObject* document);
