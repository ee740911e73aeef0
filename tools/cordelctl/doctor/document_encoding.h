// The encoding of a document, by its name.

#pragma once

#include <string>
#include <string_view>

/// The encoding in capitals: by byte order mark, by the look of the first bytes, by the XML declaration, or else UTF-8.
std::string EncodingOf(std::string_view bytes);
