// Letter case by the simple mappings of Unicode: one code point becomes one, whatever the process's locale and the
// system's own tables.

#pragma once

namespace platform {

/// The lower case of a letter; of anything else the code point itself.
char32_t LowerCase(char32_t codePoint) noexcept;

} // namespace platform
