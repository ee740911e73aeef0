// Overwrites one attribute of one row that is picked by a key.

#include "row_edit.h"

#include "failure.h"
#include "lookup.h"

namespace {

enum class Outcome { Done, NoAttribute, NotHeld };

std::string Value(const std::string& container, const std::string& attribute) {
    return ToText(GetAttrValue(ToAnsi(container), ToAnsi(attribute)));
}

void Write(const std::string& container, const std::string& attribute, const std::string& value) {
    WriteAttr(ToAnsi(container), ToAnsi(attribute), ToAnsi(value));
}

/// Sets the attribute on the first row that carries it, and finds out whether that happened: WriteAttr does not tell.
Outcome Overwrite(const std::string& container, const std::string& attribute, const std::string& value) {
    const std::string former = Value(container, attribute);
    Write(container, attribute, value);
    const std::string now = Value(container, attribute);
    if (now == value && !value.empty()) {
        return Outcome::Done;
    }
    if (now != former && now != value) { // something else was stored in place of bytes that are no characters
        Write(container, attribute, former);
        return Outcome::NotHeld;
    }
    if (!former.empty()) {
        return now == value ? Outcome::Done : Outcome::NotHeld;
    }
    Write(container, attribute, "?"); // empty before and after: is the attribute there at all?
    const bool isThere = !Value(container, attribute).empty();
    Write(container, attribute, former);
    return !isThere ? Outcome::NoAttribute : value.empty() ? Outcome::Done : Outcome::NotHeld;
}

[[noreturn]] void FailForValue(const std::string& container, const std::string& attribute) {
    throw CFailure(ExitCode::Refused, "a document cannot hold this value of " + container + " " + attribute,
                   "leave out control characters, and bytes that are no characters");
}

/// Sets an attribute of the one item where an edit is prepared.
void Prepare(const std::string& container, const std::string& attribute, const std::string& value) {
    if (!value.empty() && Value(container, attribute) == value) {
        return; // as the edit before left it: one save less
    }
    switch (Overwrite(container, attribute, value)) {
    case Outcome::Done:
        return;
    case Outcome::NotHeld:
        FailForValue(container, attribute);
    case Outcome::NoAttribute:
        throw CFailure(
            ExitCode::Missing,
            "this document is not prepared for such an edit: no item of \"" + container + "\" carries " + attribute,
            "add that container with one item that carries the key and the attribute, as the installed documents do");
    }
}

} // namespace

void OverwriteInRow(const std::string& container, const std::string& key, const std::string& keyValue,
                    const std::string& attribute, const std::string& value) {
    if (!FindValueWhere(container, key, keyValue, attribute)) {
        throw CFailure(ExitCode::Missing,
                       "no item of " + container + " with " + key + " \"" + keyValue + "\" carries " + attribute);
    }
    const std::string prepared = "Edit." + container + "." + attribute;
    Prepare(prepared, attribute, value);
    Prepare(prepared, key, keyValue);
    CopyElement(prepared.c_str(), container.c_str(), key.c_str());
    if (ToText(GetAttrValue1(ToAnsi(container), ToAnsi(key), ToAnsi(keyValue), ToAnsi(attribute))) != value) {
        throw CFailure(ExitCode::Missing, "the first item of " + container + " with " + key + " \"" + keyValue +
                                              "\" does not carry " + attribute);
    }
}

void OverwriteFirst(const std::string& container, const std::string& attribute, const std::string& value) {
    switch (Overwrite(container, attribute, value)) {
    case Outcome::Done:
        return;
    case Outcome::NotHeld:
        FailForValue(container, attribute);
    case Outcome::NoAttribute:
        throw CFailure(ExitCode::Missing, "no item of " + container + " carries " + attribute,
                       "only what exists can be set; the installed documents show the names");
    }
}
