// Whether a file shares its ID, and what the user is told of it: the message of the library in the user's language.

#pragma once

#include "context.h"
#include "ids/file_kinds.h"

#include <optional>
#include <string>

struct IdCheck {
    std::string fileID;
    std::string id;
    std::optional<FileKind> kind; // none: such a file is not checked
    bool clash = false;
};

/// Checks a listed file as a host does that edits it.
IdCheck CheckID(CDocument& document, const std::string& fileID);

/// "fonts", "macros", "overlays", or "none".
const char* GroupName(const std::optional<FileKind>& kind);

/// The message of a clash, in one line.
std::string ClashText(Context& context, FileKind kind, const std::string& id);
inline std::string ClashText(Context& context, const IdCheck& check) {
    return ClashText(context, *check.kind, check.id);
}
