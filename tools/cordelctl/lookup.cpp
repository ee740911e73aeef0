// Single values out of the current document or the strings document, with a miss told apart from a value.

#include "lookup.h"

#include "vocabulary.h"

#include <algorithm>

namespace {

/// The value among the rows whose attribute `name` is `value`, or `value` itself.
std::string Filtered(const Getters& document, const std::string& container, const std::string& name,
                     const std::string& value, const std::string& attribute) {
    return ToText(document.filtered(ToAnsi(container), ToAnsi(name), ToAnsi(value), ToAnsi(attribute)));
}

bool IsOnEveryRow(const std::string& container, const std::string& attribute) {
    const Container* const known = FindContainer(container);
    return known != nullptr &&
           std::find(known->attributes.begin(), known->attributes.end(), attribute) != known->attributes.end();
}

} // namespace

bool RowExists(const std::string& container, const std::string& name, const std::string& value,
               const Getters& document) {
    const Container* const known = FindContainer(container);
    return known != nullptr &&
           std::any_of(known->attributes.begin(), known->attributes.end(), [&](std::string_view other) {
               return other != name && Filtered(document, container, name, value, std::string(other)) != value;
           });
}

std::optional<std::string> FindValue(const std::string& container, const std::string& attribute,
                                     const Getters& document) {
    std::string text = ToText(document.any(ToAnsi(container), ToAnsi(attribute)));
    if (text.empty() && !RowExists(container, attribute, text, document)) {
        return std::nullopt;
    }
    return text;
}

std::optional<std::string> FindValueWhere(const std::string& container, const std::string& name,
                                          const std::string& value, const std::string& attribute,
                                          const Getters& document) {
    std::string text = Filtered(document, container, name, value, attribute);
    if (text != value) {
        return text;
    }
    const bool isThere = IsOnEveryRow(container, attribute) && RowExists(container, name, value, document) &&
                         RowExists(container, attribute, value, document);
    return isThere ? std::optional(text) : std::nullopt;
}
