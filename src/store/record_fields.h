// From a reader's results to the fixed fields of a record, by position.

#pragma once

#include "platform/bounded_text.h"
#include "store/xml_query.h"

/// Takes the value under the cursor into a field, the empty string behind the last one, and moves on. A value that does
/// not fit stops the process; `name` is the field's in the last message.
template <std::size_t size>
void TakeField(CXmlAttribute& attributes, char (&field)[size], const char* name) noexcept {
    const AnsiString value = attributes.GetValue();
    platform::CopyToField(field, {value.c_str(), value.size()}, name);
    attributes.MoveNext();
}
