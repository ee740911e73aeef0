// Texts of documents as a page can show them.

#pragma once

#include <string>
#include <string_view>

/// Text that XML can hold and that stays where it is: control characters become their pictures, and marks that turn the
/// direction of the text around them become their numbers. Markup is left to whoever writes the text out.
std::string PageText(std::string_view utf8);
