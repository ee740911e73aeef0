#include "ids/file_kinds.h"

#include "nodes/attribute_values.h"

#include <algorithm>

namespace {

constexpr const char* kFontTypes[] = {"1", "5"};
constexpr const char* kType2Only[] = {"2"};
constexpr const char* kType8Only[] = {"8"};

} // namespace

const FileKind* KindOfType(const AnsiString& type) noexcept {
    static constexpr FileKind kinds[] = {FileKind::Fonts, FileKind::Type2, FileKind::Type8};
    const auto* const kind = std::find_if(std::begin(kinds), std::end(kinds), [&](FileKind candidate) {
        const auto types = TypesOfKind(candidate);
        return std::any_of(types.begin(), types.end(), [&](const char* member) { return type == member; });
    });
    return kind != std::end(kinds) ? kind : nullptr;
}

std::span<const char* const> TypesOfKind(FileKind kind) noexcept {
    switch (kind) {
    case FileKind::Type2:
        return kType2Only;
    case FileKind::Type8:
        return kType8Only;
    default:
        return kFontTypes;
    }
}

AnsiString KindName(CXmlObject* strings, FileKind kind) {
    return kind == FileKind::Fonts ? ReadValue(strings, "StringTable", "FontFile_SPFTTF")
                                   : ReadFilteredValue(strings, "ProjectFilter", "ID", TypesOfKind(kind)[0], "Value");
}
