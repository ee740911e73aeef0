// What the documents hold: every container with its attributes in order. Listing, editing, comparing, the doctor,
// completion, `cordelctl schema` and docs/documents.md go by this table; a new container is one entry.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// What the value of an attribute is.
enum class ValueKind {
    Text,
    Number, // decimal digits, perhaps with a sign
    Id,     // a plain number from 0 to 32767
    Bytes,  // a number of bytes
    Kibibytes,
    Percent, // 0 to 100
    Tick,    // 1: ticked; 0: not
    Slots    // one character for each slot: 0, 1 or 2
};

struct AttributeSchema {
    std::string_view name;
    std::string_view meaning;
    ValueKind kind = ValueKind::Text;
    std::uint32_t longest = 255;   // bytes that a host's record has room for; 0 for any
    std::string_view allowed = {}; // "1=bitmap font, 5=TrueType font"; empty for any value
    std::string_view types = {};   // of a file: the Types whose rows carry it; empty for all
    bool required = true;          // every row carries it
};

enum class DocumentKind { Main, Printer, Strings };

struct ContainerSchema {
    std::string_view name;
    std::string_view meaning;
    std::string_view key;     // the attribute that tells the rows apart; empty when they have none
    std::string_view writers; // which functions write it
    std::string_view readers; // which functions read it, beside those that read any container
    std::span<const AttributeSchema> attributes;
    bool inStrings = false;  // of the strings document; else of the main and the printer documents
    bool single = false;     // one row, or several that count as one: values are overwritten, never added
    bool positional = false; // read by position: the order of the attributes counts
};

std::span<const ContainerSchema> Containers() noexcept;

/// Null for a container that is not in the table: a host may have some of its own.
const ContainerSchema* FindContainerSchema(std::string_view name) noexcept;

const AttributeSchema* FindAttributeSchema(const ContainerSchema& container, std::string_view name) noexcept;

/// The value with which a row of a container with a single row begins.
std::string_view DefaultOf(const AttributeSchema& attribute) noexcept;

/// "a number of bytes", ...
std::string_view NameOf(ValueKind kind) noexcept;

/// Throws CFailure (Refused) when the attribute takes no such value: too long for a host's record, of another kind, not
/// one of those that are allowed, or with characters that a document or the system's code page cannot hold.
void RequireValue(const AttributeSchema& attribute, const std::string& value);

/// The same for an attribute that is not in the table: what no document holds.
void RequireText(const std::string& value, const std::string& what);

/// Bytes that a text takes in a host's 8-bit strings.
std::size_t ByteLength(const std::string& utf8);

/// True for decimal digits without leading zeros: two IDs that are one number are then one text.
bool IsPlainNumber(std::string_view text) noexcept;
