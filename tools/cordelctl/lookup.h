// Single values out of the current document or the strings document, with a miss told apart from a value.
//
// The library's getters return the empty string, or the value that was filtered by, both for a miss and for a value
// that happens to be just that. Where a value looks like a miss, other attributes decide: a row of a known container
// carries them all, so that a row can be told from none.

#pragma once

#include "cordelbox.h"

#include <optional>
#include <string>

/// A pair of getters, for one document.
struct Getters {
    AnsiString (*any)(AnsiString element, AnsiString attribute);
    AnsiString (*filtered)(AnsiString element, AnsiString filterName, AnsiString filterValue, AnsiString attribute);
};

inline constexpr Getters kCurrentDocument{&GetAttrValue, &GetAttrValue1};
inline constexpr Getters kStringsDocument{&GetXMLString, &GetXMLString1};

inline AnsiString ToAnsi(const std::string& text) { return AnsiString(text.data(), text.size()); }
inline std::string ToText(const AnsiString& text) { return std::string(text.c_str(), text.size()); }

/// Whether a row of the container has this value. A container that is not known has none.
bool RowExists(const std::string& container, const std::string& name, const std::string& value,
               const Getters& document = kCurrentDocument);

/// The attribute of the first row that carries it.
std::optional<std::string> FindValue(const std::string& container, const std::string& attribute,
                                     const Getters& document = kCurrentDocument);

/// The same among the rows whose attribute `name` is `value`.
std::optional<std::string> FindValueWhere(const std::string& container, const std::string& name,
                                          const std::string& value, const std::string& attribute,
                                          const Getters& document = kCurrentDocument);
