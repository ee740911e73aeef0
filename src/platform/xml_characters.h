// What XML 1.0 can hold. Checked above the DOM, so that a document that was saved can be loaded again on every target:
// a DOM may take a value that it later refuses to read.

#pragma once

#include "dom_types.h"

#include <string_view>

/// True when every character may stand in an XML document.
bool IsXmlText(std::basic_string_view<DomChar> text) noexcept;

/// True for a name that an element or an attribute can have.
bool IsXmlName(std::basic_string_view<DomChar> text) noexcept;

/// True for a name that every reader takes. The fifth edition of XML 1.0 has far more letters for names than the
/// others, by which some DOMs read; not all of those that they share are known here.
bool IsXmlNameInEveryEdition(std::basic_string_view<DomChar> text) noexcept;
