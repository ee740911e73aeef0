// From a document's values to the fixed fields of a record.

#pragma once

#include "cordelbox.h"
#include "platform/bounded_text.h"

/// Copies a value into a field. One that does not fit stops the process; `name` is the field's in the last message.
template <std::size_t size>
void SetField(char (&field)[size], const AnsiString& value, const char* name) noexcept {
    platform::CopyToField(field, {value.c_str(), value.size()}, name);
}
