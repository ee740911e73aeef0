// 8-bit text in the code page as UTF-16, for the system's wide functions.

#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Bytes that are not valid in the code page become what the system makes of them.
std::wstring ToWideText(std::string_view text);

} // namespace platform
