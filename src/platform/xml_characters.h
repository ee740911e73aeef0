// What XML 1.0 can hold. Checked above the DOM, so that a document that was saved can be loaded again on every target:
// a DOM may take a value that it later refuses to read.

#pragma once

#include "dom_types.h"

#include <string_view>

/// True when every character may stand in an XML document.
bool IsXmlText(std::basic_string_view<DomChar> text) noexcept;

/// True for a name that an element or an attribute can have.
bool IsXmlName(std::basic_string_view<DomChar> text) noexcept;
