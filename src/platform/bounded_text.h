// Copies into fixed fields. What does not fit stops the process: a value is never cut, and nothing is ever
// written past a field.

#pragma once

#include "cordelbox.h"

#include <cstddef>
#include <string_view>

namespace platform {

/// Stops the process: `length` bytes and their terminating zero do not fit the `size` bytes of `field`.
[[noreturn]] void StopForField(const char* field, std::size_t length, std::size_t size) noexcept;

/// Copies `text` and a terminating zero into a fixed field of a record; `field` names it in the last message.
template <std::size_t size>
void CopyToField(char (&destination)[size], std::string_view text, const char* field) noexcept {
    if (text.size() >= size) {
        StopForField(field, text.size(), size);
    }
    text.copy(destination, text.size());
    destination[text.size()] = '\0';
}

/// The number in decimal, for a field of `size` bytes with its terminating zero.
AnsiString FormatForField(long long number, const char* field, std::size_t size);

/// Reads a number leniently: white space skipped, an optional sign, digits up to the first other character, 0 when
/// there are none; numbers beyond 32 bits become the nearest end of the range.
int32_t LenientInteger(std::string_view text) noexcept;

} // namespace platform
